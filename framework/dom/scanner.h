#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/dom/byte_source.h"
#include "framework/dom/document_failure.h"
#include "framework/dom/tree_builder.h"

namespace tav {

/// Reads plain documents: in UTF-8, without a document type, with tags of ASCII. What it takes, it has
/// checked to the last byte. In front of anything else, a fault among it, it stops, and Expat goes on from
/// there.
class Scanner {
 public:
  Scanner(ByteSource& source, TreeBuilder& tree) : source_(source), tree_(tree) {}

  /// Scans as far as the document is plain; true when that is to its end. Throws TreeLimit.
  bool scan();

  /// The bytes that have been read and not scanned; they lie in the scanner.
  [[nodiscard]] std::string_view rest() const noexcept { return {here_.at, end_}; }
  /// Of the first of them. It is the beginning of the document until the root begins.
  [[nodiscard]] DocumentPlace place() const;
  [[nodiscard]] bool hasBegun() const noexcept { return hasBegun_; }

 private:
  enum class Step {
    done,
    incomplete,  // it takes bytes that have not been read
    foreign      // it is not plain
  };
  struct Cursor {
    const char* at = nullptr;
    std::uint64_t line = 1;
  };

  bool scanProlog();
  Step scanDeclaration(bool isUnicode);
  Step scanNext();
  Step scanMarkup();
  Step scanStartTag();
  Step scanAttributes(Cursor& cursor);
  Step scanAttribute(Cursor& cursor);
  Step scanValue(Cursor& cursor, TagAttribute& attribute);
  Step scanEndTag();
  void scanIndentation();
  Step scanText();
  bool scanLeaf(std::string_view text, Cursor end);
  Step scanBlanks();
  Step scanComment();
  Step scanSection();
  Step scanInstruction();

  Step passEndTag(Cursor& cursor) const;
  Step passBlanks(Cursor& cursor) const;
  Step passBlank(Cursor& cursor) const;
  Step passLineEnd(Cursor& cursor) const;
  Step passBracket(Cursor& cursor) const;
  Step passCharacter(Cursor& cursor) const;
  Step passReference(Cursor& cursor, std::string& text) const;
  template <class Take> Step passTo(Cursor& cursor, std::string_view closing, Take take) const;
  /// Whether this text stands there.
  [[nodiscard]] Step find(const char* at, std::string_view text) const;
  /// What it is when nothing plain stands there.
  [[nodiscard]] Step cutOrForeign(const char* at) const {
    return at == end_ ? Step::incomplete : Step::foreign;
  }
  [[nodiscard]] bool namesDiffer() const;
  bool readMore();

  ByteSource& source_;
  TreeBuilder& tree_;
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
  Cursor here_;                // what has been scanned ends here
  const char* end_ = nullptr;  // of what has been read; a word of NUL stands there
  bool isAtEnd_ = false;       // whether nothing is left to read
  bool hasBegun_ = false;
  std::uint64_t columnsBefore_ = 0;  // characters of the line that have left the buffer
  std::vector<TagAttribute> attributes_;
  std::string text_;  // of the token that is being scanned, with references replaced
};

}  // namespace tav
