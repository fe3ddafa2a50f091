#pragma once

// Words that mean something in one place only; elsewhere they are names like any other. Letter case is
// ignored.

#include <string_view>

#include "framework/api.h"
#include "framework/expression/operators.h"

namespace tav {

/// Compares as strcmp does, the letters of `text` as capitals; `upper` is in capitals.
int compareWords(std::string_view text, std::string_view upper) noexcept;

/// Whether `text` is `upper`, a text in capitals.
TAV_API bool isWord(std::string_view text, std::string_view upper) noexcept;

/// A whole argument of a call that says how the call works, such as DESC or SELF_AND_AFTER.
bool isFlagWord(std::string_view text) noexcept;

/// A word behind a name in MDX that asks something of what the name means, such as CurrentMember.
TAV_API bool isMemberWord(std::string_view text) noexcept;

/// A SQL function whose first argument is a data type or a part of a date, not a value.
bool takesWordFirst(std::string_view function) noexcept;

/// The word of a SQL escape, `{fn NOW()}` or `{d '2024-01-31'}`; `following` is the character behind it.
bool isEscapeWord(std::string_view text, char following) noexcept;

/// The SQL operator behind a value that is written as this word, or Op::none. `negated`: behind NOT.
Op sqlOperatorOf(std::string_view text, bool negated) noexcept;

}  // namespace tav
