#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/model/class_list.h"
#include "framework/std/string.h"

namespace tav {

/// Finds the tables and columns of a view by the names that the database has for them, ignoring letter case.
/// It holds as long as no table or column comes, goes or changes its name.
class ViewIndex {
 public:
  explicit ViewIndex(const TAVDesignPackage& view);

  /// The first table or view of the database of this name and data source, or null. A name without a schema,
  /// and a table whose schema is not known, stand in the schema dbo. A name with more than a schema in front
  /// has none: it may be of another database.
  [[nodiscard]] TAVTable* findTable(const std::vector<std::string>& nameParts,
                                    std::string_view dataSourceId) const;

  /// The features of a classifier that have this physical name, or when there is none this name.
  [[nodiscard]] const std::vector<TAVFeature*>& findFeatures(const TAVClassifier& classifier,
                                                             std::string_view name);

 private:
  using Features = std::unordered_map<std::string, std::vector<TAVFeature*>>;
  struct Names {
    Features physical;
    Features shown;
  };
  const Names& namesOf(const TAVClassifier& classifier);

  std::unordered_map<std::string, TAVTable*> tables_;
  std::unordered_map<const TAVClassifier*, Names> names_;
};

}  // namespace tav
