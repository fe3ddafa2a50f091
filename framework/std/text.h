#pragma once

// What is done to texts everywhere: blanks taken off, lines, letter case in every script, bytes that are no
// UTF-8 mended.

#include <string>
#include <string_view>
#include <vector>

#include "framework/api.h"
#include "framework/std/string.h"

namespace tav {

/// `text` without blanks, tabs and line ends on both sides.
TAV_API std::string_view trimmed(std::string_view text) noexcept;

/// The place of the first character from `at` on that is none of those; the text's end when there is none.
TAV_API std::size_t skipBlanks(std::string_view text, std::size_t at) noexcept;

/// The lines of a text, the line ends left out ("\n" and "\r\n"). Behind the last line end no line begins.
TAV_API std::vector<std::string_view> linesOf(std::string_view text);

/// Adds a line to a list of lines that is kept as one text, `a\nb`.
TAV_API void addLine(std::string& lines, std::string_view line);

/// `name` as a key for look-ups that ignore letter case in every script: Unicode's simple case folding, which
/// keeps the number of characters. Bytes that are no UTF-8 stay as they are. For names that people type and
/// for names in DAX; names of an XML definition ignore the case of A to Z alone (see foldCase).
TAV_API std::string foldedName(std::string_view name);

/// The version of the library that knows the letters of every script.
TAV_API std::string_view caseFoldingVersion() noexcept;

/// Whether two names are equal but for letter case, in every script.
TAV_API bool equalNames(std::string_view a, std::string_view b);

/// The beginning of a text: at most so many bytes, and no part of a character at its end.
TAV_API std::string_view beginningOf(std::string_view text, std::size_t bytes) noexcept;

/// `text` with each byte that is no part of UTF-8 replaced by U+FFFD.
TAV_API std::string mendedUtf8(std::string_view text);

}  // namespace tav
