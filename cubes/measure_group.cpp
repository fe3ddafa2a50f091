#include <algorithm>
#include <array>

#include "framework/bridgelib/properties.h"
#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

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

}  // namespace

void TAVSQLServerXMLAImportBridge::importMeasureGroup(const TAVDOMElement& element, TAVCube& cube,
                                                      const TAVString& viewId, TAVDesignPackage& folder) {
  if (element.getTagName() != kMeasureGroup) return;
  auto made = tav::make<TAVDimension>();
  setNameIdDescription(element, *made);
  made->measureGroup = true;
  made->dimensionType = TAVDimensionType(TAVDimensionType::kMeasures);
  made->nativeType = "MeasureGroup";
  TAVDimension& group = folder.addNamespaceElementUniqueName(std::move(made), '/');
  measureGroups_[&folder].add(group);
  group.addClassifierMap(tav::make<TAVClassifierMap>()).addDestinationClassifier(group);

  const TAVDOMElement* measures = element.getFirstElement(kMeasures);
  if (!measures) return;
  for (const TAVDOMElement& measure : measures->getElements())
    if (measure.getTagName() == kMeasure) importMeasure(measure, group, cube, viewId);
}

void TAVSQLServerXMLAImportBridge::importMeasure(const TAVDOMElement& element, TAVDimension& group,
                                                 TAVCube& cube, const TAVString& viewId) {
  const TAVDOMElement* item = element.getFirstElement(kSource);
  const TAVDOMElement* binding = item ? item->getFirstElement(kSource) : nullptr;
  if (!binding) return;

  TAVString function = element.getFirstElementValue(kAggregateFunction);
  if (function.empty()) function = "Sum";
  const Aggregation* aggregation = findAggregation(function);
  const int code = aggregation ? aggregation->code : TAVAggregationOperatorType::kSum;
  TAVString dataType = element.getFirstElementValue(kDataType);
  if (dataType.empty()) dataType = item->getFirstElementValue(kDataType);

  MeasureDescription description;
  description.name = element.getFirstElementValue(kName);
  description.description = element.getFirstElementValue(kDescription);
  description.nativeId = element.getFirstElementValue(kId);
  description.aggregation = TAVAggregationOperatorType(code);
  description.hidden = element.getFirstElementValue(kVisible) == "false";
  TAVMeasure& measure =
      createMeasurePair(description, dataType, element.getFirstElementValue(kMeasureExpression), group, cube);
  setUserProperty(measure, "Aggregation", function);

  const TAVString columnId = TAVDsvReader::stringEscape(binding->getFirstElementValue(kColumnId));
  if (columnId.empty() && code == TAVAggregationOperatorType::kCount)
    measure.getDestinationOfFeatureMap()->operation = "COUNT(*)";
  else if (binding->getFirstElementValue(kMeasureId).empty())
    linkFeatureToColumn(viewId, measure, TAVDsvReader::stringEscape(binding->getFirstElementValue(kTableId)),
                        columnId);
}
