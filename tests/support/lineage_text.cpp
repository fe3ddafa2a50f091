#include "tests/support/lineage_text.h"

namespace tav::test {

namespace {

void append(std::string& text, std::string_view mark, std::string_view name) {
  text.append(mark).append(name).append("\n");
}

void appendLineage(std::string& text, const TAVFeature& feature) {
  if (const TAVFeatureMap* map = feature.getDestinationOfFeatureMap())
    for (const TAVFeature& source : map->sourceFeatures) append(text, "  <- ", source.getPath(true));
  const auto* measure = as<TAVMeasure>(&feature);
  if (!measure || measure->unresolved.empty()) return;
  std::string_view names = measure->unresolved;
  for (std::size_t end = names.find('\n'); end != names.npos; end = names.find('\n')) {
    append(text, "  ?  ", names.substr(0, end));
    names.remove_prefix(end + 1);
  }
  append(text, "  ?  ", names);
}

}  // namespace

std::string lineageText(const TAVPackage& folder) {
  std::string text;
  for (const TAVNamespaceElement& element : folder.namespaceElements) {
    const auto* classifier = as<TAVClassifier>(&element);
    if (!classifier) continue;
    const bool named = classifier->getName() != folder.getName();
    for (const TAVFeature& feature : classifier->features) {
      append(text, named ? classifier->getName().str() + "/" : "", feature.getName());
      appendLineage(text, feature);
    }
  }
  return text;
}

std::string lineageText(const TAVStoreModel& model) {
  std::string text;
  for (const TAVPackage* cube : cubePackages(model))
    for (const char* name : {"Calculated Measures", "KPIs"})
      if (const TAVPackage* folder = cube->getChildPackage(name))
        text += folder->getPath(true).str() + "\n" + lineageText(*folder);
  return text;
}

std::vector<TAVPackage*> cubePackages(const TAVStoreModel& model) {
  const TAVPackage* folder = model.designPackages.get("Cubes");
  return folder ? folder->getChildPackages() : std::vector<TAVPackage*>();
}

}  // namespace tav::test
