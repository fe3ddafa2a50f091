#include "framework/dom/dom.h"

#include "framework/dom/child_index.h"
#include "framework/dom/parser.h"
#include "framework/std/exception.h"
#include "framework/std/file_reader.h"

namespace {

// Where a look-up walks, a tag that was compared is passed over by its address when it comes again.
template <class Matches>
const TAVDOMElement* firstOf(std::span<const TAVDOMElement> children, Matches matches) noexcept {
  const char* compared = nullptr;
  for (const TAVDOMElement& child : children) {
    if (child.getTagName().data() == compared) continue;
    if (matches(child)) return &child;
    compared = child.getTagName().data();
  }
  return nullptr;
}

}  // namespace

const TAVDOMElement* TAVDOMElement::getFirstElement(std::string_view tag) const noexcept {
  if (count_ >= tav::kIndexedChildren) return tav::DomParser::indexBefore(children_)->find(tag, children_);
  return firstOf(getElements(), [tag](const TAVDOMElement& child) { return child.getTagName() == tag; });
}

const TAVDOMElement* TAVDOMElement::getFirstElementLocal(std::string_view localName) const noexcept {
  return firstOf(getElements(),
                 [localName](const TAVDOMElement& child) { return child.getLocalName() == localName; });
}

std::string_view TAVDOMElement::getAttribute(std::string_view name) const noexcept {
  for (const tav::DomAttribute& attribute : getAttributes())
    if (attribute.name->written == name) return attribute.value;
  return {};
}

std::string_view TAVDOMElement::getAttributeNS(std::string_view space,
                                               std::string_view localName) const noexcept {
  for (const tav::DomAttribute& attribute : getAttributes())
    if (attribute.name->local == localName && attribute.name->space == space) return attribute.value;
  return {};
}

TAVDOM::TAVDOM(TAVLog* log) : log_(log), storage_(std::make_unique<tav::DomStorage>()) {}

TAVDOM::~TAVDOM() = default;

const TAVDOMElement* TAVDOM::parseFile(const TAVFile& file) {
  const std::string_view path = file.getPath();
  tav::FileReader reader;
  if (!reader.open(file.getPath().str())) tav::failForDocument(path, reader.getError());
  tav::DomParser parser(*storage_, log_, path);
  return parser.parse(
      [&](char* buffer, std::size_t capacity) {
        const std::size_t count = reader.read(buffer, capacity);
        if (!reader.getError().empty()) tav::failForDocument(path, reader.getError());
        return count;
      },
      reader.getSize(), progress_);
}

const TAVDOMElement* TAVDOM::parseText(std::string_view text, std::string_view name) {
  std::string_view rest = text;
  tav::DomParser parser(*storage_, log_, name);
  return parser.parse(
      [&rest](char* buffer, std::size_t capacity) {
        const std::size_t count = rest.copy(buffer, capacity);
        rest.remove_prefix(count);
        return count;
      },
      text.size(), progress_);
}
