#pragma once

#include "reader/run/import_run.h"

namespace tav {

/// Texts and settings of a measure that is to be made.
struct MeasureDescription {
  TAVString name;
  TAVString description;
  TAVString nativeType;
  TAVString nativeId;
  TAVAggregationOperatorType aggregation;
  bool hidden = false;
};

/// A new measure of `owner`; `plainAdd` keeps its name even if it repeats.
TAVMeasure& createMeasure(TAVClassifier& owner, const MeasureDescription& measure, bool plainAdd);

/// A new measure of a measure group with its copy in the cube and the lineage from the first to the second.
/// Returns the measure group's one.
TAVMeasure& createMeasurePair(ImportRun& run, const MeasureDescription& measure, const TAVString& dataType,
                              const TAVString& expression, TAVDimension& measureGroup, TAVCube& cube);

}  // namespace tav
