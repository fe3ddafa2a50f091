#pragma once

#include "framework/model/classes/structural_feature.h"
#include "framework/model/link.h"

/// A condition under which rows belong to a classifier.
class TAV_API TAVCondition : public TAVStructuralFeature {
 public:
  TAVCondition() : TAVStructuralFeature(tav::classId<TAVCondition>) {}
  /// The text of the condition; of several each begins a line.
  TAVString expression;
  /// The columns of the database that it names, one a line, as on TAVColumn.
  TAVString querySources;
};

template <> struct tav::Meta<TAVCondition> {
  static constexpr std::array attributes{attribute<&TAVCondition::expression>("expression"),
                                         attribute<&TAVCondition::querySources>("querySources")};
  static constexpr std::array<LinkRow, 0> links{};
};
