#include "tests/dom/dump.h"

#include <vector>

#include "framework/std/exception.h"
#include "tests/support/corpus.h"

namespace tav::test {

namespace {

struct WarningsAsLines : TAVLog {
  void logEvent(const TAVLogEvent& event) override {
    text += std::string(severityName(event.getSeverity())) + " " + event.getMessageId().str() + " " +
            event.getText().str() + "\n";
  }
  std::string text;
};

std::string nameText(std::string_view written, std::string_view space) {
  return escape(written, true) + (space.empty() ? "" : "{" + escape(space, true) + "}");
}

std::string lineOf(const TAVDOMElement& element) {
  std::string line =
      std::to_string(element.getLine()) + " " + nameText(element.getTagName(), element.getNamespace());
  for (const DomAttribute& a : element.getAttributes())
    line += " " + nameText(a.name->written, a.name->space) + "=[" + escape(a.value, true) + "]";
  if (!element.getValue().empty()) line += " [" + escape(element.getValue(), true) + "]";
  return line;
}

}  // namespace

std::string dump(const TAVDOMElement& root) {
  std::string text;
  std::vector<std::pair<const TAVDOMElement*, std::size_t>> left{{&root, 0}};
  while (!left.empty()) {
    const auto [element, depth] = left.back();
    left.pop_back();
    text += (text.empty() ? "" : "\n") + std::string(2 * depth, ' ') + lineOf(*element);
    for (std::int32_t i = element->getElementCount(); i-- > 0;)
      left.emplace_back(element->getElement(i), depth + 1);
  }
  return text;
}

std::string parseAndDump(std::string_view document) {
  WarningsAsLines log;
  TAVDOM dom(&log);
  try {
    return log.text + dump(*dom.parseText(document, "doc"));
  } catch (const TAVException& e) {
    return log.text + e.getMessage().str();
  }
}

}  // namespace tav::test
