#pragma once

// A read-only tree of a whole XML document. Elements, their names and their texts live as long as the TAVDOM
// that parsed them; whoever needs a text longer copies it.

#include <cstdint>
#include <span>
#include <string_view>

#include "framework/api.h"
#include "framework/dom/dom_name.h"

namespace tav {

class TreeBuilder;

/// An attribute of an element; its value has all entities and character references resolved.
struct DomAttribute {
  const DomName* name;
  std::string_view value;
};

}  // namespace tav

/// One element of a parsed document.
class TAV_API TAVDOMElement {
 public:
  /// The tag as in the document, with its prefix.
  [[nodiscard]] std::string_view getTagName() const noexcept { return name_->written; }
  [[nodiscard]] std::string_view getLocalName() const noexcept { return name_->local; }
  /// The namespace of the tag, by its prefix or by default; empty when it has none.
  [[nodiscard]] std::string_view getNamespace() const noexcept { return name_->space; }
  /// The line of the start tag, from 1. It stays at 4,294,967,295 in documents of more lines.
  [[nodiscard]] std::uint32_t getLine() const noexcept { return line_; }

  /// The element's own text: text and CDATA sections joined, entities resolved, without the text of child
  /// elements. White space alone counts as no text when there are child elements.
  [[nodiscard]] std::string_view getValue() const noexcept;

  [[nodiscard]] std::int32_t getElementCount() const noexcept {
    return static_cast<std::int32_t>(getElements().size());
  }
  /// Child element `index`, from 0 in document order; null when there is none.
  [[nodiscard]] const TAVDOMElement* getElement(std::int32_t index) const noexcept;
  /// The child elements, in document order.
  [[nodiscard]] std::span<const TAVDOMElement> getElements() const noexcept;

  /// The first child element with this tag as written, or null. Fast also among very many children.
  [[nodiscard]] const TAVDOMElement* getFirstElement(std::string_view tag) const noexcept;
  /// The value of that child; empty when there is none.
  [[nodiscard]] std::string_view getFirstElementValue(std::string_view tag) const noexcept {
    const TAVDOMElement* child = getFirstElement(tag);
    return child ? child->getValue() : std::string_view();
  }
  /// The first child element of this local name, whatever its prefix, or null. It walks the children.
  [[nodiscard]] const TAVDOMElement* getFirstElementLocal(std::string_view localName) const noexcept;

  /// The attributes as the document has them, declarations of namespaces included, followed by those that
  /// only the document type declares a value for.
  [[nodiscard]] std::span<const tav::DomAttribute> getAttributes() const noexcept;
  /// The value of the attribute of this name as written; empty when there is none.
  [[nodiscard]] std::string_view getAttribute(std::string_view name) const noexcept;
  /// The value of the attribute of this namespace and local name, whatever its prefix; empty when there is
  /// none. An attribute without a prefix is in no namespace.
  [[nodiscard]] std::string_view getAttributeNS(std::string_view space,
                                                std::string_view localName) const noexcept;

 private:
  friend class tav::TreeBuilder;

  struct Both;
  struct Attributed;
  union Content {
    const char* text = nullptr;
    const TAVDOMElement* children;  // side by side; with many of them an index lies in front
    const Both* both;
    Attributed* attributed;  // around the others
  };
  enum Holds : std::uint32_t { kText, kChildren, kBoth };

  [[nodiscard]] Content content() const noexcept;

  // 24 bytes: a typical document has an element for every 40. All but few hold either a text or children, and
  // no attributes.
  const tav::DomName* name_ = nullptr;
  Content content_;
  std::uint32_t line_ = 0;
  std::uint32_t holds_ : 2 = kText;
  std::uint32_t hasAttributes_ : 1 = 0;
  std::uint32_t size_ : 29 = 0;  // of the text, or how many children; not that of both
};

/// What an element holds that has both text and children, or more of one than it can count.
struct TAVDOMElement::Both {
  std::string_view text;
  std::span<const TAVDOMElement> children;
};

/// What an element with attributes holds.
struct TAVDOMElement::Attributed {
  Content content;
  std::span<const tav::DomAttribute> attributes;
};

inline TAVDOMElement::Content TAVDOMElement::content() const noexcept {
  return hasAttributes_ ? content_.attributed->content : content_;
}

inline std::string_view TAVDOMElement::getValue() const noexcept {
  if (holds_ == kText) return {content().text, size_};
  return holds_ == kBoth ? content().both->text : std::string_view();
}

inline std::span<const TAVDOMElement> TAVDOMElement::getElements() const noexcept {
  if (holds_ == kChildren) return {content().children, size_};
  return holds_ == kBoth ? content().both->children : std::span<const TAVDOMElement>();
}

inline const TAVDOMElement* TAVDOMElement::getElement(std::int32_t index) const noexcept {
  const std::span<const TAVDOMElement> children = getElements();
  return index < 0 || static_cast<std::size_t>(index) >= children.size()
             ? nullptr
             : &children[static_cast<std::size_t>(index)];
}

inline std::span<const tav::DomAttribute> TAVDOMElement::getAttributes() const noexcept {
  return hasAttributes_ ? content_.attributed->attributes : std::span<const tav::DomAttribute>();
}
