#include "tests/support/lineage_text.h"

#include <algorithm>

namespace tav::test {

namespace {

void append(std::string& text, std::string_view mark, std::string_view name) {
  text.append(mark).append(name).append("\n");
}

void appendLineage(std::string& text, const TAVFeature& feature) {
  if (const TAVFeatureMap* map = feature.getDestinationOfFeatureMap())
    for (const TAVFeature& source : map->sourceFeatures) append(text, "  <- ", source.getPath(true));
  for (const std::string_view name : unresolvedNames(feature)) append(text, "  ?  ", name);
}

}  // namespace

std::vector<std::string_view> unresolvedNames(const TAVFeature& feature) {
  std::vector<std::string_view> names;
  const auto* measure = as<TAVMeasure>(&feature);
  for (std::string_view rest = measure ? measure->unresolved.view() : ""; !rest.empty();) {
    names.push_back(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(std::min(rest.size(), names.back().size() + 1));
  }
  return names;
}

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
  for (const TAVPackage* cube : cubePackages(model)) {
    for (const char* name : {"Calculated Measures", "KPIs"})
      if (const TAVPackage* folder = cube->getChildPackage(name))
        text += folder->getPath(true).str() + "\n" + lineageText(*folder);
  }
  return text;
}

std::vector<TAVPackage*> cubePackages(const TAVStoreModel& model) {
  const TAVPackage* folder = model.designPackages.get("Cubes");
  return folder ? folder->getChildPackages() : std::vector<TAVPackage*>();
}

}  // namespace tav::test
