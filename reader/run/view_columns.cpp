#include "reader/run/view_columns.h"

#include "framework/model/lineage_writer.h"
#include "reader/run/vocabulary.h"
#include "views/dsv_reader.h"

namespace tav {

void ViewColumns::add(const TAVDesignPackage& view) {
  for (TAVModelElement* element : view.getModelElements()) {
    auto* table = static_cast<TAVClassifier*>(element);
    tables_.add(*table, view.nativeId, table->nativeId);
    for (TAVFeature& column : table->features) {
      // A column without an ID is named by bindings as the database names it.
      const TAVString& id = column.nativeId.empty() ? column.physicalName : column.nativeId;
      columns_.add(column, view.nativeId, table->nativeId, id);
    }
  }
}

// A view keeps the IDs of its tables and columns escaped; a binding may spell them out. A view's own ID is
// compared as written.

TAVFeature* ViewColumns::find(std::string_view viewId, std::string_view tableId,
                              std::string_view columnId) const {
  return columns_.find(viewId, TAVDsvReader::stringEscape(tableId), TAVDsvReader::stringEscape(columnId));
}

TAVClassifier* ViewColumns::findTable(std::string_view viewId, std::string_view tableId) const {
  return tables_.find(viewId, TAVDsvReader::stringEscape(tableId));
}

void ViewColumns::linkTo(TAVFeature& feature, std::string_view viewId, const TAVDOMElement& binding) const {
  if (TAVFeature* column = find(viewId, binding.getFirstElementValue(xmla::kTableId),
                                binding.getFirstElementValue(xmla::kColumnId)))
    addSource(featureMapOf(feature), *column);
}

}  // namespace tav
