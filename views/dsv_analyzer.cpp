#include "framework/model/model.h"
#include "framework/model/roles.h"
#include "views/dsv_reader.h"

using Analyzer = TAVDsvReader::DSVExpressionAnalyzer;

namespace {

constexpr TAVElementType kFeatureType = 77;
constexpr char kConditionSeparator = '_';

/// Whether `name` is what the database or a person calls the classifier.
bool isCalled(const TAVClassifier& classifier, std::string_view name) {
  const std::string folded = tav::foldCase(name);
  return tav::foldCase(classifier.physicalName.view()) == folded ||
         tav::foldCase(classifier.getName().view()) == folded;
}

/// Whether getDstCondition made this condition where a feature of another kind has its name: it then bears a
/// number, and like every condition made there, its name as physical name.
bool isNumbered(const TAVCondition& condition) {
  std::string_view number = condition.getName().view();
  if (condition.physicalName != number || !number.starts_with(tav::label::kSqlCondition)) return false;
  number.remove_prefix(tav::label::kSqlCondition.size());
  return number.size() > 1 && number[0] == kConditionSeparator && number[1] != '0' &&
         number.find_first_not_of("0123456789", 1) == number.npos;
}

}  // namespace

Analyzer::DSVExpressionAnalyzer(TAVDsvReader* reader, TAVLog* log)
    : TAVExpressionAnalyzer(log, TAVExpressionToolType(TAVExpressionToolType::kDatabase),
                            TAVExpressionLangType(TAVExpressionLangType::kSql)),
      reader_(reader) {}

Analyzer::DSVExpressionAnalyzer(const DSVExpressionAnalyzer& other) = default;
Analyzer& Analyzer::operator=(const DSVExpressionAnalyzer& other) = default;
Analyzer::~DSVExpressionAnalyzer() = default;

void Analyzer::getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) {
  const int count = node->getElementNamePartCount();
  const TAVElementNamePart* last = node->getElementNamePartByPosition(count - 1);
  const bool qualified = count > 1 && node->getExpectedElementType() == kFeatureType;
  getElementByName(qualified ? node->getElementNamePartByPosition(count - 2)->getName() : node->getName(),
                   last ? last->getName() : TAVString::getEmptyString(), count,
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

TAVCondition* Analyzer::getDstCondition(TAVClassifier* classifier) {
  if (!classifier) return nullptr;
  const tav::ClassId kind = tav::classId<TAVCondition>;
  const auto& features = classifier->features;
  if (TAVObject* named = features.get(tav::label::kSqlCondition, kind))
    return static_cast<TAVCondition*>(named);
  for (std::int32_t i = 0; i < features.getCount(kind); ++i) {
    auto* condition = static_cast<TAVCondition*>(features.at(i, kind));
    if (isNumbered(*condition)) return condition;
  }
  auto condition = tav::make<TAVCondition>(tav::label::kSqlCondition);
  TAVCondition& placed = classifier->addFeatureUniqueName(std::move(condition), kConditionSeparator);
  placed.setPhysicalName(placed.getName());
  return &placed;
}

bool Analyzer::isStarCandidate(TAVFeature* feature, bool /*qualified*/) {
  const auto* column = tav::as<TAVColumn>(feature);
  return column && column->structural;
}

bool Analyzer::isClassifierDefined(TAVClassifier* /*classifier*/) {
  return false;
}

void Analyzer::getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                TAVElementType elementType, TAVArgumentType argumentType,
                                const TAVVector& scope, TAVVector& result) {
  if (elementType != kFeatureType) return;
  TAVVector classifiers = scope;
  const TAVFeature* computed = nullptr;
  const TAVFeatureMap* map = getCurrentFeatureMap();
  if (scope.getCount() == 0 && map && map->classifierMap) {
    classifiers.add(map->classifierMap->destinationClassifier.get(), true, nullptr);
    if (argumentType.value() == TAVArgumentType::kSource) computed = map->destinationFeature.get();
  }
  for (void* object : classifiers) {
    auto* classifier = static_cast<TAVClassifier*>(object);
    if (classifier && (partCount <= 1 || isCalled(*classifier, text)))
      findIn(*classifier, name, computed, result);
  }
}

void Analyzer::findIn(TAVClassifier& classifier, const TAVString& name, const TAVFeature* computed,
                      TAVVector& result) const {
  const auto append = [&](TAVFeature& feature) {
    if (&feature != computed) result.add(&feature, true, nullptr);
  };
  if (reader_ && reader_->index_) {
    for (TAVFeature* feature : reader_->index_->findFeatures(classifier, name)) append(*feature);
    return;
  }
  // Outside of reading a view nobody says when its columns change.
  const std::string folded = tav::foldCase(name.view());
  bool found = false;
  for (TAVFeature& feature : classifier.features) {
    if (tav::foldCase(feature.physicalName.view()) != folded) continue;
    append(feature);
    found = true;
  }
  if (found) return;
  for (TAVFeature& feature : classifier.features)
    if (tav::foldCase(feature.getName().view()) == folded) append(feature);
}
