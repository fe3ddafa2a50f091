#include "host/reports/mdx_names.h"

#include <algorithm>
#include <set>
#include <utility>

#include "framework/std/string.h"

namespace host {
namespace {

bool isWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::vector<std::vector<std::string>> scan() {
    while (at_ < text_.size()) step();
    std::erase_if(names_, [&](const auto& name) { return own_.contains(folded(name)); });
    return std::move(names_);
  }

 private:
  void step() {
    const char c = text_[at_];
    if (startsWith("//") || startsWith("--"))
      at_ = std::min(text_.find('\n', at_), text_.size());
    else if (startsWith("/*"))
      skipComment();
    else if (c == '"' || c == '\'')
      static_cast<void>(enclosed(c));
    else if (c == '[' || isWordCharacter(c))
      readName();
    else
      ++at_;
  }

  [[nodiscard]] bool startsWith(std::string_view start) const { return text_.substr(at_).starts_with(start); }

  void skipComment() {
    constexpr std::string_view kEnd = "*/";
    const std::size_t found = text_.find(kEnd, at_ + kEnd.size());
    at_ = found == text_.npos ? text_.size() : found + kEnd.size();
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

  void readName() {
    // A word that begins a name is a dimension; behind that, words are functions.
    const bool bare = text_[at_] != '[';
    std::vector<std::string> parts{bare ? word() : enclosed(']')};
    while (startsWith(".[")) {
      ++at_;
      parts.push_back(enclosed(']'));
    }
    if (bare && parts.size() == 1) {
      defines_ = tav::foldCase(parts.front()) == "member";
      return;
    }
    if (defines_) own_.insert(folded(parts));
    defines_ = false;
    if (parts.size() > 1) names_.push_back(std::move(parts));
  }

  static std::vector<std::string> folded(const std::vector<std::string>& parts) {
    std::vector<std::string> all;
    all.reserve(parts.size());
    for (const std::string& part : parts) all.push_back(tav::foldCase(part));
    return all;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool defines_ = false;  // whether the next name is that of a member of the query
  std::vector<std::vector<std::string>> names_;
  std::set<std::vector<std::string>> own_;
};

}  // namespace

std::vector<std::vector<std::string>> mdxNames(std::string_view query) {
  return Scanner(query).scan();
}

}  // namespace host
