#pragma once

// Where the elements and attributes of a document stand in its text, so that tests can take it apart.

#include <string>
#include <string_view>
#include <vector>

namespace tav::test {

struct Span {
  std::string path;  // of tags from the root down, the nth child of a tag as tag[n] from the second on
  std::size_t begin;
  std::size_t contentBegin;  // equal to contentEnd and end where the element is one tag
  std::size_t contentEnd;
  std::size_t end;

  [[nodiscard]] bool isOneTag() const { return contentBegin == end; }
};

/// The elements of a well-formed document without comments, declarations and CDATA, in document order.
std::vector<Span> findElements(std::string_view document);
/// The attributes of one of them, with the path of the element and "@name". The blank in front belongs to the
/// span, the quotes do not belong to the content.
std::vector<Span> findAttributes(std::string_view document, const Span& element);

}  // namespace tav::test
