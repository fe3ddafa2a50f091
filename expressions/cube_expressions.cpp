#include "expressions/cube_expressions.h"

#include "bridge/catalogue/literals.h"
#include "expressions/script_parser.h"
#include "framework/model/roles.h"
#include "framework/std/text.h"

namespace tav {
namespace {

/// The first element of the package that is of this kind, when it is a folder; or null.
TAVDesignPackage* findFolder(const TAVNamespace& package, std::string_view nativeType) {
  for (TAVNamespaceElement& element : package.namespaceElements)
    if (element.nativeType == nativeType) return as<TAVDesignPackage>(&element);
  return nullptr;
}

/// Keeps with a measure what resolving its expression has shown: its map goes at the end of the import when
/// nothing was found.
void keepExpression(const TAVFeatureMap& map, const TAVString& unresolved) {
  auto* measure = as<TAVMeasure>(map.destinationFeature.get());
  if (!measure) return;
  measure->expression = map.operation;
  measure->unresolved = unresolved;
}

void resolveExpression(cScriptParser& parser, TAVFeatureMap& map, TAVLog& log) {
  parser.setCurrentMap(map);
  parser.parse(&map);
  std::string unresolved;
  TAVStringHashSet::Iterator names(parser.getUnresolvedNames());
  while (names.hasNext()) {
    const TAVString& name = names.next();
    // A name may mean nothing where it stands and yet be that of a source found elsewhere in the text.
    if (map.sourceFeatures.get(name) || !map.destinationFeature) continue;
    QVT_SSXMLA::MICROSOFT_XMLA_FEATURE_NOTFOUND.log(log, name, map.destinationFeature->getPath(true));
    addLine(unresolved, name);
  }
  keepExpression(map, unresolved);
}

void resolveFolder(cScriptParser& parser, TAVDesignPackage& folder, TAVLog& log) {
  for (TAVModelElement* element : folder.getModelElements()) {
    for (TAVFeature& feature : static_cast<TAVClassifier*>(element)->features) {
      TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
      if (map && map->controlFeatures.empty()) resolveExpression(parser, *map, log);
    }
  }
}

}  // namespace

void resolveCubeExpressions(TAVCube& cube, ModelNames& names, TAVLog& log) {
  auto& package = static_cast<TAVDesignPackage&>(*cube.nameSpace);
  cScriptParser parser(&log, package, names);
  for (const std::string_view kind : {label::kCalculatedMeasures, label::kKpis, label::kMeasureGroups})
    if (TAVDesignPackage* folder = findFolder(package, kind)) resolveFolder(parser, *folder, log);
}

}  // namespace tav
