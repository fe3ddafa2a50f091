#include "exports/answers/diff_report.h"
#include "exports/answers/diff_words.h"
#include "exports/answers/markdown.h"
#include "exports/answers/shown_text.h"

namespace tav {
namespace {

constexpr std::size_t kOpenList = 20;  // a longer one is folded, so that a pull request stays readable

/// With tabs as blanks, as lines of expressions have them.
std::string code(std::string_view text) {
  return markdownCode(shownCode(text));
}

class DiffMarkdown {
 public:
  explicit DiffMarkdown(std::ostream& out) : out_(out) {}

  void write(const ModelDiff& diff) {
    out_ << "### " << code(diff.newName) << "\n\n";
    if (diff.empty()) out_ << nothingText(diff) << "\n";
    writeCounts(diff);
    writeGroup(diff, DiffGroup::broken, [&] { writeBroken(diff.broken); });
    writeGroup(diff, DiffGroup::lostLineage, [&] { writeLone(diff.lostLineage); });
    writeGroup(diff, DiffGroup::changed, [&] { writeItems(diff.changed); });
    writeGroup(diff, DiffGroup::added, [&] { writeLone(diff.added); });
    writeGroup(diff, DiffGroup::removed, [&] { writeLone(diff.removed); });
    writeGroup(diff, DiffGroup::renamed, [&] { writeItems(diff.renamed); });
    writeGroup(diff, DiffGroup::moved, [&] { writeItems(diff.moved); });
    writeGroup(diff, DiffGroup::reordered, [&] { writeReordered(diff.reordered); });
    writeAffected(diff);
    for (const std::string& note : diff.notes) out_ << "\nNote: " << note << ".\n";
  }

 private:
  void writeCounts(const ModelDiff& diff) {
    std::string counts;
    for (std::size_t i = 0; i < kDiffGroupCount; ++i) {
      const auto group = static_cast<DiffGroup>(i);
      if (diff.count(group) == 0) continue;
      if (!counts.empty()) counts += ", ";
      std::string title(diffGroupTitle(group));
      title.front() = static_cast<char>(title.front() | 0x20);
      counts.append(std::to_string(diff.count(group))).append(" ").append(title);
    }
    if (!counts.empty()) out_ << counts << "\n";
  }

  template <class Write> void writeGroup(const ModelDiff& diff, DiffGroup group, Write write) {
    if (diff.count(group) == 0) return;
    const bool folded = diff.count(group) > kOpenList;
    out_ << "\n#### " << diffGroupTitle(group) << "\n\n";
    if (folded) out_ << "<details><summary>" << diff.count(group) << "</summary>\n\n";
    write();
    if (folded) out_ << "\n</details>\n";
  }

  void writeBroken(const std::vector<BrokenName>& broken) {
    for (const BrokenName& name : broken) out_ << "- " << brokenText(name, code) << "\n";
  }

  void writeLone(const std::vector<DiffObject>& objects) {
    for (const DiffObject& object : objects)
      out_ << "- " << nodeKindLabel(object.kind) << " " << code(object.name) << partsText(object.parts)
           << "\n";
  }

  void writeItems(const std::vector<ChangedObjects>& items) {
    for (const ChangedObjects& item : items) {
      const DiffObject& first = item.objects.front();
      out_ << "- ";
      if (first.before.empty())
        out_ << objectsText(item.objects, code) << "\n";
      else
        out_ << nodeKindLabel(first.kind) << " " << code(first.before) << " is now " << code(first.name)
             << "\n";
      for (const Change& change : item.changes) writeChange(change);
    }
  }

  void writeChange(const Change& change) {
    if (!isShownAsLines(change)) {
      out_ << "  - " << changeText(change, code, " → ") << "\n";
      return;
    }
    const std::string fence = markdownFence({change.before.value_or(""), change.after.value_or("")}, 3);
    out_ << "  - " << linesTitle(change, code) << "\n\n    " << fence << "diff\n";
    for (const ShownLine& line : linesOf(change)) {
      if (line.mark == '@')
        out_ << "      ...\n";
      else
        out_ << "    " << line.mark << " " << shownCode(line.line) << "\n";
    }
    out_ << "    " << fence << "\n\n";
  }

  void writeReordered(const std::vector<Reordered>& reordered) {
    for (const Reordered& one : reordered) {
      out_ << "- " << one.kind;
      if (!one.owner.empty()) out_ << " of " << code(one.owner);
      out_ << ": " << firstOf(one.moved, code) << "\n";
    }
  }

  void writeAffected(const ModelDiff& diff) {
    if (diff.affected == 0) return;
    out_ << "\n#### Affected downstream: " << diff.affected << "\n\n";
    writeLone(diff.firstAffected);
    if (diff.affected > diff.firstAffected.size())
      out_ << "- and " << diff.affected - diff.firstAffected.size() << " more\n";
  }

  std::ostream& out_;
};

}  // namespace

void writeDiffMarkdown(const ModelDiff& diff, std::ostream& out) {
  DiffMarkdown(out).write(diff);
}

}  // namespace tav
