#include "exports/answers/shown_text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

#include "framework/std/printable.h"
#include "framework/std/utf8.h"

namespace tav {
namespace {

constexpr std::size_t kTab = 4;
/// However deep a gutter is, so many columns are left for text; the terminal then wraps the rest.
constexpr std::size_t kLeastColumns = 16;
constexpr std::string_view kReset = "\x1b[0m";

/// In the order of Look; empty for one that is shown as it is. Of the sixteen colours that every terminal has
/// only those that are readable on a dark and on a light background.
constexpr std::array<std::string_view, 9> kSequences{
    "", "\x1b[1;4m", "\x1b[1m", "\x1b[32m", "\x1b[36m", "\x1b[35m", "\x1b[32m", "\x1b[31m", "\x1b[33m"};

struct Character {
  std::size_t bytes;
  std::size_t columns;
};

/// The character that text, which is not empty, begins with. A byte that belongs to none takes a column.
Character characterOf(std::string_view text) {
  const std::size_t length = utf8Length(text);
  if (length <= 1) return {1, 1};
  const int columns = utf8proc_charwidth(static_cast<utf8proc_int32_t>(utf8Character(text, length)));
  return {length, static_cast<std::size_t>(std::max(columns, 0))};
}

}  // namespace

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = characterOf(text);
    columns += character.columns;
    text.remove_prefix(character.bytes);
  }
  return columns;
}

std::string_view fittingBeginning(std::string_view text, std::size_t columns) {
  std::size_t bytes = 0;
  while (bytes < text.size()) {
    const Character character = characterOf(text.substr(bytes));
    if (character.columns > columns) break;
    columns -= character.columns;
    bytes += character.bytes;
  }
  return text.substr(0, bytes);
}

std::string shownCode(std::string_view line) {
  std::string text;
  std::size_t columns = 0;
  for (std::size_t begin = 0; begin <= line.size();) {
    const std::size_t tab = std::min(line.find('\t', begin), line.size());
    const std::string piece = printable(line.substr(begin, tab - begin));
    text += piece;
    columns += columnsOf(piece);
    if (tab < line.size()) {
      const std::size_t blanks = kTab - columns % kTab;
      text.append(blanks, ' ');
      columns += blanks;
    }
    begin = tab + 1;
  }
  return text;
}

ShownText& ShownText::begin(std::string_view first, std::string_view next) {
  first_ = first;
  next_ = next;
  text_.clear();
  pieces_.clear();
  piece_ = 0;
  return *this;
}

ShownText& ShownText::begin(std::size_t indent, std::size_t nextIndent) {
  return begin(std::string(indent, ' '), std::string(std::max(indent, nextIndent), ' '));
}

ShownText& ShownText::add(std::string_view text, Look look) {
  text_ += text;
  pieces_.push_back({text_.size(), look});
  return *this;
}

/// Where a row ends that begins at `begin`: before the last blank that fits; within a word that is longer
/// than a row, behind a sign that parts an address or a name, if one is far enough. At least one character
/// further.
std::size_t ShownText::rowEnd(std::size_t begin, std::size_t columns) const {
  const std::string_view rest = std::string_view(text_).substr(begin);
  const std::string_view fits = fittingBeginning(rest, columns);
  if (fits.size() == rest.size()) return text_.size();
  const std::size_t blank = rest[fits.size()] == ' ' ? fits.size() : fits.find_last_of(' ');
  const std::size_t last = blank == fits.npos ? fits.npos : fits.substr(0, blank).find_last_not_of(' ');
  if (last != fits.npos) return begin + last + 1;
  const std::size_t sign = fits.find_last_of("/.,;]");
  if (sign != fits.npos && sign > fits.size() / 2) return begin + sign + 1;
  return begin + std::max(fits.size(), characterOf(rest).bytes);
}

void ShownText::writeRow(std::size_t begin, std::size_t end) {
  for (; begin < end; ++piece_) {
    const Piece& piece = pieces_[piece_];
    const std::size_t stop = std::min(piece.end, end);
    if (begin < stop) {
      const std::string_view sequence =
          style_.colours ? kSequences[static_cast<std::size_t>(piece.look)] : std::string_view();
      out_ << sequence << std::string_view(text_).substr(begin, stop - begin)
           << (sequence.empty() ? std::string_view() : kReset);
      begin = stop;
    }
    if (piece.end > end) return;  // it goes on in the next row
  }
}

void ShownText::end() {
  const auto columnsBehind = [&](const std::string& gutter) {
    const std::size_t taken = columnsOf(gutter);
    return taken + kLeastColumns > style_.width ? kLeastColumns : style_.width - taken;
  };
  std::size_t begin = 0;
  std::size_t end = style_.width == 0 ? text_.size() : rowEnd(0, columnsBehind(first_));
  out_ << first_;
  writeRow(begin, end);
  while (end < text_.size()) {
    begin = std::min(text_.find_first_not_of(' ', end), text_.size());
    if (begin == text_.size()) break;
    end = rowEnd(begin, columnsBehind(next_));
    out_ << "\n" << next_;
    while (pieces_[piece_].end <= begin) ++piece_;
    writeRow(begin, end);
  }
  out_ << "\n";
}

}  // namespace tav
