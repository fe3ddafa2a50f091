#include "tests/support/damage.h"

#include "tests/support/element_spans.h"

namespace tav::test {

std::string Damage::bytes(std::string text) {
  for (std::size_t left = below(4) + 1; left > 0 && !text.empty(); --left) {
    const std::size_t at = below(text.size());
    const std::string part = text.substr(at, 1 + below(16));
    const std::size_t kind = below(3);
    if (kind == 0) text[at] = static_cast<char>(below(256));
    if (kind == 1) text.insert(below(text.size()), part);
    if (kind == 2) text.erase(at, part.size());
  }
  return text;
}

std::string Damage::elements(std::string document) {
  for (std::size_t left = below(4) + 1; left > 0; --left) {
    const std::vector<Span> spans = findElements(document);
    const Span& from = spans[below(spans.size())];
    const Span& to = spans[below(spans.size())];
    const std::string part = document.substr(from.begin, from.end - from.begin);
    const std::size_t kind = below(4);
    if (kind == 0 && to.begin > 0) document.erase(to.begin, to.end - to.begin);
    if (kind == 1 && to.begin > 0) document.insert(to.end, part);
    if (kind == 2 && !to.isOneTag()) document.insert(to.contentBegin, part);
    if (kind == 3) document.replace(to.begin, to.end - to.begin, part);
  }
  return document;
}

}  // namespace tav::test
