#pragma once

#include <string>
#include <string_view>

namespace tav {

/// Rows of a table as RFC 4180 has them, appended to a text.
class CsvText {
 public:
  explicit CsvText(std::string& text) : text_(text) {}

  void cell(std::string_view value) {
    if (!first_) text_ += ',';
    first_ = false;
    if (value.find_first_of(",\"\r\n") == value.npos)
      text_.append(value);
    else
      quoted(value);
  }

  void endRow() {
    text_ += "\r\n";
    first_ = true;
  }

 private:
  void quoted(std::string_view value) {
    text_ += '"';
    for (const char c : value) text_.append(c == '"' ? 2 : 1, c);
    text_ += '"';
  }

  std::string& text_;
  bool first_ = true;  // whether the next cell is the first of its row
};

}  // namespace tav
