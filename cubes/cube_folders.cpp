#include "bridge/catalogue/literals.h"
#include "expressions/script_parser.h"
#include "reader/reader.h"

namespace {

/// The first element of the package that is of this kind, when it is a folder; or null.
TAVDesignPackage* findFolder(const TAVNamespace& package, std::string_view nativeType) {
  for (TAVNamespaceElement& element : package.namespaceElements)
    if (element.nativeType == nativeType) return tav::as<TAVDesignPackage>(&element);
  return nullptr;
}

/// Keeps with a measure what resolving its expression has shown, for the time after its map is gone.
void keepExpression(const TAVFeatureMap& map, const TAVString& unresolved) {
  auto* measure = tav::as<TAVMeasure>(map.destinationFeature.get());
  if (!measure) return;
  measure->expression = map.operation;
  measure->unresolved = unresolved;
}

}  // namespace

void TAVSQLServerXMLAImportBridge::resolveCubeExpressions(TAVCube& cube) {
  auto& package = static_cast<TAVDesignPackage&>(*cube.nameSpace);
  cScriptParser parser(log_, package, *names_);
  for (const char* kind : {"Calculated Measures", "KPIs", "Measure Groups"})
    resolveFolderExpressions(parser, findFolder(package, kind));
}

void TAVSQLServerXMLAImportBridge::resolveFolderExpressions(cScriptParser& parser, TAVDesignPackage* folder) {
  if (!folder) return;
  for (TAVModelElement* element : folder->getModelElements()) {
    for (TAVFeature& feature : static_cast<TAVClassifier*>(element)->features)
      if (TAVFeatureMap* map = feature.getDestinationOfFeatureMap())
        if (map->controlFeatures.empty()) resolveExpression(parser, *map);
  }
}

void TAVSQLServerXMLAImportBridge::resolveExpression(cScriptParser& parser, TAVFeatureMap& map) {
  parser.setCurrentMap(map);
  parser.parse(&map);
  TAVString unresolved;
  TAVStringHashSet::Iterator names(parser.getUnresolvedNames());
  while (names.hasNext()) {
    const TAVString& name = names.next();
    if (map.sourceFeatures.get(name) || !map.destinationFeature) continue;
    QVT_SSXMLA::MICROSOFT_XMLA_FEATURE_NOTFOUND.log(*log_, name, map.destinationFeature->getPath(true));
    if (!unresolved.empty()) unresolved += "\n";
    unresolved += name;
  }
  keepExpression(map, unresolved);
}
