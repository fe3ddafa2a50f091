#pragma once

// What the tokens of statements are to the reader of statements. Letter case is ignored.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tav {

/// What a token is to the table of transitions. A word is a sign of its own where it means something in a
/// statement; all other words are names.
enum class QuerySign : std::uint8_t {
  end,
  semicolon,
  openBracket,
  closeBracket,
  openBrace,
  closeBrace,
  comma,
  dot,
  name,
  call,     ///< a name before an open bracket
  literal,  ///< a number, NULL, CURRENT_DATE
  string,
  operation,
  times,
  equal,
  cast,  ///< `::`, a type follows
  colon,
  ampersand,
  question,
  index,  ///< `[0]` right behind a value
  unknown,
  as,
  distinct,
  caseWord,
  casePart,  ///< WHEN, THEN, ELSE
  endWord,
  select,
  shortSelect,  ///< SEL, where a query begins
  with,
  from,
  where,    ///< WHERE, HAVING, QUALIFY
  connect,  ///< CONNECT BY, START WITH
  on,
  usingWord,
  group,
  order,
  window,
  unite,
  intersect,
  except,  ///< EXCEPT, MINUS
  into,
  join,      ///< JOIN, APPLY: a table follows
  joinKind,  ///< INNER, CROSS, LEFT, ...: a join follows
  pivot,
  hint,  ///< TABLESAMPLE (...), USE INDEX (...)
  tail,  ///< FOR, OPTION, LIMIT: nothing of interest follows
  over,  ///< OVER, WITHIN, FILTER: rows of a window, their order or a condition follow
  collate,
  exists,
  values,
  wordOperation,  ///< IN, LIKE, ALL, BY, ...: a value follows
  direction,      ///< ASC, NULLS FIRST: nothing of interest, and no value follows
  zone,           ///< AT TIME ZONE
  typed,          ///< DATE '2024-01-31'
  interval,
  statement,  ///< DECLARE, SET, EXEC, ...: a statement that gives no rows
  insert,
  create,
  table,
  lateral,
};
inline constexpr std::size_t kQuerySigns = static_cast<std::size_t>(QuerySign::lateral) + 1;

/// What a word means in a statement, QuerySign::name for all that mean nothing. Some mean it only in front of
/// certain others, which QueryTokens sees to.
QuerySign signOfWord(std::string_view text) noexcept;

/// A name as it is written, as a key for look-ups: without its quotes, in small letters.
std::string nameKey(std::string_view name);

/// A word that stands in a window beside its values.
bool isWindowWord(std::string_view text) noexcept;

/// A method that gives a part of the value that it is called on.
bool isValueMethod(std::string_view text) noexcept;

/// A type whose functions are called as `type::Function(x)`.
bool isTypeOfMethods(std::string_view text) noexcept;

/// A function that parts its arguments with FROM: TRIM(x FROM y).
bool isFromFunction(std::string_view text) noexcept;

/// A function whose last argument may be a part of a date: DATE_TRUNC(x, MONTH).
bool takesPartLast(std::string_view function) noexcept;

/// A part of a date or of a time, abbreviations included.
bool isDatePart(std::string_view text) noexcept;

/// The name of a data type, or the first word of one.
bool isTypeWord(std::string_view text) noexcept;

/// A word that goes on a type: DOUBLE PRECISION, TIMESTAMP WITH TIME ZONE.
bool isTypeTail(std::string_view text) noexcept;

/// A word between the arguments of a function: GROUP_CONCAT(a SEPARATOR ',').
bool isArgumentWord(std::string_view text) noexcept;

/// What tells a table's hints, `t (NOLOCK)`, from a function's arguments.
bool isTableHint(std::string_view text) noexcept;

/// A function in FROM whose arguments have a grammar of their own.
bool isForeignFunction(std::string_view text) noexcept;

}  // namespace tav
