#pragma once

#include "framework/model/classes/structural_feature.h"
#include "framework/model/link.h"

/// A column of a data source view's table.
class TAV_API TAVColumn : public TAVStructuralFeature {
 public:
  TAVColumn() : TAVStructuralFeature(tav::classId<TAVColumn>) {}
  /// The expression of a column that the view or its named query computes.
  TAVString expression;
  /// The columns of the database that feed a named query's column, one a line: `dbo.[Fact Sales].Amount`, or
  /// the column's name alone when the query does not tell whose it is.
  TAVString querySources;
};

template <> struct tav::Meta<TAVColumn> {
  static constexpr std::array attributes{attribute<&TAVColumn::expression>("expression"),
                                         attribute<&TAVColumn::querySources>("querySources")};
  static constexpr std::array<LinkRow, 0> links{};
};
