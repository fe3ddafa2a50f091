#pragma once

// The scan of an MDX script for the members that it defines in the measures dimension. It is no parser: it
// looks for words and marks, so that whatever else a script holds cannot disturb it. Linear in the text.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tav {

/// The position of the first `word` at or after `start` that has a blank, a tab, a line end, or an end of the
/// text on both sides; npos when there is none. Compares exactly.
std::size_t findWord(std::string_view text, std::string_view word, std::size_t start);

/// The script without its comments: lines that begin with "//" or "-- " behind blanks, and what stands
/// between "/*" and "*/". The last line may begin with such a mark and is kept, but what follows a closed
/// comment on it is not.
std::string removeScriptComments(std::string_view script);

/// A calculated member of the measures dimension.
struct CalculatedMeasure {
  std::string_view name;        ///< without the brackets around it
  std::string_view expression;  ///< up to its FORMAT_STRING, or to the end of the statement
  std::string_view statement;   ///< from CREATE to the semicolon
};

/// The calculated measures that a script without comments creates, in order; the texts are views into it.
std::vector<CalculatedMeasure> findCalculatedMeasures(std::string_view script);

}  // namespace tav
