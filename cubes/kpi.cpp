#include <array>

#include "reader/reader.h"
#include "reader/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace {

/// One measure of a KPI: the element that holds its expression and names it, and its kind.
struct KpiMeasure {
  std::string_view name;
  const char* nativeType;
};

constexpr std::array kKpiMeasures{KpiMeasure{kValue, "KPI Value"}, KpiMeasure{kGoal, "KPI Goal"},
                                  KpiMeasure{kStatus, "KPI Status"}, KpiMeasure{kTrend, "KPI Trend"}};

}  // namespace

void TAVSQLServerXMLAImportBridge::importKpis(const TAVDOMElement* element, TAVCube& cube,
                                              TAVDesignPackage& package) {
  if (!element || element->getElementCount() == 0) return;
  TAVDesignPackage& folder = addCubeFolder(package, "KPIs");
  for (const TAVDOMElement& kpi : element->getElements()) importKpi(kpi, cube, folder);
}

void TAVSQLServerXMLAImportBridge::importKpi(const TAVDOMElement& element, TAVCube& cube,
                                             TAVDesignPackage& folder) {
  const TAVString name = element.getFirstElementValue(kName);
  auto made = tav::make<TAVDimension>(name);
  made->description = element.getFirstElementValue(kDescription);
  made->dimensionType = TAVDimensionType(TAVDimensionType::kMeasures);
  made->nativeType = "KPI";
  TAVDimension& dimension = folder.addNamespaceElementUniqueName(std::move(made), '/');
  dimension.addClassifierMap(tav::make<TAVClassifierMap>()).addDestinationClassifier(dimension);

  for (const KpiMeasure& row : kKpiMeasures) {
    MeasureDescription description;
    description.name = name + " " + TAVString(row.name);
    description.nativeType = row.nativeType;
    TAVMeasure& measure =
        createMeasurePair(description, "Binary", element.getFirstElementValue(row.name), dimension, cube);
    measure.setName(row.name);
  }
}
