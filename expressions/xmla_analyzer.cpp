#include "framework/bridgelib/names.h"
#include "reader/reader.h"

using Analyzer = TAVSQLServerXMLAImportBridge::XMLAExpressionAnalyzer;

namespace {

constexpr TAVElementType kFeatureType = 77;

}  // namespace

Analyzer::XMLAExpressionAnalyzer(TAVLog* log)
    : TAVExpressionAnalyzer(log, TAVExpressionToolType(TAVExpressionToolType::kDatabase),
                            TAVExpressionLangType(TAVExpressionLangType::kSql)) {}

Analyzer::~XMLAExpressionAnalyzer() = default;

void Analyzer::setCubesFolder(const TAVDesignPackage& folder) {
  dimensions_.clear();
  for (const TAVPackage* package : folder.getChildPackages()) {
    if (!tav::is<TAVDesignPackage>(*package)) continue;
    for (TAVNamespaceElement& element : package->namespaceElements) {
      auto* dimension = tav::as<TAVDimension>(&element);
      if (dimension && dimension->nativeId == package->nativeId)
        dimensions_.emplace(dimension->nativeId, dimension);
    }
  }
}

void Analyzer::getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) {
  const int count = node->getElementNamePartCount();
  const TAVElementNamePart* last = node->getElementNamePartByPosition(count - 1);
  getElementByName(node->getName(), last ? last->getName() : TAVString::getEmptyString(), count,
                   node->getExpectedElementType(), TAVArgumentType(TAVArgumentType::kSource), scope, result);
}

TAVFeature* Analyzer::getDstFeature(TAVClassifier* classifier, const TAVString& name, int /*reserved*/) {
  TAVVector scope;
  scope.add(classifier, true, nullptr);
  TAVVector result;
  getElementByName(name, name, 1, kFeatureType, TAVArgumentType(TAVArgumentType::kDestination), scope,
                   result);
  return result.getCount() == 1 ? static_cast<TAVFeature*>(result[0]) : nullptr;
}

bool Analyzer::isStarCandidate(TAVFeature* /*feature*/, bool /*qualified*/) {
  return true;
}

bool Analyzer::isClassifierDefined(TAVClassifier* /*classifier*/) {
  return false;
}

void Analyzer::getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                TAVElementType /*elementType*/, TAVArgumentType /*argumentType*/,
                                const TAVVector& /*scope*/, TAVVector& result) {
  if (partCount != 2) return;
  const std::int32_t dot = text.find(".");
  const TAVString key = removeQuotes(dot < 0 ? TAVString() : text.left(dot));
  const auto [first, last] = dimensions_.equal_range(key);
  for (auto dimension = first; dimension != last; ++dimension)
    if (TAVFeature* feature = dimension->second->features.get(name)) result.add(feature, true, nullptr);
}
