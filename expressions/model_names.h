#pragma once

// The look-ups of names that MDX expressions use, as walks from the front would answer them: the first object
// of a name counts.

#include <memory>
#include <unordered_map>

#include "framework/model/model.h"
#include "reader/run/id_index.h"

namespace tav {

/// Dimensions and levels of a model by their names, letter case ignored. Made when dimensions are complete.
class ModelNames {
 public:
  explicit ModelNames(const TAVStoreModel& model);

  /// The first dimension of this name in the model's "Dimensions" package, its own elements before those of
  /// its packages; or null.
  [[nodiscard]] TAVDimension* findDimension(std::string_view name) const;
  /// The first level of this name in the hierarchy's order, or null.
  TAVLevel* findLevel(const TAVHierarchy& hierarchy, std::string_view name);

 private:
  IdIndex<TAVDimension> dimensions_;
  std::unordered_map<const TAVHierarchy*, IdIndex<TAVLevel>> levels_;  // of the hierarchies asked for
};

/// The measures of a cube's "Measure Groups" and "Calculated Measures" folders by name, compared exactly.
/// Made when the folders are complete.
class MeasureNames {
 public:
  explicit MeasureNames(const TAVDesignPackage& cubePackage);

  [[nodiscard]] TAVFeature* findInMeasureGroups(std::string_view name) const { return groups_.find(name); }
  [[nodiscard]] TAVFeature* findCalculated(std::string_view name) const { return calculated_.find(name); }

 private:
  IdIndex<TAVFeature> groups_;
  IdIndex<TAVFeature> calculated_;
};

}  // namespace tav
