#pragma once

// Text for people, as a terminal or a file shows it.

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tav {

/// What the place can do that text is shown in; by default that of a file.
struct TextStyle {
  std::size_t width = 0;  ///< columns to wrap at; 0 for lines as long as they are
  bool colours = false;
};

/// What a piece of text is. Looks add colour or weight to words that say the same without them.
enum class Look : std::uint8_t { plain, title, name, kind, relation, code, good, bad, changed };

/// The columns that printable text takes: two for a wide character, none for one that joins the one before.
std::size_t columnsOf(std::string_view text);

/// The beginning of printable text that takes at most `columns`.
std::string_view fittingBeginning(std::string_view text, std::size_t columns);

/// Source code as it is shown: safe for a terminal, with blanks for tabs, to the next multiple of four.
std::string shownCode(std::string_view line);

/// Writes lines piece by piece. A line that is wider than the style allows goes on in further rows, broken at
/// blanks where there are any, each behind the gutter that the line was begun with.
class ShownText {
 public:
  ShownText(std::ostream& out, const TextStyle& style) : out_(out), style_(style) {}

  /// Begins a line: what stands before its first row, and before the rows that it goes on in.
  ShownText& begin(std::string_view first, std::string_view next);
  /// The same for a line without a gutter, which goes on behind as many blanks.
  ShownText& begin(std::size_t indent = 0, std::size_t nextIndent = 0);
  /// Appends a piece, which must be printable.
  ShownText& add(std::string_view text, Look look = Look::plain);
  /// Writes the line.
  void end();

  [[nodiscard]] const TextStyle& style() const noexcept { return style_; }

 private:
  struct Piece {
    std::size_t end;  // in text_
    Look look;
  };

  [[nodiscard]] std::size_t rowEnd(std::size_t begin, std::size_t columns) const;
  void writeRow(std::size_t begin, std::size_t end);

  std::ostream& out_;
  TextStyle style_;
  std::string first_;
  std::string next_;
  std::string text_;
  std::vector<Piece> pieces_;
  std::size_t piece_ = 0;  // the first that is not wholly written
};

}  // namespace tav
