#pragma once

// Reads the data source views of a definition: the tables and columns that its dimensions and cubes are fed
// from.

#include <memory>

#include "framework/dom/dom.h"
#include "framework/dsv/connection_index.h"
#include "framework/model/classes/design_package.h"
#include "framework/types/data_type_converter.h"

/// Turns a DataSourceView element into a package of tables and columns. A copy shares the model, the log and
/// the index of connections.
class TAV_API TAVDsvReader {
 public:
  /// A reader that puts types into `model` and refers to its store connections; `log` may be null. Without
  /// `readAllSources` tables of another data source than the view's own are left out; without `keepIds`
  /// packages, tables and columns get no `nativeId`. Readers of many views share one index of the model's
  /// connections; a reader without one makes its own.
  TAVDsvReader(TAVStoreModel* model, TAVLog* log, bool readAllSources, bool keepIds,
               std::shared_ptr<tav::ConnectionIndex> connections = nullptr);

  /// The view as a package that is not placed yet, or null when the element is null or no DataSourceView.
  /// Each table is listed by the store connection whose `nativeId` is the ID of the data source that feeds
  /// it.
  [[nodiscard]] tav::Owned<TAVDesignPackage> importDataSourceView(const TAVDOMElement* element);

  /// The ID of a table or column as the view keeps it: every character that an XML name cannot hold is
  /// written _xHHHH_ (_xHHHHHHHH_ above U+FFFF). Text that is written so already stays as it is, so escaping
  /// twice gives the same. Names are those of XML 1.0 up to its fourth edition, without the colon, as the
  /// tools that write definitions have them.
  static TAVString stringEscape(std::string_view text);
  /// The text that an escaped name stands for. A code that is no character of XML stays as it is written.
  static TAVString stringUnescape(std::string_view name);

 private:
  class Properties;

  tav::Owned<TAVTable> importTable(const TAVDOMElement& element, std::string_view viewSource);
  tav::Owned<TAVColumn> importColumn(const TAVDOMElement& element);
  TAVDerivedType& importType(const TAVDOMElement& column);

  TAVStoreModel* model_;
  bool readAllSources_;
  bool keepIds_;
  TAVDataTypeConverter types_;
  std::shared_ptr<tav::ConnectionIndex> connections_;
};
