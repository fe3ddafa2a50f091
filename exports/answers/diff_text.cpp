#include "exports/answers/diff_report.h"
#include "framework/std/printable.h"
#include "framework/std/text.h"

namespace tav {
namespace {

constexpr std::string_view kNothing = "Nothing differs.\n";

std::string partsText(std::size_t parts) {
  if (parts == 0) return "";
  return " with " + std::to_string(parts) + (parts == 1 ? " part" : " parts");
}

/// One line of a text that may be indented by tabs.
std::string shownLine(std::string_view line) {
  constexpr std::string_view kTab = "    ";
  std::string text;
  for (const char c : line) {
    if (c == '\t')
      text += kTab;
    else
      text += printable({&c, 1});
  }
  return text;
}

bool isLong(const Change& change) {
  constexpr std::size_t kLineWidth = 60;
  const auto isLongText = [](const std::string& text) {
    return text.size() > kLineWidth || text.find('\n') != text.npos;
  };
  return isLongText(change.before) || isLongText(change.after);
}

class DiffText {
 public:
  explicit DiffText(std::ostream& out) : out_(out) {}

  void write(const ModelDiff& diff) {
    out_ << printable(diff.oldName) << " -> " << printable(diff.newName) << "\n";
    if (diff.empty()) out_ << kNothing;
    writeLone("Added", '+', diff.added);
    writeLone("Removed", '-', diff.removed);
    writeItems("Renamed", diff.renamed);
    writeItems("Changed", diff.changed);
  }

 private:
  void writeLone(std::string_view title, char mark, const std::vector<LoneItem>& items) {
    if (!items.empty()) out_ << "\n" << title << "\n";
    for (const LoneItem& item : items) {
      out_ << "  " << mark << " " << item.kind << " " << printable(item.name) << partsText(item.parts)
           << "\n";
    }
  }

  void writeItems(std::string_view title, const std::vector<ChangedItem>& items) {
    if (!items.empty()) out_ << "\n" << title << "\n";
    for (const ChangedItem& item : items) {
      out_ << "  ~ " << item.kind << " " << printable(item.before);
      if (item.before != item.name) out_ << " -> " << printable(item.name);
      out_ << "\n";
      for (const Change& change : item.changes) writeChange(change);
      for (const std::string& source : item.newSources)
        out_ << "      now also depends on " << printable(source) << "\n";
      for (const std::string& source : item.lostSources)
        out_ << "      no longer depends on " << printable(source) << "\n";
    }
  }

  void writeChange(const Change& change) {
    out_ << "      " << printable(change.what) << ":";
    if (!isLong(change)) {
      out_ << " " << value(change.before) << " -> " << value(change.after) << "\n";
      return;
    }
    out_ << "\n";
    for (const std::string_view line : linesOf(change.before))
      out_ << "        - " << shownLine(line) << "\n";
    for (const std::string_view line : linesOf(change.after)) out_ << "        + " << shownLine(line) << "\n";
  }

  static std::string value(const std::string& text) { return text.empty() ? "(none)" : printable(text); }

  std::ostream& out_;
};

/// A row of backticks longer than any in the texts.
std::string fenceFor(std::initializer_list<std::string_view> texts, std::size_t atLeast) {
  std::size_t longest = atLeast - 1;
  for (const std::string_view text : texts) {
    std::size_t run = 0;
    for (const char c : text) {
      run = c == '`' ? run + 1 : 0;
      longest = std::max(longest, run);
    }
  }
  return std::string(longest + 1, '`');
}

/// Text as Markdown shows it to the letter.
std::string code(std::string_view text) {
  const std::string line = shownLine(text);
  const std::string fence = fenceFor({line}, 1);
  const bool blank = line.empty() || line.starts_with('`') || line.ends_with('`') || line.starts_with(' ');
  return fence + (blank ? " " : "") + line + (blank ? " " : "") + fence;
}

class DiffMarkdown {
 public:
  explicit DiffMarkdown(std::ostream& out) : out_(out) {}

  void write(const ModelDiff& diff) {
    out_ << "### " << code(diff.newName) << "\n\n";
    if (diff.empty()) {
      out_ << kNothing;
      return;
    }
    out_ << diff.added.size() << " added, " << diff.removed.size() << " removed, " << diff.renamed.size()
         << " renamed, " << diff.changed.size() << " changed\n";
    writeLone("Added", diff.added);
    writeLone("Removed", diff.removed);
    writeItems("Renamed", diff.renamed);
    writeItems("Changed", diff.changed);
  }

 private:
  void writeLone(std::string_view title, const std::vector<LoneItem>& items) {
    if (!items.empty()) out_ << "\n**" << title << "**\n\n";
    for (const LoneItem& item : items)
      out_ << "- " << item.kind << " " << code(item.name) << partsText(item.parts) << "\n";
  }

  void writeItems(std::string_view title, const std::vector<ChangedItem>& items) {
    if (!items.empty()) out_ << "\n**" << title << "**\n\n";
    for (const ChangedItem& item : items) {
      out_ << "- " << item.kind << " " << code(item.before);
      if (item.before != item.name) out_ << " is now " << code(item.name);
      out_ << "\n";
      for (const Change& change : item.changes) writeChange(change);
      for (const std::string& source : item.newSources)
        out_ << "  - now also depends on " << code(source) << "\n";
      for (const std::string& source : item.lostSources)
        out_ << "  - no longer depends on " << code(source) << "\n";
    }
  }

  void writeChange(const Change& change) {
    out_ << "  - " << code(change.what) << ":";
    if (!isLong(change)) {
      out_ << " " << value(change.before) << " → " << value(change.after) << "\n";
      return;
    }
    const std::string fence = fenceFor({change.before, change.after}, 3);
    out_ << "\n\n    " << fence << "diff\n";
    for (const std::string_view line : linesOf(change.before)) out_ << "    - " << shownLine(line) << "\n";
    for (const std::string_view line : linesOf(change.after)) out_ << "    + " << shownLine(line) << "\n";
    out_ << "    " << fence << "\n\n";
  }

  static std::string value(const std::string& text) { return text.empty() ? "(none)" : code(text); }

  std::ostream& out_;
};

}  // namespace

void writeDiffText(const ModelDiff& diff, std::ostream& out) {
  DiffText(out).write(diff);
}

void writeDiffMarkdown(const ModelDiff& diff, std::ostream& out) {
  DiffMarkdown(out).write(diff);
}

}  // namespace tav
