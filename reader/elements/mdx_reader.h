#pragma once

// What elements say in MDX. It is resolved once the whole model is there; here it is only put down with its
// item and the names that it may use.

#include "reader/elements/element_reading.h"

namespace tav {

class MdxReader {
 public:
  explicit MdxReader(ElementReading& reading) : reading_(reading) {}

  void addExpression(const ElementPlace& place, std::string_view text, RelationKind relation);
  /// Sets are called by their bare names, which may hold blanks.
  void addCalculationName(const ElementPlace& place, std::string_view name, RelationKind relation);
  /// What an action is offered on: `MeasureGroupMeasures("Sales")`, or any expression.
  void addTarget(const ElementPlace& place, const ElementRule& rule, std::string_view text);
  /// What is said of a calculated measure beside the script that defines it, or of a set or cells there.
  void openCalculation(ElementPlace& place);

 private:
  ElementReading& reading_;
};

}  // namespace tav
