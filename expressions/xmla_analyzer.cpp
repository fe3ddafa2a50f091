#include "expressions/name_resolution.h"
#include "framework/bridgelib/names.h"
#include "reader/reader.h"

using Analyzer = TAVSQLServerXMLAImportBridge::XMLAExpressionAnalyzer;

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
  tav::resolveReference(*this, *node, scope, result);
}

TAVFeature* Analyzer::getDstFeature(TAVClassifier* classifier, const TAVString& name, int /*reserved*/) {
  return tav::resolveDestination(*this, classifier, name);
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
