#pragma once

// SELECT statements taken apart: which tables they read, what their columns are computed from, and under
// which conditions rows belong to them. Transact-SQL first, where dialects differ; what only others have
// (backticks, QUALIFY, `::`, (+), CONNECT BY, * EXCEPT (a), ...) is read as they mean it.

#include <cstdint>
#include <string_view>
#include <vector>

#include "framework/api.h"
#include "framework/expression/lexer.h"

namespace tav {

inline constexpr std::uint32_t kNoQuery = 0xFFFFFFFF;

/// A column that an expression names.
struct QueryReference {
  std::string_view name;    ///< as written, its parts joined by dots
  std::uint32_t block = 0;  ///< whose tables it may belong to; else to those of the blocks around it
  // The tables of the block that it may belong to: all but for USING, which names a column of each side.
  std::uint32_t firstTable = 0;
  std::uint32_t endTable = kNoQuery;
};

/// An expression with what it reads. Expressions inside sub-queries are not among it.
struct QueryPart {
  std::size_t begin = 0;  ///< in bytes of the source
  std::size_t end = 0;
  std::vector<QueryReference> references;  ///< in the order of the text
  std::vector<std::uint32_t> queries;      ///< the sub-queries whose values it uses
};

/// A column of a result.
struct QueryColumn : QueryPart {
  std::string_view name;  ///< its alias, or the name of the column that it copies, as written; may be empty
  bool copy = false;      ///< nothing but one reference
  bool star = false;      ///< `*`, or all columns of `qualifier`
  std::string_view qualifier;
  std::vector<std::string_view> hidden;  ///< the columns that a star leaves out
};

/// What stands in FROM.
struct QueryTable {
  enum class Kind : std::uint8_t {
    table,     ///< of the database, or a common table expression
    query,     ///< a sub-query
    function,  ///< its name may be that of an object of the database
    values,    ///< its `columns` are computed from `inputs`
    pivot,     ///< the tables before it turned round: its `columns` are computed from `inputs`
  };
  Kind kind = Kind::table;
  std::size_t begin = 0;   ///< in bytes of the source
  std::string_view name;   ///< as written
  std::string_view alias;  ///< as written; may be empty
  std::uint32_t query = kNoQuery;
  std::vector<std::string_view> columns;  ///< new names of the columns, as written, or none
  /// Of a PIVOT that names its aggregates: its columns are called `column_suffix`, or `suffix_column`.
  std::vector<std::string_view> suffixes;
  QueryPart inputs;
};

/// One SELECT, or one row of VALUES.
struct QueryBlock {
  std::uint32_t query = 0;
  std::uint32_t parent = kNoQuery;  ///< the block around it, whose tables it may name too
  std::vector<QueryColumn> columns;
  std::vector<QueryTable> tables;
  std::vector<QueryReference> shared;  ///< the columns of its USINGs, which belong to both sides at once
};

/// A common table expression, or a query that fills a table of the script.
struct QueryExpression {
  std::string_view name;
  std::uint32_t query = kNoQuery;
  std::vector<std::string_view> columns;  ///< new names, or none
};

/// Blocks whose rows are put together by UNION or INTERSECT. What EXCEPT takes away is not among them.
struct QueryUnion {
  std::uint32_t parent = kNoQuery;  ///< the query around it, whose common table expressions it may name too
  std::vector<std::uint32_t> blocks;
  std::vector<QueryExpression> expressions;
};

/// A statement. It looks into the text that was parsed, which must outlive it.
struct Query {
  std::string_view source;
  std::vector<QueryUnion> queries;
  std::vector<QueryBlock> blocks;
  /// The queries that fill the tables that the statements themselves make, such as #t, in order: the columns
  /// of the table are those of all its queries together.
  std::vector<QueryExpression> temporaries;
  /// WHERE, QUALIFY, CONNECT BY, ON, USING and HAVING in the order of the text. One inside another
  /// condition's sub-query belongs to that.
  std::vector<QueryPart> conditions;
  QueryPart others;  ///< what else is named, as in GROUP BY and ORDER BY
  /// The query that gives the result, which has a block; none without a SELECT.
  std::uint32_t main = kNoQuery;
  ExpressionFault fault;  ///< the first one
  PieceBuffer pieces;

  [[nodiscard]] std::string_view textOf(const QueryPart& part) const noexcept {
    return source.substr(part.begin, part.end - part.begin);
  }
};

/// Takes a text apart that holds a SELECT, perhaps behind other statements; of several the first whose rows
/// are neither stored nor assigned to variables gives the result. What breaks the grammar is told by the
/// fault, and nothing else is lost to it. Takes time in proportion to the text.
TAV_API Query parseQuery(std::string_view text);

}  // namespace tav
