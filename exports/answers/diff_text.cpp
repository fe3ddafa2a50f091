#include "exports/answers/diff_report.h"
#include "exports/answers/diff_words.h"
#include "exports/answers/notes.h"
#include "framework/std/printable.h"

namespace tav {
namespace {

constexpr std::size_t kIndent = 2;
constexpr std::size_t kChangeIndent = 6;

class DiffText {
 public:
  DiffText(std::ostream& out, const TextStyle& style) : text_(out, style) {}

  void write(const ModelDiff& diff) {
    text_.begin().add(printable(diff.oldName), Look::name).add(" -> ");
    text_.add(printable(diff.newName), Look::name).end();
    if (diff.empty()) text_.begin(0, kIndent).add(nothingText(diff)).end();
    writeBroken(diff.broken);
    writeLone(DiffGroup::lostLineage, "!", Look::bad, diff.lostLineage);
    writeItems(DiffGroup::changed, diff.changed);
    writeLone(DiffGroup::added, "+", Look::good, diff.added);
    writeLone(DiffGroup::removed, "-", Look::bad, diff.removed);
    writeItems(DiffGroup::renamed, diff.renamed);
    writeItems(DiffGroup::moved, diff.moved);
    writeReordered(diff.reordered);
    writeAffected(diff);
    writeNotes(diff.notes, text_);
  }

 private:
  void writeTitle(std::string_view title) {
    text_.begin().end();
    text_.begin(0, kIndent).add(title, Look::title).end();
  }

  /// Begins a line with the mark of its group.
  ShownText& mark(std::string_view sign, Look look) {
    return text_.begin(kIndent, kChangeIndent).add(sign, look).add(" ");
  }

  ShownText& addObject(NodeKind kind, std::string_view name) {
    return text_.add(nodeKindLabel(kind), Look::kind).add(" ").add(printable(name), Look::name);
  }

  void writeBroken(const std::vector<BrokenName>& broken) {
    if (!broken.empty()) writeTitle(diffGroupTitle(DiffGroup::broken));
    for (const BrokenName& name : broken) mark("!", Look::bad).add(brokenText(name, printable)).end();
  }

  void writeLone(DiffGroup group, std::string_view sign, Look look, const std::vector<DiffObject>& objects) {
    if (!objects.empty()) writeTitle(diffGroupTitle(group));
    for (const DiffObject& object : objects) {
      mark(sign, look);
      addObject(object.kind, object.name).add(partsText(object.parts)).end();
    }
  }

  void writeItems(DiffGroup group, const std::vector<ChangedObjects>& items) {
    if (!items.empty()) writeTitle(diffGroupTitle(group));
    for (const ChangedObjects& item : items) {
      const DiffObject& first = item.objects.front();
      mark("~", Look::changed);
      if (first.before.empty())
        text_.add(objectsText(item.objects, printable), Look::name);
      else
        addObject(first.kind, first.before).add(" -> ").add(printable(first.name), Look::name);
      text_.end();
      for (const Change& change : item.changes) writeChange(change);
    }
  }

  void writeChange(const Change& change) {
    text_.begin(kChangeIndent, kChangeIndent + kIndent);
    if (!isShownAsLines(change)) {
      text_.add(changeText(change, printable, " -> ")).end();
      return;
    }
    text_.add(linesTitle(change, printable)).end();
    for (const ShownLine& line : linesOf(change)) {
      text_.begin(line.mark == '@' ? kChangeIndent + 4 : kChangeIndent + 2, kChangeIndent + 6);
      if (line.mark == '@')
        text_.add("...").end();
      else
        text_.add(std::string(1, line.mark) + " " + shownCode(line.line), lookOf(line.mark)).end();
    }
  }

  static Look lookOf(char mark) { return mark == '+' ? Look::good : mark == '-' ? Look::bad : Look::plain; }

  void writeReordered(const std::vector<Reordered>& reordered) {
    if (!reordered.empty()) writeTitle(diffGroupTitle(DiffGroup::reordered));
    for (const Reordered& one : reordered) {
      mark("~", Look::changed).add(one.kind, Look::kind);
      if (!one.owner.empty()) text_.add(" of ").add(printable(one.owner), Look::name);
      text_.add(": ").add(firstOf(one.moved, printable)).end();
    }
  }

  void writeAffected(const ModelDiff& diff) {
    if (diff.affected == 0) return;
    writeTitle("Affected downstream: " + std::to_string(diff.affected));
    for (const DiffObject& object : diff.firstAffected) {
      text_.begin(2 * kIndent, kChangeIndent);
      addObject(object.kind, object.name).end();
    }
    if (diff.affected > diff.firstAffected.size()) {
      text_.begin(2 * kIndent)
          .add("and " + std::to_string(diff.affected - diff.firstAffected.size()) + " more")
          .end();
    }
  }

  ShownText text_;
};

}  // namespace

void writeDiffText(const ModelDiff& diff, std::ostream& out, const TextStyle& style) {
  DiffText(out, style).write(diff);
}

}  // namespace tav
