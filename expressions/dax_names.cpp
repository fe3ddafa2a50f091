#include "expressions/dax_names.h"

#include <algorithm>

#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool isWordCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || c == '_' || c == '.' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
         (c >= 'A' && c <= 'Z');
}

class DaxScanner {
 public:
  explicit DaxScanner(std::string_view text) : text_(text) {}

  std::vector<DaxName> scan() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == '"')
        quoted('"');
      else if (startsWith("//") || startsWith("--"))
        skipTo("\n");
      else if (startsWith("/*"))
        skipTo("*/");
      else if (c == '\'' || c == '[' || isWordCharacter(c))
        scanName();
      else
        ++at_;
    }
    return std::move(names_);
  }

 private:
  [[nodiscard]] bool startsWith(std::string_view begin) const {
    return text_.substr(at_, begin.size()) == begin;
  }

  void skipTo(std::string_view end) {
    const std::size_t found = text_.find(end, at_ + end.size());
    at_ = found == text_.npos ? text_.size() : found + end.size();
  }

  /// The text up to the closing mark, which is doubled where it is meant itself.
  std::string quoted(char close) {
    std::string inside;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == close) {
        ++at_;
        if (text_.substr(at_, 1) != std::string_view(&close, 1)) return inside;
      }
      inside += text_[at_];
    }
    return inside;
  }

  void scanName() {
    const std::size_t begin = at_;
    DaxName name;
    if (text_[at_] == '\'') {
      name.table = quoted('\'');
    } else if (text_[at_] != '[') {
      const std::size_t end = static_cast<std::size_t>(
          std::find_if_not(text_.begin() + static_cast<std::ptrdiff_t>(at_), text_.end(), isWordCharacter) -
          text_.begin());
      name.table = text_.substr(at_, end - at_);
      name.isWord = true;
      at_ = end;
    }
    const std::size_t next = std::min(text_.size(), text_.find_first_not_of(kBlanks, at_));
    const std::string_view follows = text_.substr(next, 1);
    if (name.isWord && follows == "(") return;
    if (follows == "[" && (next == at_ || !name.isWord)) {
      at_ = next;
      name.name = quoted(']');
      name.isWord = false;
    }
    name.text = text_.substr(begin, at_ - begin);
    if (!name.table.empty() || !name.name.empty()) names_.push_back(std::move(name));
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<DaxName> names_;
};

}  // namespace

std::vector<DaxName> daxNamesIn(std::string_view text) {
  return DaxScanner(text).scan();
}

}  // namespace tav
