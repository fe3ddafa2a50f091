#include "cubes/measure_group.h"

#include <algorithm>
#include <array>

#include "framework/bridgelib/properties.h"
#include "framework/model/lineage_writer.h"
#include "framework/model/roles.h"
#include "reader/run/measures.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

struct Aggregation {
  std::string_view function;
  int code;
};

constexpr std::array kAggregations{
    Aggregation{"Sum", TAVAggregationOperatorType::kSum},
    Aggregation{"AverageOfChildren", TAVAggregationOperatorType::kAverageOfChildren},
    Aggregation{"Count", TAVAggregationOperatorType::kCount},
    Aggregation{"Min", TAVAggregationOperatorType::kMinimum},
    Aggregation{"Max", TAVAggregationOperatorType::kMaximum},
    Aggregation{"DistinctCount", TAVAggregationOperatorType::kOther},
    Aggregation{"None", TAVAggregationOperatorType::kOther},
    Aggregation{"ByAccount", TAVAggregationOperatorType::kOther},
    Aggregation{"FirstChild", TAVAggregationOperatorType::kOther},
    Aggregation{"LastChild", TAVAggregationOperatorType::kOther},
    Aggregation{"FirstNonEmpty", TAVAggregationOperatorType::kOther},
    Aggregation{"LastNonEmpty", TAVAggregationOperatorType::kOther},
};

/// The table's line for a function, compared exactly, or null.
const Aggregation* findAggregation(std::string_view function) {
  const auto* row =
      std::find_if(kAggregations.begin(), kAggregations.end(),
                   [&](const Aggregation& aggregation) { return aggregation.function == function; });
  return row == kAggregations.end() ? nullptr : row;
}

void setUserProperty(TAVElement& element, const TAVString& name, const TAVString& value) {
  if (value.empty()) return;
  TAVPropertyType* type =
      fetchPropertyType(*element.getRootModel(), element.getElementType(), name,
                        TAVDesignLevelType(TAVDesignLevelType::kAny), "User", "", "SQL_VARCHAR", true);
  setPropertyValue(*type, value, element);
}

MeasureDescription describe(const TAVDOMElement& element, int code) {
  MeasureDescription description;
  description.name = element.getFirstElementValue(kName);
  description.description = element.getFirstElementValue(kDescription);
  description.nativeId = element.getFirstElementValue(kId);
  description.aggregation = TAVAggregationOperatorType(code);
  description.hidden = element.getFirstElementValue(kVisible) == "false";
  return description;
}

void importMeasure(ImportRun& run, const TAVDOMElement& element, TAVDimension& group, TAVCube& cube,
                   std::string_view viewId) {
  const TAVDOMElement* item = element.getFirstElement(kSource);
  const TAVDOMElement* binding = item ? item->getFirstElement(kSource) : nullptr;
  if (!binding) return;

  TAVString function = element.getFirstElementValue(kAggregateFunction);
  if (function.empty()) function = "Sum";  // what the server does without one
  const Aggregation* aggregation = findAggregation(function);
  const int code = aggregation ? aggregation->code : TAVAggregationOperatorType::kSum;
  TAVString dataType = element.getFirstElementValue(kDataType);
  if (dataType.empty()) dataType = item->getFirstElementValue(kDataType);

  TAVMeasure& measure = createMeasurePair(run, describe(element, code), dataType,
                                          element.getFirstElementValue(kMeasureExpression), group, cube);
  note(run, element, measure);
  // Many functions share a code; the property keeps which it was.
  setUserProperty(measure, "Aggregation", function);

  if (binding->getFirstElementValue(kColumnId).empty() && code == TAVAggregationOperatorType::kCount)
    featureMapOf(measure).operation = label::kRowCount;
  else if (binding->getFirstElementValue(kMeasureId).empty())
    run.columns.linkTo(measure, viewId, *binding);
}

}  // namespace

void importMeasureGroup(ImportRun& run, MeasureGroups& groups, const TAVDOMElement& element, TAVCube& cube,
                        std::string_view viewId, TAVDesignPackage& folder) {
  if (element.getTagName() != kMeasureGroup) return;
  auto made = make<TAVDimension>();
  setNameIdDescription(element, *made);
  made->measureGroup = true;
  made->dimensionType = TAVDimensionType(TAVDimensionType::kMeasures);
  made->nativeType = label::kMeasureGroup;
  TAVDimension& group = folder.addNamespaceElementUniqueName(std::move(made), '/');
  groups.add(folder, group);
  note(run, element, group);

  const TAVDOMElement* measures = element.getFirstElement(kMeasures);
  if (!measures) return;
  for (const TAVDOMElement& measure : measures->getElements())
    if (measure.getTagName() == kMeasure) importMeasure(run, measure, group, cube, viewId);
}

}  // namespace tav
