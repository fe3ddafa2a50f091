#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tav {

/// A row of backticks longer than any in the texts, and no shorter than `atLeast`.
std::string markdownFence(std::initializer_list<std::string_view> texts, std::size_t atLeast);

/// Text as Markdown shows it to the letter, on one line. Control characters are shown.
std::string markdownCode(std::string_view text);

/// The same for a cell of a table, which a bar would end.
std::string markdownCell(std::string_view text);

}  // namespace tav
