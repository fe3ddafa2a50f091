#pragma once

// How differences are put into words, for people on a terminal and on a page.

#include <string>
#include <string_view>
#include <vector>

#include "framework/std/line_diff.h"
#include "lineage/model_diff.h"

namespace tav {

/// How a name or value of a definition is written between words.
using Quote = std::string (*)(std::string_view text);

/// "measure [Measures].[Net]"; of several "2 measures, 12 view columns: A, B, C, ...".
std::string objectsText(const std::vector<DiffObject>& objects, Quote quote);
/// "measure [Measures].[Net]: nothing is called [Tax]; nearest: [Taxes]".
std::string brokenText(const BrokenName& name, Quote quote);
/// What is said where no group has anything.
std::string nothingText(const ModelDiff& diff);
/// " with 3 parts"; empty without any.
std::string partsText(std::size_t parts);
/// A list of which the first few are shown.
std::string firstOf(const std::vector<std::string>& names, Quote quote);

/// Whether a change is shown as lines rather than as one sentence.
bool isShownAsLines(const Change& change);
/// "data type: INT -> BIGINT", "now also keyed by column A", "no longer keyed by column B".
std::string changeText(const Change& change, Quote quote, std::string_view arrow);
/// What stands above its lines: "expression:".
std::string linesTitle(const Change& change, Quote quote);

/// A line of a change; of longer parts that are the same, one line on each side is shown, and a gap between.
struct ShownLine {
  char mark;  ///< '-', '+' or ' '; '@' stands for a gap
  std::string_view line;
};
std::vector<ShownLine> linesOf(const Change& change);

}  // namespace tav
