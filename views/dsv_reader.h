#pragma once

// Reads the data source views of a definition: the tables and columns that its dimensions and cubes are fed
// from.

#include <memory>

#include "framework/dom/dom.h"
#include "framework/expression/analyzer.h"
#include "framework/model/classes/column.h"
#include "framework/model/classes/design_package.h"
#include "framework/model/classes/table.h"
#include "framework/types/data_type_converter.h"
#include "views/connection_index.h"
#include "views/view_index.h"

/// Turns a DataSourceView element into a package of tables and columns, with the lineage that computed
/// columns and named queries make between them. A copy shares the model, the log and the index of
/// connections.
class TAV_API TAVDsvReader {
 public:
  /// Finds the columns that SQL expressions name in the tables of a view, ignoring letter case.
  class TAV_API DSVExpressionAnalyzer : public TAVExpressionAnalyzer {
   public:
    /// `reader` must outlive the analyzer; `log` may be null.
    DSVExpressionAnalyzer(TAVDsvReader* reader, TAVLog* log);
    /// A copy has the reader of its origin.
    DSVExpressionAnalyzer(const DSVExpressionAnalyzer& other);
    DSVExpressionAnalyzer& operator=(const DSVExpressionAnalyzer& other);
    ~DSVExpressionAnalyzer() override;

    using TAVExpressionAnalyzer::getSrcElements;
    void getSrcElements(TAVElementNode* node, const TAVVector& scope, TAVVector& result) override;
    /// Null too when the name means several features.
    TAVFeature* getDstFeature(TAVClassifier* classifier, const TAVString& name, int reserved) override;
    /// The classifier's "SQL CONDITION", which is made when there is none yet. A feature of another kind that
    /// has the name makes the condition "SQL CONDITION_2". Null without a classifier.
    TAVCondition* getDstCondition(TAVClassifier* classifier) override;
    /// True for columns of the database: `*` gives neither what the view computes nor conditions.
    bool isStarCandidate(TAVFeature* feature, bool qualified) override;
    bool isClassifierDefined(TAVClassifier* classifier) override;
    /// Appends the features called `name`: those of the physical name, or else of the name that a person
    /// sees. They belong to the classifiers of `scope`, or, when it is empty, to the destination of the
    /// current feature map, which as a source leaves out the feature that it computes. With more than one
    /// part `text` names the classifier.
    virtual void getElementByName(const TAVString& text, const TAVString& name, int partCount,
                                  TAVElementType elementType, TAVArgumentType argumentType,
                                  const TAVVector& scope, TAVVector& result);

   private:
    friend class TAVDsvReader;
    void findIn(TAVClassifier& classifier, const TAVString& name, const TAVFeature* computed,
                TAVVector& result) const;

    TAVDsvReader* reader_;
  };

  /// A reader that puts types into `model` and refers to its store connections; `log` may be null. Without
  /// `readAllSources` tables of another data source than the view's own are left out; without `keepIds`
  /// packages, tables and columns get no `nativeId`. Readers of many views share one index of the model's
  /// connections; a reader without one makes its own.
  TAVDsvReader(TAVStoreModel* model, TAVLog* log, bool readAllSources, bool keepIds,
               std::shared_ptr<tav::ConnectionIndex> connections = nullptr);
  TAVDsvReader(const TAVDsvReader& other);
  TAVDsvReader& operator=(const TAVDsvReader& other);
  ~TAVDsvReader() = default;

  /// The view as a package that is not placed yet, or null when the element is null or no DataSourceView.
  /// Each table is listed by the store connection whose `nativeId` is the ID of the data source that feeds
  /// it. A computed column has the columns of its table that it names as sources, a named query's column
  /// those of the view's other tables that the query leads to; the conditions of a query are the sources of
  /// its table's "SQL CONDITION". Names that the view does not know give no lineage and no warning: a view
  /// need not show every column of its tables. A syntax error is a warning, and what can be read around it
  /// counts.
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

  void addLineage(TAVDesignPackage& view);
  void addExpressionLineage(TAVColumn& column);
  void addQueryLineage(TAVTable& table);

  TAVStoreModel* model_;
  bool readAllSources_;
  bool keepIds_;
  TAVDataTypeConverter types_;
  std::shared_ptr<tav::ConnectionIndex> connections_;
  DSVExpressionAnalyzer analyzer_;
  tav::ViewIndex* index_ = nullptr;  // of the view that is being read
};
