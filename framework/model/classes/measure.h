#pragma once

#include "framework/model/classes/structural_feature.h"
#include "framework/model/link.h"

/// A measure of a measure group or cube, a calculated measure, or a value of a KPI.
class TAV_API TAVMeasure : public TAVStructuralFeature {
 public:
  TAVMeasure() : TAVStructuralFeature(tav::classId<TAVMeasure>) {}
  TAVAggregationOperatorType aggregation;
  bool hidden = false;
  /// The expression that computes the measure, kept when its map goes.
  TAVString expression;
  /// The names in the expression that were not found, a line each, in the order of the text.
  TAVString unresolved;
  /// On a measure that a cube lists because of a linked measure group: that group's name, where several
  /// linked groups of the cube have a measure of this name. Empty where the name alone tells.
  TAVString linkedGroup;
};

template <> struct tav::Meta<TAVMeasure> {
  static constexpr std::array attributes{
      attribute<&TAVMeasure::aggregation>("aggregation"), attribute<&TAVMeasure::hidden>("hidden"),
      attribute<&TAVMeasure::expression>("expression"), attribute<&TAVMeasure::unresolved>("unresolved"),
      attribute<&TAVMeasure::linkedGroup>("linkedGroup")};
  static constexpr std::array<LinkRow, 0> links{};
};
