#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reader/elements/references.h"
#include "views/view_index.h"

namespace tav {

/// What the queries of partitions read: tables and columns of the data source views, as far as those show
/// them.
class PartitionQueries {
 public:
  PartitionQueries(ImportRun& run, IdReferences& references) : run_(run), references_(references) {}

  /// Lets the partition read what its query names. A table or column that no view shows is an open name.
  void add(ItemId partition, std::string_view query, std::string_view dataSourceId);
  /// The same for a binding to a table of the database.
  void addTable(ItemId partition, const TAVDOMElement& binding);

 private:
  /// A table of the database as a view shows it; no table where none does.
  struct Shown {
    ViewIndex* view = nullptr;
    const TAVTable* table = nullptr;

    [[nodiscard]] const TAVFeature* findColumn(std::string_view name) const;
  };

  Shown addTable(ItemId partition, const std::vector<std::string>& nameParts, std::string_view dataSourceId);
  [[nodiscard]] Shown find(const std::vector<std::string>& nameParts, std::string_view dataSourceId);
  std::vector<ViewIndex>& views();

  ImportRun& run_;
  IdReferences& references_;
  std::vector<ViewIndex> views_;  // made when the first query comes
  bool isMade_ = false;
};

}  // namespace tav
