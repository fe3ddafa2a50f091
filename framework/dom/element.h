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
  [[nodiscard]] std::string_view getValue() const noexcept { return {value_, valueSize_}; }

  [[nodiscard]] std::int32_t getElementCount() const noexcept { return static_cast<std::int32_t>(count_); }
  /// Child element `index`, from 0 in document order; null when there is none.
  [[nodiscard]] const TAVDOMElement* getElement(std::int32_t index) const noexcept {
    return index < 0 || index >= getElementCount() ? nullptr : children_ + index;
  }
  /// The child elements, in document order.
  [[nodiscard]] std::span<const TAVDOMElement> getElements() const noexcept { return {children_, count_}; }

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
  [[nodiscard]] std::span<const tav::DomAttribute> getAttributes() const noexcept {
    return {attributes_, attributeCount_};
  }
  /// The value of the attribute of this name as written; empty when there is none.
  [[nodiscard]] std::string_view getAttribute(std::string_view name) const noexcept;
  /// The value of the attribute of this namespace and local name, whatever its prefix; empty when there is
  /// none. An attribute without a prefix is in no namespace.
  [[nodiscard]] std::string_view getAttributeNS(std::string_view space,
                                                std::string_view localName) const noexcept;

 private:
  friend class tav::TreeBuilder;

  // 48 bytes: a typical document has an element for every 40.
  const tav::DomName* name_ = nullptr;
  const TAVDOMElement* children_ = nullptr;  // side by side; with many of them an index lies in front
  const tav::DomAttribute* attributes_ = nullptr;
  const char* value_ = nullptr;
  std::uint32_t valueSize_ = 0;
  std::uint32_t count_ = 0;
  std::uint32_t attributeCount_ = 0;
  std::uint32_t line_ = 0;
};
