#pragma once

// The words of statements. Letter case is ignored.

#include <cstdint>
#include <string_view>

namespace tav {

/// What a word means in a statement; other words are names.
enum class QueryWord : std::uint8_t {
  none,
  select,
  with,
  from,
  where,
  having,
  on,
  group,
  order,
  unite,  ///< UNION, INTERSECT
  except,
  into,
  join,      ///< JOIN, APPLY: a table follows
  joinKind,  ///< INNER, CROSS, ...: a join follows
  side,      ///< LEFT, RIGHT: functions when a bracket follows
  pivot,
  hint,  ///< TABLESAMPLE (...)
  tail,  ///< FOR, OPTION: nothing of interest follows
  over,  ///< OVER, WITHIN: a window or an order of rows follows
  collate,
  exists,
  values,
  operation,  ///< IN, LIKE, ALL, BY, ...: a value follows
  direction,  ///< ASC, DESC
};

QueryWord queryWordOf(std::string_view text) noexcept;

/// A word that stands in a window beside its values.
bool isWindowWord(std::string_view text) noexcept;

/// A method that gives a part of the value that it is called on.
bool isValueMethod(std::string_view text) noexcept;

/// A function that parts its arguments with FROM: TRIM(x FROM y).
bool isFromFunction(std::string_view text) noexcept;

/// What tells a table's hints, `t (NOLOCK)`, from a function's arguments.
bool isTableHint(std::string_view text) noexcept;

}  // namespace tav
