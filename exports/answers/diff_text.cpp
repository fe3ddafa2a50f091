#include "exports/answers/diff_report.h"
#include "exports/answers/diff_words.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

class DiffText {
 public:
  explicit DiffText(std::ostream& out) : out_(out) {}

  void write(const ModelDiff& diff) {
    out_ << printable(diff.oldName) << " -> " << printable(diff.newName) << "\n";
    if (diff.empty()) out_ << nothingText(diff) << "\n";
    writeBroken(diff.broken);
    writeLone(DiffGroup::lostLineage, '!', diff.lostLineage);
    writeItems(DiffGroup::changed, diff.changed);
    writeLone(DiffGroup::added, '+', diff.added);
    writeLone(DiffGroup::removed, '-', diff.removed);
    writeItems(DiffGroup::renamed, diff.renamed);
    writeItems(DiffGroup::moved, diff.moved);
    writeReordered(diff.reordered);
    writeAffected(diff);
    if (!diff.notes.empty()) out_ << "\n";
    for (const std::string& note : diff.notes) out_ << "Note: " << note << ".\n";
  }

 private:
  void writeTitle(DiffGroup group) { out_ << "\n" << diffGroupTitle(group) << "\n"; }

  void writeBroken(const std::vector<BrokenName>& broken) {
    if (!broken.empty()) writeTitle(DiffGroup::broken);
    for (const BrokenName& name : broken) out_ << "  ! " << brokenText(name, printable) << "\n";
  }

  void writeLone(DiffGroup group, char mark, const std::vector<DiffObject>& objects) {
    if (!objects.empty()) writeTitle(group);
    for (const DiffObject& object : objects)
      out_ << "  " << mark << " " << nodeKindLabel(object.kind) << " " << printable(object.name)
           << partsText(object.parts) << "\n";
  }

  void writeItems(DiffGroup group, const std::vector<ChangedObjects>& items) {
    if (!items.empty()) writeTitle(group);
    for (const ChangedObjects& item : items) {
      const DiffObject& first = item.objects.front();
      out_ << "  ~ ";
      if (first.before.empty())
        out_ << objectsText(item.objects, printable) << "\n";
      else
        out_ << nodeKindLabel(first.kind) << " " << printable(first.before) << " -> " << printable(first.name)
             << "\n";
      for (const Change& change : item.changes) writeChange(change);
    }
  }

  void writeChange(const Change& change) {
    if (!isShownAsLines(change)) {
      out_ << "      " << changeText(change, printable, " -> ") << "\n";
      return;
    }
    out_ << "      " << linesTitle(change, printable) << "\n";
    for (const ShownLine& line : linesOf(change)) {
      if (line.mark == '@')
        out_ << "          ...\n";
      else
        out_ << "        " << line.mark << " " << shownLine(line.line) << "\n";
    }
  }

  void writeReordered(const std::vector<Reordered>& reordered) {
    if (!reordered.empty()) writeTitle(DiffGroup::reordered);
    for (const Reordered& one : reordered) {
      out_ << "  ~ " << one.kind;
      if (!one.owner.empty()) out_ << " of " << printable(one.owner);
      out_ << ": " << firstOf(one.moved, printable) << "\n";
    }
  }

  void writeAffected(const ModelDiff& diff) {
    if (diff.affected == 0) return;
    out_ << "\nAffected downstream: " << diff.affected << "\n";
    for (const DiffObject& object : diff.firstAffected)
      out_ << "    " << nodeKindLabel(object.kind) << " " << printable(object.name) << "\n";
    if (diff.affected > diff.firstAffected.size())
      out_ << "    and " << diff.affected - diff.firstAffected.size() << " more\n";
  }

  std::ostream& out_;
};

}  // namespace

void writeDiffText(const ModelDiff& diff, std::ostream& out) {
  DiffText(out).write(diff);
}

}  // namespace tav
