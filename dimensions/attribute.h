#pragma once

#include <deque>
#include <vector>

#include "reader/run/import_run.h"

namespace tav {

/// What is noted of one Attribute element, for the levels that are built from it.
struct AttributeRecord {
  TAVDimensionAttribute* attribute = nullptr;  ///< null when no column is bound to it
  std::vector<std::string> relatedIds;         ///< of its attribute relationships, in document order
};

/// The attributes of one dimension by ID; they refer to each other and are referred to by levels.
class AttributeRecords {
 public:
  /// Enters a record; of those with one ID the first is found.
  void add(std::string_view id, AttributeRecord record);
  [[nodiscard]] const AttributeRecord* find(std::string_view id) const { return byId_.find(id); }

 private:
  std::deque<AttributeRecord> records_;  // grows without moving what the index points to
  IdIndex<AttributeRecord> byId_;
};

/// Makes an attribute of the dimension, with the column of the view `viewId` that feeds it, and its record.
void importAttribute(ImportRun& run, const TAVDOMElement& element, TAVDimension& dimension,
                     std::string_view viewId, AttributeRecords& records);

}  // namespace tav
