#pragma once

#include <string>
#include <string_view>

namespace tav {

/// Rows of a table as RFC 4180 has them, appended to a text. A cell that a spreadsheet would take for a
/// formula has an apostrophe in front, and so has one that would be taken for such a cell: whoever takes one
/// away there has the text again.
class CsvText {
 public:
  explicit CsvText(std::string& text) : text_(text) {}

  void cell(std::string_view value) {
    if (!first_) text_ += ',';
    first_ = false;
    const bool marked = value.find_first_of(",\"\r\n") != value.npos;
    if (marked) text_ += '"';
    if (isFormula(value)) text_ += '\'';
    if (marked)
      quoted(value);
    else
      text_.append(value);
  }

  void endRow() {
    text_ += "\r\n";
    first_ = true;
  }

 private:
  static bool isFormula(std::string_view value) noexcept {
    const std::size_t first = value.find_first_not_of(" \t\r\n'");
    return first != value.npos && std::string_view("=+-@").find(value[first]) != std::string_view::npos;
  }

  void quoted(std::string_view value) {
    for (const char c : value) text_.append(c == '"' ? 2 : 1, c);
    text_ += '"';
  }

  std::string& text_;
  bool first_ = true;  // whether the next cell is the first of its row
};

}  // namespace tav
