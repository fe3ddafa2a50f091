#include "framework/dom/tree_builder.h"

#include <limits>
#include <memory>

namespace tav {

namespace {

template <class Number, class Value> bool fits(Value value) {
  return value <= static_cast<Value>(std::numeric_limits<Number>::max());
}

void requireLength(std::size_t bytes) {
  if (!fits<std::uint32_t>(bytes)) throw TreeLimit("an element holds more than 4 GB of text");
}

}  // namespace

TreeBuilder::TreeBuilder(DomStorage& storage) : storage_(storage) {
  storage_.names.closeScope(0);  // an earlier document may have broken off inside
}

void TreeBuilder::start(std::string_view name, std::uint64_t line, std::span<const TagAttribute> attributes) {
  Frame& frame = open_.emplace_back(Frame{{}, closed_.size(), text_.size(), storage_.names.openScope()});
  // What an element declares holds for its own tag, so all of its attributes are looked at before the tag.
  for (const TagAttribute& attribute : attributes) storage_.names.declare(attribute.name, attribute.value);
  frame.element.name_ = storage_.names.tag(name);
  frame.element.line_ = fits<std::uint32_t>(line) ? static_cast<std::uint32_t>(line) : 0xFFFFFFFF;
  if (!attributes.empty()) keepAttributes(attributes, frame.element);
}

void TreeBuilder::keepAttributes(std::span<const TagAttribute> attributes, TAVDOMElement& element) {
  auto* place = static_cast<DomAttribute*>(
      storage_.arena.allocate(attributes.size() * sizeof(DomAttribute), alignof(DomAttribute)));
  element.attributes_ = place;
  element.attributeCount_ = static_cast<std::uint32_t>(attributes.size());
  for (const TagAttribute& attribute : attributes)
    std::construct_at(place++, DomAttribute{storage_.names.attribute(attribute.name),
                                            attribute.isKept ? attribute.value : keep(attribute.value)});
}

void TreeBuilder::addText(std::string_view text) {
  addBlanks(text);
  bool& hasWords = open_.back().hasWords;
  if (!hasWords) hasWords = text.find_first_not_of(" \t\r\n") != text.npos;
}

void TreeBuilder::addBlanks(std::string_view text) {
  requireLength(text_.size() - open_.back().textStart + text.size());
  text_ += text;
}

// The children of an element are known when it ends, and only then do they get their place side by side.
// Until then they lie on closed_, behind those of the elements around it, as its text lies on text_.
void TreeBuilder::end() {
  const Frame& frame = open_.back();
  const std::span<const TAVDOMElement> children = std::span(closed_).subspan(frame.firstChild);
  TAVDOMElement element = frame.element;
  // Between child elements there is indentation only: a third of a typical file.
  std::string_view own = std::string_view(text_).substr(frame.textStart);
  if (!children.empty() && !frame.hasWords) own = {};
  element.value_ = keep(own).data();
  element.valueSize_ = static_cast<std::uint32_t>(own.size());
  if (!children.empty()) placeChildren(element, children);
  closed_.resize(frame.firstChild);
  text_.resize(frame.textStart);
  storage_.names.closeScope(frame.scope);
  closed_.push_back(element);
  open_.pop_back();
}

void TreeBuilder::endWith(std::string_view text) {
  requireLength(text.size());
  const Frame& frame = open_.back();
  TAVDOMElement element = frame.element;
  element.value_ = keep(text).data();
  element.valueSize_ = static_cast<std::uint32_t>(text.size());
  storage_.names.closeScope(frame.scope);
  closed_.push_back(element);
  open_.pop_back();
}

void TreeBuilder::placeChildren(TAVDOMElement& element, std::span<const TAVDOMElement> children) {
  if (!fits<std::int32_t>(children.size()))
    throw TreeLimit("an element has more than 2,147,483,647 children");
  const bool indexed = children.size() >= kIndexedChildren;
  const std::size_t front = indexed ? sizeof(ChildIndex::Front) : 0;
  // Elements that point to a child's own children can be copied, because those have their place for good.
  auto* place =
      static_cast<std::byte*>(storage_.arena.allocate(front + children.size_bytes(), alignof(TAVDOMElement)));
  auto* first = reinterpret_cast<TAVDOMElement*>(place + front);
  std::uninitialized_copy(children.begin(), children.end(), first);
  element.children_ = first;
  element.count_ = static_cast<std::uint32_t>(children.size());
  if (indexed)
    std::construct_at(reinterpret_cast<ChildIndex::Front*>(place), ChildIndex::Front{indexOf(children)});
}

const ChildIndex* TreeBuilder::indexOf(std::span<const TAVDOMElement> children) const {
  ChildIndex::Builder index;
  for (std::uint32_t i = 0; i < children.size(); ++i) index.add(*children[i].name_, i);
  return index.finish(storage_.arena);
}

const TAVDOMElement* TreeBuilder::finish() {
  void* place = storage_.arena.allocate(sizeof(TAVDOMElement), alignof(TAVDOMElement));
  return std::construct_at(static_cast<TAVDOMElement*>(place), closed_.front());
}

}  // namespace tav
