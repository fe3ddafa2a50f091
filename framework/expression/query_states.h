#pragma once

// What the reader of statements waits for.

#include <cstddef>
#include <cstdint>

namespace tav {

enum class QueryState : std::uint8_t {
  // Statements.
  statement,   ///< one begins, or a query between brackets
  united,      ///< behind UNION: a SELECT follows
  afterQuery,  ///< behind a query in brackets
  other,       ///< in a statement that gives no rows, up to the next SELECT
  created,     ///< behind CREATE
  createdName,
  inserted,  ///< behind INSERT
  rows,      ///< behind VALUES
  // WITH name (names) AS (query), ...
  expression,
  expressionNames,
  expressionAs,
  expressionEnd,
  // SELECT.
  column,      ///< a column begins
  columnName,  ///< a name was read, which may be an alias: a = value
  columnOperand,
  columnOperator,
  columnStar,
  columnAlias,  ///< behind AS
  columnEnd,    ///< behind the alias
  into,
  intoEnd,
  // FROM.
  table,
  tableEnd,    ///< behind a table that has no alias yet
  tableAlias,  ///< behind AS
  joined,      ///< behind an alias
  joining,     ///< behind LEFT, CROSS, ...
  onOperand,
  onOperator,
  viewAlias,  ///< LATERAL VIEW f(a) alias AS names
  viewNames,
  // WHERE, GROUP BY, ORDER BY and what is like them.
  clauseOperand,
  clauseOperator,
  tail,  ///< behind what is of interest
  // Between brackets.
  bracketOperand,
  bracketOperator,
  bracketQuery,  ///< behind a sub-query
  caseOperand,
  caseOperator,
  windowOperand,
  windowOperator,
  type,  ///< of a CAST, or the part of a date that a function takes first
  ignored,
  foreign,  ///< a grammar of its own, semicolons included
  names,    ///< new names of columns
  namesRest,
  usingNames,
  // PIVOT (SUM(input) AS suffix FOR input IN (name AS alias, ...))
  pivotValue,
  pivotInput,
  pivotValueEnd,
  pivotColumn,
  pivotIn,
  pivotNames,
  pivotAlias,
  // UNPIVOT (value FOR name IN (input, ...))
  unpivotValue,
  unpivotColumn,
  unpivotIn,
  unpivotInputs,
  unpivotAlias,
  // Where to go in the table of transitions: nowhere, or to the partner of the state at hand.
  stay,
  toOperand,
  toOperator,
};
inline constexpr std::size_t kQueryStates = static_cast<std::size_t>(QueryState::stay);

/// Where the next value of the same list, condition or bracket is waited for.
constexpr QueryState operandOf(QueryState state) noexcept {
  switch (state) {
    case QueryState::column:
    case QueryState::columnName:
    case QueryState::columnOperator:
    case QueryState::columnStar:
    case QueryState::columnEnd:
      return QueryState::columnOperand;
    case QueryState::onOperator:
      return QueryState::onOperand;
    case QueryState::clauseOperator:
      return QueryState::clauseOperand;
    case QueryState::bracketOperator:
    case QueryState::bracketQuery:
      return QueryState::bracketOperand;
    case QueryState::caseOperator:
      return QueryState::caseOperand;
    case QueryState::windowOperator:
      return QueryState::windowOperand;
    default:
      return state;
  }
}

/// Where something behind a value is waited for.
constexpr QueryState operatorOf(QueryState state) noexcept {
  switch (state) {
    case QueryState::column:
    case QueryState::columnName:
    case QueryState::columnOperand:
    case QueryState::columnStar:
    case QueryState::columnEnd:
      return QueryState::columnOperator;
    case QueryState::onOperand:
      return QueryState::onOperator;
    case QueryState::clauseOperand:
      return QueryState::clauseOperator;
    case QueryState::bracketOperand:
    case QueryState::bracketQuery:
      return QueryState::bracketOperator;
    case QueryState::caseOperand:
      return QueryState::caseOperator;
    case QueryState::windowOperand:
      return QueryState::windowOperator;
    default:
      return state;
  }
}

}  // namespace tav
