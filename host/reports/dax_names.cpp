#include "host/reports/dax_names.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool isWordCharacter(char c) {
  return isLetter(c) || (c >= '0' && c <= '9') || c == '.';
}

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::vector<DaxName> scan() {
    while (at_ < text_.size()) step();
    return std::move(names_);
  }

 private:
  void step() {
    const char c = text_[at_];
    if (startsWith("//") || startsWith("--"))
      at_ = std::min(text_.find('\n', at_), text_.size());
    else if (startsWith("/*"))
      skipTo("*/");
    else if (c == '"')
      static_cast<void>(enclosed('"'));
    else if (c == '\'')
      addTable(enclosed('\''), true);
    else if (c == '[')
      names_.push_back({{}, enclosed(']'), false});
    else if (isLetter(c))
      addTable(word(), false);
    else
      skipNumber();
  }

  [[nodiscard]] bool startsWith(std::string_view start) const { return text_.substr(at_).starts_with(start); }

  void skipTo(std::string_view end) {
    const std::size_t found = text_.find(end, at_ + 2);
    at_ = found == text_.npos ? text_.size() : found + end.size();
  }

  void skipNumber() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9') ++at_;
    if (at_ == begin) ++at_;
  }

  /// What stands until `end`, which is doubled where it is meant itself.
  std::string enclosed(char end) {
    std::string inner;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == end && (at_ + 1 == text_.size() || text_[at_ + 1] != end)) break;
      if (text_[at_] == end) ++at_;
      inner += text_[at_];
    }
    at_ = std::min(at_ + 1, text_.size());
    return inner;
  }

  std::string word() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && isWordCharacter(text_[at_])) ++at_;
    return std::string(text_.substr(begin, at_ - begin));
  }

  void addTable(std::string table, bool quoted) {
    std::size_t next = at_;
    while (quoted && next < text_.size() && isBlank(text_[next])) ++next;
    if (next < text_.size() && text_[next] == '[') {
      at_ = next;
      std::string name = enclosed(']');
      names_.push_back({std::move(table), std::move(name), quoted});
      return;
    }
    while (next < text_.size() && isBlank(text_[next])) ++next;
    const bool isCall = !quoted && next < text_.size() && text_[next] == '(';
    if (!isCall) names_.push_back({std::move(table), {}, quoted});
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<DaxName> names_;
};

}  // namespace

std::vector<DaxName> daxNames(std::string_view text) {
  return Scanner(text).scan();
}

}  // namespace host
