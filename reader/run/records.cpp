#include "reader/run/records.h"

#include <cstring>

#include "framework/bridgelib/names.h"
#include "framework/model/model.h"
#include "reader/run/name_resolution.h"

namespace {

// As many as a database of some hundred objects needs; the table grows beyond.
constexpr int kRegistryBuckets = 1024;

const char* idOf(const void* object) {
  return static_cast<const TAVElement*>(object)->nativeId.c_str();
}

int compareIds(const char* a, const char* b) {
  if (*a == '\0' || *b == '\0') return 1;
  const int order = std::strcmp(a, b);
  return (order > 0) - (order < 0);
}

}  // namespace

ID2ObjectHashtable::ID2ObjectHashtable(int buckets) : TAVHashtable(buckets) {}

ID2ObjectHashtable::~ID2ObjectHashtable() = default;

int ID2ObjectHashtable::compare2Object(const void* a, const void* b) const {
  return compareIds(idOf(a), idOf(b));
}

int ID2ObjectHashtable::compare2Key(const void* object, const void* key) const {
  return compareIds(idOf(object), static_cast<const char*>(key));
}

std::uint32_t ID2ObjectHashtable::hashObject(const void* object) const {
  return stringHashCode(idOf(object));
}

std::uint32_t ID2ObjectHashtable::hashKey(const void* key) const {
  return stringHashCode(static_cast<const char*>(key));
}

XMLAExpressionAnalyzer::XMLAExpressionAnalyzer(TAVLog* log)
    : TAVExpressionAnalyzer(log, TAVExpressionToolType(TAVExpressionToolType::kDatabase),
                            TAVExpressionLangType(TAVExpressionLangType::kSql)) {}

XMLAExpressionAnalyzer::~XMLAExpressionAnalyzer() = default;

void XMLAExpressionAnalyzer::setCubesFolder(const TAVDesignPackage& folder) {
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

void XMLAExpressionAnalyzer::getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) {
  tav::resolveReference(*this, *node, scope, result);
}

TAVFeature* XMLAExpressionAnalyzer::getDstFeature(TAVClassifier* classifier, const TAVString& name,
                                                  int /*reserved*/) {
  return tav::resolveDestination(*this, classifier, name);
}

bool XMLAExpressionAnalyzer::isStarCandidate(TAVFeature* /*feature*/, bool /*qualified*/) {
  return true;
}

bool XMLAExpressionAnalyzer::isClassifierDefined(TAVClassifier* /*classifier*/) {
  return false;
}

void XMLAExpressionAnalyzer::getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                              TAVElementType /*elementType*/,
                                              TAVArgumentType /*argumentType*/, const TAVVector& /*scope*/,
                                              TAVVector& result) {
  if (partCount != 2) return;
  const std::int32_t dot = text.find(".");
  const TAVString key = removeQuotes(dot < 0 ? TAVString() : text.left(dot));
  const auto [first, last] = dimensions_.equal_range(key);
  for (auto dimension = first; dimension != last; ++dimension)
    if (TAVFeature* feature = dimension->second->features.get(name)) result.add(feature, true, nullptr);
}

namespace tav {

Records::Records(TAVLog* log) : registry(kRegistryBuckets), analyzer(log) {}

void Records::add(TAVElement& object) {
  registry.add(&object, true, nullptr);
}

void Records::add(TAVDimension& dimension) {
  dimensions.add(&dimension, true, nullptr);
  add(static_cast<TAVElement&>(dimension));
}

void Records::add(TAVCube& cube) {
  cubes.add(&cube, true, nullptr);
  add(static_cast<TAVElement&>(cube));
}

}  // namespace tav
