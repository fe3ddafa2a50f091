#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "framework/dom/arena.h"
#include "framework/dom/attribute_lists.h"
#include "framework/dom/child_index.h"
#include "framework/dom/element.h"
#include "framework/dom/names.h"
#include "framework/dom/texts.h"
#include "framework/dom/unkept_content.h"

namespace tav {

/// Where the trees of a TAVDOM lie.
struct DomStorage {
  Arena elements;  // lists of child elements, each behind those of the elements in it, and its index in front
                   // of it
  Arena lasting;   // what stays when lists are given back
  DomNames names{lasting};
  DomTexts texts{lasting};
  AttributeLists lists{lasting};
};

/// More than a tree can hold; its text says of what.
struct TreeLimit : std::length_error {
  using std::length_error::length_error;
};

/// An attribute of a start tag.
struct TagAttribute {
  std::string_view name;
  std::string_view value;
  bool isKept = false;  // whether the value already lies in the arena of the tree
};

/// Makes a tree from tags and texts in the order of the document. What is not finished yet lies on stacks of
/// its own: depth costs heap, never call stack.
class TreeBuilder {
 public:
  TreeBuilder(DomStorage& storage, UnkeptContent unkept);

  void start(std::string_view name, std::uint64_t line, std::span<const TagAttribute> attributes);
  /// Text directly in the innermost element. Throws TreeLimit.
  void addText(std::string_view text);
  /// The same with text that is white space alone.
  void addBlanks(std::string_view text);
  /// Ends the innermost element. Throws TreeLimit.
  void end();
  /// Ends the innermost element, whose text, where it had none before, is this.
  void endWith(std::string_view text);

  [[nodiscard]] bool isOpen() const noexcept { return !open_.empty(); }
  [[nodiscard]] bool isFinished() const noexcept { return open_.empty() && !closed_.empty(); }
  /// Whether the innermost element has had neither text nor children.
  [[nodiscard]] bool isBare() const noexcept {
    return open_.back().firstChild == closed_.size() && open_.back().textStart == text_.size();
  }
  [[nodiscard]] std::size_t depth() const noexcept { return open_.size(); }
  /// The element that is open at this depth, 0 for the root; it has its tag and its line.
  [[nodiscard]] const TAVDOMElement& openElement(std::size_t depth) const { return open_[depth].element; }
  [[nodiscard]] const TAVDOMElement& innermost() const { return open_.back().element; }
  /// The text kept as long as the tree.
  std::string_view keep(std::string_view text) { return storage_.texts.keep(text); }

  /// The root, when it has ended.
  const TAVDOMElement* finish();

 private:
  struct Frame {
    TAVDOMElement element;
    std::size_t firstChild;  // in closed_
    std::size_t textStart;   // in text_
    DomNames::Scope scope;
    bool hasWords = false;  // whether its text is more than white space
  };

  [[nodiscard]] bool isUnkept() const noexcept { return open_.size() >= unkeptDepth_; }
  [[nodiscard]] bool startsUnkept(std::string_view name) const;
  void startUnkept(std::string_view name);
  void keepAttributes(std::span<const TagAttribute> attributes, TAVDOMElement& element);
  void hold(TAVDOMElement& element, std::string_view text, std::span<const TAVDOMElement> children);
  void close(const TAVDOMElement& element);
  std::span<const TAVDOMElement> placed(std::span<const TAVDOMElement> children);
  const ChildIndex* indexOf(std::span<const TAVDOMElement> children) const;

  static constexpr std::size_t kNoDepth = static_cast<std::size_t>(-1);

  DomStorage& storage_;
  UnkeptContent unkept_;
  std::size_t unkeptDepth_ = kNoDepth;  // of an open element whose content is not kept, counted from 1
  std::vector<Frame> open_;
  std::vector<TAVDOMElement> closed_;  // elements whose parent is still open
  std::string text_;
  std::vector<DomAttribute> kept_;  // of one tag
};

}  // namespace tav
