#include "framework/dom/element.h"

#include "framework/dom/child_index.h"

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
  const std::span<const TAVDOMElement> children = getElements();
  if (children.size() >= tav::kIndexedChildren) {
    const std::uint32_t child = tav::ChildIndex::before(children.data()).find(tag);
    return child == tav::ChildIndex::kNone ? nullptr : &children[child];
  }
  return firstOf(children, [tag](const TAVDOMElement& child) { return child.getTagName() == tag; });
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
