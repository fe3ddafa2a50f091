#include "exports/answers/diff_report.h"
#include "framework/std/json_writer.h"

namespace tav {
namespace {

// In the order of Change::About.
constexpr std::array<std::string_view, 4> kAbouts{"setting", "expression", "relation", "name"};

class DiffJson {
 public:
  explicit DiffJson(std::string& text) : json_(text) {}

  void write(const ModelDiff& diff) {
    json_.begin('{');
    json_.member("format", "xmla-diff/2");
    json_.member("old", diff.oldName);
    json_.member("new", diff.newName);
    writeList("broken", diff.broken, &DiffJson::writeBroken);
    writeList("lostLineage", diff.lostLineage, &DiffJson::writeObject);
    writeList("changed", diff.changed, &DiffJson::writeChanged);
    writeList("added", diff.added, &DiffJson::writeObject);
    writeList("removed", diff.removed, &DiffJson::writeObject);
    writeList("renamed", diff.renamed, &DiffJson::writeChanged);
    writeList("moved", diff.moved, &DiffJson::writeChanged);
    writeList("reordered", diff.reordered, &DiffJson::writeReordered);
    json_.open("affected", '{');
    json_.member("count", diff.affected);
    writeList("first", diff.firstAffected, &DiffJson::writeObject);
    json_.close('}');
    writeTexts("notes", diff.notes);
    json_.close('}');
  }

 private:
  template <class Item>
  void writeList(std::string_view name, const std::vector<Item>& items,
                 void (DiffJson::*writeItem)(const Item&)) {
    json_.open(name, '[');
    for (const Item& item : items) {
      json_.open('{');
      (this->*writeItem)(item);
      json_.close('}');
    }
    json_.close(']');
  }

  void writeTexts(std::string_view name, const std::vector<std::string>& texts) {
    json_.open(name, '[');
    for (const std::string& text : texts) json_.value(text);
    json_.close(']');
  }

  void writeObject(const DiffObject& object) {
    json_.member("kind", nodeKindLabel(object.kind));
    json_.member("name", object.name);
    json_.optional("oldName", object.before);
    json_.member("path", object.path);
    if (object.parts > 0) json_.member("parts", object.parts);
  }

  void writeBroken(const BrokenName& broken) {
    writeObject(broken.object);
    json_.member("broken", broken.name);
    json_.optional("note", broken.note);
  }

  void writeChanged(const ChangedObjects& item) {
    writeList("objects", item.objects, &DiffJson::writeObject);
    writeList("changes", item.changes, &DiffJson::writeChange);
  }

  /// "old" and "new" are left out where there is none.
  void writeChange(const Change& change) {
    json_.member("about", kAbouts[static_cast<std::size_t>(change.about)]);
    json_.member("what", change.what);
    if (change.before) json_.member("old", *change.before);
    if (change.after) json_.member("new", *change.after);
    if (change.onlyLayout) json_.member("onlyLayout", true);
    if (change.hidden) json_.member("hidden", true);
  }

  void writeReordered(const Reordered& one) {
    json_.member("kind", one.kind);
    json_.optional("owner", one.owner);
    writeTexts("moved", one.moved);
  }

  JsonWriter json_;
};

}  // namespace

void writeDiffJson(const ModelDiff& diff, std::ostream& out) {
  std::string text;
  DiffJson(text).write(diff);
  out << text << "\n";
}

}  // namespace tav
