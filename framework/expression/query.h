#pragma once

// SELECT statements taken apart: which tables they read, what their columns are computed from, and under
// which conditions rows belong to them. Transact-SQL, and what other databases share with it.

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
};

/// What stands in FROM.
struct QueryTable {
  enum class Kind : std::uint8_t {
    table,     ///< of the database, or a common table expression
    query,     ///< a sub-query
    function,  ///< its name may be that of an object of the database
    values,
    pivot,  ///< the tables before it turned round: its `columns` are computed from `inputs`
  };
  Kind kind = Kind::table;
  std::size_t begin = 0;   ///< in bytes of the source
  std::string_view name;   ///< as written
  std::string_view alias;  ///< as written; may be empty
  std::uint32_t query = kNoQuery;
  std::vector<std::string_view> columns;  ///< new names of the columns, as written, or none
  QueryPart inputs;
};

/// One SELECT.
struct QueryBlock {
  std::uint32_t query = 0;
  std::uint32_t parent = kNoQuery;  ///< the block around it, whose tables it may name too
  std::vector<QueryColumn> columns;
  std::vector<QueryTable> tables;
};

/// A common table expression.
struct QueryExpression {
  std::string_view name;
  std::uint32_t query = kNoQuery;
  std::vector<std::string_view> columns;  ///< new names, or none
};

/// Blocks whose rows are put together by UNION or INTERSECT.
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
  /// WHERE, ON and HAVING in the order of the text. One inside another condition's sub-query belongs to that.
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

/// Takes a text apart that holds a SELECT, perhaps behind other statements; of several the first gives the
/// result. What breaks the grammar is told by the fault, and nothing else is lost to it. Takes time in
/// proportion to the text.
TAV_API Query parseQuery(std::string_view text);

}  // namespace tav
