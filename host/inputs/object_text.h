#pragma once

// The text of one object of a project, cut into its elements so that it can be put into another text.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// An element, by where it stands in the text.
struct TextElement {
  std::string name;       ///< as written
  std::uint32_t depth;    ///< 0 for the root element
  std::size_t begin = 0;  ///< of its start tag
  std::size_t inner = 0;  ///< behind its start tag
  std::size_t innerEnd = 0;
  std::size_t end = 0;  ///< behind its end tag; where `inner` is too for an empty element
};

/// A root element as it is written, but without the attributes in which the designer keeps what it alone
/// needs; and its elements, in the order of the document, down to kDeepest.
struct ObjectText {
  static constexpr std::uint32_t kDeepest = 3;

  std::string text;
  std::vector<TextElement> elements;

  [[nodiscard]] std::string_view inner(const TextElement& element) const {
    return std::string_view(text).substr(element.inner, element.innerEnd - element.inner);
  }
  /// The first child of element `parent` with this name, or null.
  [[nodiscard]] const TextElement* child(std::size_t parent, std::string_view name) const;
};

/// Why a file holds no object, and where in it: ":line:column", or empty.
class BrokenObject : public std::runtime_error {
 public:
  explicit BrokenObject(const std::string& cause, std::string place = {})
      : std::runtime_error(cause), place_(std::move(place)) {}
  [[nodiscard]] const std::string& place() const noexcept { return place_; }

 private:
  std::string place_;
};

/// Reads a file whose root element is `root`. Throws BrokenObject.
ObjectText readObjectText(const std::string& path, std::string_view root);

}  // namespace host
