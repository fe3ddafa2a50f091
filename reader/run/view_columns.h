#pragma once

#include "framework/dom/dom.h"
#include "framework/model/model.h"
#include "reader/run/id_index.h"

namespace tav {

/// The columns of all data source views by the IDs of view, table and column.
class ViewColumns {
 public:
  /// Enters the columns of a view that has its place, and its IDs, in the model.
  void add(const TAVDesignPackage& view);
  /// Gives a feature the column that a binding names as a source. An unknown table or column is no error: the
  /// feature then stays without lineage. The feature has an owner already.
  void linkTo(TAVFeature& feature, std::string_view viewId, const TAVDOMElement& binding) const;
  /// The column that IDs as a binding has them mean; or null.
  [[nodiscard]] TAVFeature* find(std::string_view viewId, std::string_view tableId,
                                 std::string_view columnId) const;
  /// The same for a table.
  [[nodiscard]] TAVClassifier* findTable(std::string_view viewId, std::string_view tableId) const;
  void clear() {
    columns_.clear();
    tables_.clear();
  }

 private:
  IdIndex<TAVClassifier> tables_;
  IdIndex<TAVFeature> columns_;
};

}  // namespace tav
