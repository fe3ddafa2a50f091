#include "expressions/script_parser.h"

#include <algorithm>
#include <array>

#include "framework/bridgelib/names.h"
#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "reader/run/name_resolution.h"

namespace {

constexpr TAVElementType kFeatureType = tav::kClassRanges[tav::classId<TAVFeature>].code;
constexpr int kUsualNames = 5;
constexpr std::string_view kKpiFunctionPrefix = "Kpi";

/// The part of a KPI that a function gives, or null: KpiValue gives its "Value".
const tav::KpiPart* findKpiPart(const TAVString& function) {
  if (!function.startsWith(kKpiFunctionPrefix, false)) return nullptr;
  const TAVString name = function.mid(static_cast<std::int32_t>(kKpiFunctionPrefix.size()));
  const auto* part = std::find_if(tav::kKpiParts.begin(), tav::kKpiParts.end(),
                                  [&](const tav::KpiPart& kpi) { return name.equals(kpi.name, false); });
  return part == tav::kKpiParts.end() ? nullptr : part;
}

/// The first parts of a reference, split at every dot, also those inside brackets, and unquoted.
std::array<TAVString, 3> partsOf(std::string_view text) {
  std::array<TAVString, 3> parts;
  for (TAVString& part : parts) {
    const std::size_t dot = text.find('.');
    part = removeQuotes(text.substr(0, dot));
    if (dot == text.npos) break;
    text.remove_prefix(dot + 1);
  }
  return parts;
}

bool meansEveryLevel(const TAVString& part) {
  return part.equals("CurrentMember", false) || part.equals("NextMember", false) ||
         part.equals("PrevMember", false);
}

bool isStringLiteral(const TAVString& text) {
  return text.startsWith("\"", true) && text.endsWith("\"", true);
}

/// The attribute behind the first key of a level, or null.
TAVDimensionAttribute* keyAttributeOf(const TAVLevel& level) {
  const TAVLevelKey* key = level.levelKeys.first();
  const TAVLevelAttribute* attribute = key ? key->levelAttributes.first() : nullptr;
  return attribute ? attribute->dimensionAttribute.get() : nullptr;
}

}  // namespace

cScriptParser::cScriptParser(TAVLog* log, TAVDesignPackage& cubePackage, tav::ModelNames& names)
    : TAVExpressionAnalyzer(log, TAVExpressionToolType(TAVExpressionToolType::kAnalysisServices),
                            TAVExpressionLangType(TAVExpressionLangType::kMdx)),
      cubePackage_(cubePackage),
      names_(names),
      measures_(cubePackage),
      unresolvedNames_(kUsualNames) {
  if (const TAVPackage* folder = cubePackage.getChildPackage(tav::label::kKpis))
    for (const TAVNamespaceElement& kpi : folder->namespaceElements)
      kpiNameLengths_.insert(kpi.getName().view().size());
}

cScriptParser::~cScriptParser() = default;

void cScriptParser::setCurrentMap(TAVFeatureMap& map) {
  currentMap_ = &map;
  unresolvedNames_.clear();
}

void cScriptParser::getSrcElements(TAVOperationNode* operation, TAVVector& /*result*/) {
  if (!findKpiPart(operation->getName()) || operation->getExpressionNodeCount() != 1) return;
  const std::string_view argument = operation->getExpressionNodeByPosition(0)->getText();
  if (!mayNameKpi(argument)) return;
  TAVString text(argument);
  TAVVector arguments;
  arguments.add(&text, true, nullptr);
  TAVVector unused;  // a KPI's value is linked by its function, as the call itself names nothing
  getFunctionElements(operation->getName(), arguments, kFeatureType,
                      TAVArgumentType(TAVArgumentType::kSource), unused);
}

void cScriptParser::getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) {
  tav::resolveReference(*this, *node, scope, result);
}

TAVFeature* cScriptParser::getDstFeature(TAVClassifier* classifier, const TAVString& name, int /*reserved*/) {
  return tav::resolveDestination(*this, classifier, name);
}

/// Whether a KPI has a name as long as the text, with or without quotes. The texts of nested calls hold each
/// other; those that can name nothing are not even copied.
bool cScriptParser::mayNameKpi(std::string_view text) const {
  return kpiNameLengths_.contains(text.size()) ||
         (text.size() >= 2 && kpiNameLengths_.contains(text.size() - 2));
}

void cScriptParser::getFunctionElements(const TAVString& functionName, const TAVVector& arguments,
                                        TAVElementType /*elementType*/, TAVArgumentType /*argumentType*/,
                                        TAVVector& /*result*/) {
  const tav::KpiPart* part = findKpiPart(functionName);
  if (!part || arguments.getCount() != 1) return;
  const TAVString name = removeQuotes(*static_cast<const TAVString*>(arguments[0]));
  const TAVPackage* folder = cubePackage_.getChildPackage(tav::label::kKpis);
  const auto* kpi = folder ? tav::as<TAVDimension>(folder->namespaceElements.get(name)) : nullptr;
  if (!kpi || kpi->dimensionType.value() != TAVDimensionType::kMeasures ||
      kpi->nativeType != tav::label::kKpi)
    return;
  if (TAVFeature* measure = kpi->features.get(part->name)) linkSource(*measure);
}

void cScriptParser::getElementByName(const TAVString& text, const TAVString& /*name*/, int partCount,
                                     TAVElementType /*elementType*/, TAVArgumentType /*argumentType*/,
                                     const TAVVector& /*scope*/, TAVVector& result) {
  const auto [first, second, third] = partsOf(text);
  // What goes into `result` becomes a source of the caller's; the attributes behind levels, which may be many
  // and are no name of the text, are linked here.
  Features found;
  // A dimension that bears the name comes before the measures, even one that is called "Measures".
  if (TAVDimension* dimension = names_.findDimension(first))
    findInDimension(*dimension, second, third, found, result);
  if (found.empty() && (partCount == 1 || first.equals("Measures", false))) {
    if (TAVFeature* measure = findMeasure(second.empty() ? first : second)) {
      found.push_back(measure);
      result.add(measure, true, nullptr);
    }
  }
  if (result.getCount() == 0)
    for (TAVFeature* feature : found) linkSource(*feature);
  if (result.getCount() == 0 && found.empty() && !isStringLiteral(text)) unresolvedNames_.add(text);
}

void cScriptParser::findInDimension(TAVDimension& dimension, const TAVString& member, const TAVString& level,
                                    Features& found, TAVVector& result) {
  // A hierarchy often bears the name of the attribute it begins with, and hides it.
  if (const TAVHierarchy* hierarchy = dimension.hierarchies.get(member)) {
    findLevelAttributes(*hierarchy, level, found);
  } else if (TAVFeature* attribute = dimension.features.get(member)) {
    found.push_back(attribute);
    result.add(attribute, true, nullptr);
  }
}

void cScriptParser::findLevelAttributes(const TAVHierarchy& hierarchy, const TAVString& level,
                                        Features& found) {
  const auto take = [&](const TAVLevel* used) {
    if (TAVDimensionAttribute* attribute = used ? keyAttributeOf(*used) : nullptr) found.push_back(attribute);
  };
  if (!meansEveryLevel(level)) return take(names_.findLevel(hierarchy, level));
  for (const TAVHierarchyLevelAssociation& association : hierarchy.hierarchyLevelAssociations)
    take(association.level.get());
}

TAVFeature* cScriptParser::findMeasure(const TAVString& name) const {
  // Cubes allow a calculated measure to repeat a name; the one with data is meant.
  TAVFeature* measure = measures_.findInMeasureGroups(name);
  return measure ? measure : measures_.findCalculated(name);
}

void cScriptParser::linkSource(TAVFeature& feature) {
  if (currentMap_) tav::addSource(*currentMap_, feature);
}
