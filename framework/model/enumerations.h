#pragma once

// The enumerations of the model. A value is checked when it is made, so that no object can hold one that
// its enumeration does not know.

#include <string_view>

#include "framework/api.h"

namespace tav {

struct EnumerationBase {};

[[noreturn]] TAV_API void failInvalid(std::string_view enumeration, int value);

/// A number from 0 that `Derived::isValid` has accepted.
template <class Derived> class Enumeration : public EnumerationBase {
 public:
  constexpr Enumeration() = default;
  /// Throws a TAVException when `value` is no value of the enumeration.
  explicit constexpr Enumeration(int value) : value_(value) {
    if (!Derived::isValid(value)) failInvalid(Derived::kName, value);
  }
  static constexpr bool isValid(int value) { return value >= 0 && value <= Derived::kLast; }
  [[nodiscard]] constexpr int value() const { return value_; }
  friend constexpr bool operator==(const Enumeration& a, const Enumeration& b) {
    return a.value_ == b.value_;
  }

 private:
  int value_ = 0;
};

}  // namespace tav

/// How the values of a measure are added up.
class TAVAggregationOperatorType : public tav::Enumeration<TAVAggregationOperatorType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVAggregationOperatorType";
  static constexpr int kSum = 0;
  static constexpr int kAverageOfChildren = 1;
  static constexpr int kCount = 2;
  static constexpr int kMinimum = 3;
  static constexpr int kMaximum = 4;
  static constexpr int kOther = 7;
  static constexpr int kLast = 7;
};

/// What a dimension describes: 0 stands for measure groups and KPIs.
class TAVDimensionType : public tav::Enumeration<TAVDimensionType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVDimensionType";
  static constexpr int kMeasures = 0;
  static constexpr int kTime = 1;
  static constexpr int kRegular = 2;
  static constexpr int kLast = 2;
};

class TAVHierarchyType : public tav::Enumeration<TAVHierarchyType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVHierarchyType";
  static constexpr int kLevelBased = 0;
  static constexpr int kLast = 0;
};

class TAVStoreType : public tav::Enumeration<TAVStoreType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVStoreType";
  static constexpr int kUndefined = 0;
  static constexpr int kDefinition = 1;
  static constexpr int kLast = 1;
};

/// The level of design that a user property type belongs to.
class TAVDesignLevelType : public tav::Enumeration<TAVDesignLevelType> {
 public:
  using Enumeration::Enumeration;
  static constexpr std::string_view kName = "TAVDesignLevelType";
  static constexpr int kAny = 0;
  static constexpr int kLast = 0;
};
