#include "reader/run/view_columns.h"

#include "framework/model/lineage_writer.h"
#include "reader/run/vocabulary.h"
#include "views/dsv_reader.h"

namespace tav {

void ViewColumns::add(const TAVDesignPackage& view) {
  for (const TAVModelElement* table : view.getModelElements()) {
    for (TAVFeature& column : static_cast<const TAVClassifier*>(table)->features) {
      // A column without an ID is named by bindings as the database names it.
      const TAVString& id = column.nativeId.empty() ? column.physicalName : column.nativeId;
      columns_.add(column, view.nativeId, table->nativeId, id);
    }
  }
}

void ViewColumns::linkTo(TAVFeature& feature, std::string_view viewId, const TAVDOMElement& binding) const {
  // A view keeps the IDs of its tables and columns escaped; a binding may spell them out. A view's own ID is
  // compared as written.
  const TAVString tableId = TAVDsvReader::stringEscape(binding.getFirstElementValue(xmla::kTableId));
  const TAVString columnId = TAVDsvReader::stringEscape(binding.getFirstElementValue(xmla::kColumnId));
  if (TAVFeature* column = columns_.find(viewId, tableId, columnId))
    addSource(featureMapOf(feature), *column);
}

}  // namespace tav
