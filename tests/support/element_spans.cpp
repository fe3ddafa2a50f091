#include "tests/support/element_spans.h"

#include <map>

namespace tav::test {

namespace {

/// Behind the ">" that ends the tag at `at`.
std::size_t tagEnd(std::string_view document, std::size_t at) {
  for (char quote = '\0'; at < document.size(); ++at) {
    const char c = document[at];
    if (quote == '\0' && c == '>') return at + 1;
    if (quote == '\0' && (c == '"' || c == '\''))
      quote = c;
    else if (c == quote)
      quote = '\0';
  }
  return at;
}

std::string_view nameAt(std::string_view document, std::size_t at) {
  return document.substr(at, document.find_first_of(" \t\r\n=/>", at) - at);
}

}  // namespace

std::vector<Span> findElements(std::string_view document) {
  std::vector<Span> spans;
  std::vector<std::size_t> open;
  std::map<std::string, int> seen;  // how often a path has come
  for (std::size_t at = document.find('<'); at != document.npos; at = document.find('<', at)) {
    const std::size_t end = tagEnd(document, at);
    if (document[at + 1] == '/') {
      spans[open.back()].contentEnd = at;
      spans[open.back()].end = end;
      open.pop_back();
    } else {
      std::string path = open.empty() ? "" : spans[open.back()].path + "/";
      path += nameAt(document, at + 1);
      if (const int number = ++seen[path]; number > 1)
        path.append("[").append(std::to_string(number)).append("]");
      if (document[end - 2] != '/') open.push_back(spans.size());
      spans.push_back({path, at, end, end, end});
    }
    at = end;
  }
  return spans;
}

std::vector<Span> findAttributes(std::string_view document, const Span& element) {
  std::vector<Span> spans;
  const std::string_view tag = document.substr(0, tagEnd(document, element.begin));
  std::size_t at = tag.find_first_of(" \t\r\n", element.begin);
  while (at < tag.size()) {
    const std::size_t name = tag.find_first_not_of(" \t\r\n", at);
    const std::size_t quote = tag.find_first_of("\"'", name);
    if (quote == tag.npos) break;
    const std::size_t close = tag.find(tag[quote], quote + 1);
    spans.push_back({element.path + "@" + std::string(nameAt(tag, name)), at, quote + 1, close, close + 1});
    at = close + 1;
  }
  return spans;
}

}  // namespace tav::test
