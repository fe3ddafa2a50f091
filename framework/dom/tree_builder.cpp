#include "framework/dom/tree_builder.h"

#include <limits>
#include <memory>

namespace tav {

namespace {

template <class Number, class Value> bool fits(Value value) {
  return value <= static_cast<Value>(std::numeric_limits<Number>::max());
}

constexpr std::size_t kLargestSize = (std::size_t{1} << 29) - 1;  // that an element counts itself

template <class Value> Value* allocate(Arena& arena, std::size_t count = 1) {
  return static_cast<Value*>(arena.allocate(count * sizeof(Value), alignof(Value)));
}

void requireLength(std::size_t bytes) {
  if (!fits<std::uint32_t>(bytes)) throw TreeLimit("an element holds more than 4 GB of text");
}

}  // namespace

TreeBuilder::TreeBuilder(DomStorage& storage, UnkeptContent unkept) : storage_(storage), unkept_(unkept) {
  storage_.names.closeScope(0);  // an earlier document may have broken off inside
}

void TreeBuilder::start(std::string_view name, std::uint64_t line, std::span<const TagAttribute> attributes) {
  if (isUnkept()) return startUnkept(name);
  const bool unkept = startsUnkept(name);
  Frame& frame = open_.emplace_back(Frame{{}, closed_.size(), text_.size(), storage_.names.openScope()});
  // What an element declares holds for its own tag, so all of its attributes are looked at before the tag.
  for (const TagAttribute& attribute : attributes) storage_.names.declare(attribute.name, attribute.value);
  frame.element.name_ = storage_.names.tag(name);
  frame.element.line_ = fits<std::uint32_t>(line) ? static_cast<std::uint32_t>(line) : 0xFFFFFFFF;
  if (!attributes.empty()) keepAttributes(attributes, frame.element);
  if (unkept) unkeptDepth_ = open_.size();
}

bool TreeBuilder::startsUnkept(std::string_view name) const {
  if (name != unkept_.tag || open_.size() < 2) return false;
  const Frame& parent = open_.back();
  return unkept_.isUnkept({*(open_.end() - 2)->element.name_, *parent.element.name_,
                           std::span(closed_).subspan(parent.firstChild)});
}

/// An element that is only there to be closed.
void TreeBuilder::startUnkept(std::string_view name) {
  open_.emplace_back(Frame{{}, closed_.size(), text_.size(), storage_.names.openScope()}).element.name_ =
      storage_.names.tag(name);
}

void TreeBuilder::keepAttributes(std::span<const TagAttribute> attributes, TAVDOMElement& element) {
  kept_.clear();
  for (const TagAttribute& attribute : attributes)
    kept_.push_back({storage_.names.attribute(attribute.name),
                     attribute.isKept ? attribute.value : keep(attribute.value)});
  element.content_.attributed = std::construct_at(allocate<TAVDOMElement::Attributed>(storage_.lasting),
                                                  TAVDOMElement::Attributed{{}, storage_.lists.keep(kept_)});
  element.hasAttributes_ = 1;
}

void TreeBuilder::addText(std::string_view text) {
  if (isUnkept()) return;
  addBlanks(text);
  bool& hasWords = open_.back().hasWords;
  if (!hasWords) hasWords = text.find_first_not_of(" \t\r\n") != text.npos;
}

void TreeBuilder::addBlanks(std::string_view text) {
  if (isUnkept()) return;
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
  hold(element, keep(own), children.empty() ? children : placed(children));
  closed_.resize(frame.firstChild);
  text_.resize(frame.textStart);
  close(element);
}

void TreeBuilder::endWith(std::string_view text) {
  if (isUnkept()) return end();
  requireLength(text.size());
  TAVDOMElement element = open_.back().element;
  hold(element, keep(text), {});
  close(element);
}

void TreeBuilder::close(const TAVDOMElement& element) {
  storage_.names.closeScope(open_.back().scope);
  if (open_.size() == unkeptDepth_) unkeptDepth_ = kNoDepth;
  if (!isUnkept()) closed_.push_back(element);
  open_.pop_back();
}

/// Gives an element what it holds, which has its place for good.
void TreeBuilder::hold(TAVDOMElement& element, std::string_view text,
                       std::span<const TAVDOMElement> children) {
  TAVDOMElement::Content content;
  const std::size_t size = text.size() + children.size();
  if (size > kLargestSize || (!text.empty() && !children.empty())) {
    element.holds_ = TAVDOMElement::kBoth;
    content.both = std::construct_at(allocate<TAVDOMElement::Both>(storage_.lasting),
                                     TAVDOMElement::Both{text, children});
  } else if (children.empty()) {
    element.size_ = static_cast<std::uint32_t>(size);
    content.text = text.data();
  } else {
    element.holds_ = TAVDOMElement::kChildren;
    element.size_ = static_cast<std::uint32_t>(size);
    content.children = children.data();
  }
  (element.hasAttributes_ ? element.content_.attributed->content : element.content_) = content;
}

/// Elements that point to a child's own children can be copied, because those have their place for good.
std::span<const TAVDOMElement> TreeBuilder::placed(std::span<const TAVDOMElement> children) {
  if (!fits<std::int32_t>(children.size()))
    throw TreeLimit("an element has more than 2,147,483,647 children");
  const bool isIndexed = children.size() >= kIndexedChildren;
  const ChildIndex* index = isIndexed ? indexOf(children) : nullptr;
  const std::size_t front = isIndexed ? sizeof(ChildIndex::Front) : 0;
  auto* place = static_cast<std::byte*>(
      storage_.elements.allocate(front + children.size_bytes(), alignof(TAVDOMElement)));
  auto* first = reinterpret_cast<TAVDOMElement*>(place + front);
  std::uninitialized_copy(children.begin(), children.end(), first);
  if (isIndexed) std::construct_at(reinterpret_cast<ChildIndex::Front*>(place), ChildIndex::Front{index});
  return {first, children.size()};
}

const ChildIndex* TreeBuilder::indexOf(std::span<const TAVDOMElement> children) const {
  ChildIndex::Builder index;
  for (std::uint32_t i = 0; i < children.size(); ++i) index.add(*children[i].name_, i);
  return index.finish(storage_.elements);
}

const TAVDOMElement* TreeBuilder::finish() {
  return std::construct_at(allocate<TAVDOMElement>(storage_.lasting), closed_.front());
}

}  // namespace tav
