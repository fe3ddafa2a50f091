#include "cubes/kpi.h"

#include "framework/model/roles.h"
#include "reader/run/measures.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

/// The elements that hold the expressions of a KPI's parts, in the order of the parts.
constexpr std::array kExpressionElements{kValue, kGoal, kStatus, kTrend};
static_assert(kExpressionElements.size() == kKpiParts.size());

}  // namespace

void importKpi(ImportRun& run, const TAVDOMElement& element, TAVCube& cube, TAVDesignPackage& folder) {
  const TAVString name = element.getFirstElementValue(kName);
  auto made = make<TAVDimension>(name);
  made->description = element.getFirstElementValue(kDescription);
  made->dimensionType = TAVDimensionType(TAVDimensionType::kMeasures);
  made->nativeType = label::kKpi;
  TAVDimension& dimension = folder.addNamespaceElementUniqueName(std::move(made), '/');
  note(run, element, dimension);

  for (std::size_t i = 0; i < kKpiParts.size(); ++i) {
    MeasureDescription description;
    description.name = name + " " + TAVString(kKpiParts[i].name);
    description.nativeType = kKpiParts[i].nativeType;
    TAVMeasure& measure = createMeasurePair(
        run, description, "Binary", element.getFirstElementValue(kExpressionElements[i]), dimension, cube);
    // The long name is for the cube, where all KPIs stand together.
    measure.setName(kKpiParts[i].name);
  }
}

}  // namespace tav
