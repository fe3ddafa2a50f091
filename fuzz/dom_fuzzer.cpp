// Any bytes are a tree or one exception, what the tree's look-ups give is what a walk gives, and plain
// documents are read as Expat alone reads them.

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "framework/dom/dom.h"
#include "framework/std/exception.h"
#include "tests/support/expat_reading.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

const TAVDOMElement* walkFor(const TAVDOMElement& parent, std::string_view tag) {
  for (const TAVDOMElement& child : parent.getElements())
    if (child.getTagName() == tag) return &child;
  return nullptr;
}

void check(const TAVDOMElement& root, std::size_t lines) {
  std::vector<const TAVDOMElement*> left{&root};
  std::size_t looks = 0;
  while (!left.empty()) {
    const TAVDOMElement& element = *left.back();
    left.pop_back();
    require(element.getLine() >= 1 && element.getLine() <= lines);
    require(element.getTagName().ends_with(element.getLocalName()) && !element.getTagName().empty());
    for (const tav::DomAttribute& a : element.getAttributes())
      require(element.getAttribute(a.name->written).data() == a.value.data());
    for (std::int32_t i = 0; i < element.getElementCount(); ++i) {
      const TAVDOMElement* child = element.getElement(i);
      // A walk for each child of a long list would be too slow to find anything else.
      if (++looks < 10000)
        require(element.getFirstElement(child->getTagName()) == walkFor(element, child->getTagName()));
      left.push_back(child);
    }
    require(!element.getFirstElement("absent tag"));
  }
}

}  // namespace

// libFuzzer gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (tav::test::isPlainDocument(text)) require(tav::test::ourReading(text) == tav::test::expatReading(text));
  TAVDOM dom(nullptr);
  try {
    check(*dom.parseText(text, "fuzz"), size + 1);
  } catch (const TAVException& e) {
    require(e.getMessage().startsWith("[TAVDOM_F0001] fuzz:", true));
  }
  return 0;
}
