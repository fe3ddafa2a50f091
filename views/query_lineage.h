#pragma once

// The lineage of the queries that a database runs for a model: of the named queries of data source views, and
// of the queries that tables of a tabular model read. Whoever imports keeps the text; what it reads is found
// here, the same for both.

#include <string>
#include <vector>

#include "framework/expression/analyzer.h"
#include "framework/expression/query_resolver.h"
#include "framework/model/model.h"

namespace tav {

/// What a query names, as the model shows it. Null where the model has no such object. An object of a query
/// is always the same one.
class QueryTarget {
 public:
  virtual ~QueryTarget() = default;
  /// Whether the model knows for certain that a table or view of the database has a column of this name, in
  /// small letters.
  virtual bool hasColumn(const QueryObject& table, const std::string& column) = 0;
  /// The column that stands for one of a table or view of the database; `reader` is what it feeds.
  virtual TAVFeature* findColumn(const QueryObject& table, const std::string& column,
                                 const TAVFeature& reader) = 0;
  /// The feature that stands for the query's conditions.
  virtual TAVCondition& condition(TAVTable& table) = 0;
};

/// The sources of one query.
class QueryLineage {
 public:
  /// The parsed query and the target must live longer.
  QueryLineage(const Query& query, QueryTarget& target);

  /// Writes what the query's table reads: names on the table, its columns and its condition, and lineage to
  /// what the model shows. Columns that the table computes itself are left alone.
  void write(TAVTable& table);

  /// The table whose rows the query hands on as they are, `SELECT * FROM t`, or null.
  [[nodiscard]] const QueryObject* plainTable() const;

  /// Warns of a text that breaks the grammar, and of one made to be expensive, which was not followed to its
  /// end. What could be read counts all the same.
  void report(const TAVTable& table, TAVExpressionAnalyzer& analyzer) const;

 private:
  void writeColumn(TAVColumn& column);
  void writeCondition(TAVCondition& condition);
  void link(TAVFeature& destination, std::string_view operation, const std::vector<QuerySource>& sources);
  [[nodiscard]] TAVString namesOf(const std::vector<QuerySource>& sources) const;

  const Query& query_;
  QueryTarget& target_;
  QueryResolver resolver_;
};

}  // namespace tav
