#include "exports/answers/diff_report.h"
#include "framework/std/json_writer.h"

namespace tav {
namespace {

template <class Items, class F>
void writeList(JsonWriter& json, std::string_view name, const Items& items, F write) {
  json.open(name, '[');
  for (const auto& item : items) write(item);
  json.close(']');
}

void writeTexts(JsonWriter& json, std::string_view name, const std::vector<std::string>& texts) {
  writeList(json, name, texts, [&](const std::string& text) { json.value(text); });
}

void writeLone(JsonWriter& json, std::string_view name, const std::vector<LoneItem>& items) {
  writeList(json, name, items, [&](const LoneItem& item) {
    json.open('{');
    json.member("kind", item.kind);
    json.member("name", item.name);
    json.member("path", item.path);
    json.member("parts", item.parts);
    json.close('}');
  });
}

void writeChanged(JsonWriter& json, std::string_view name, const std::vector<ChangedItem>& items) {
  writeList(json, name, items, [&](const ChangedItem& item) {
    json.open('{');
    json.member("kind", item.kind);
    json.member("name", item.name);
    if (item.before != item.name) json.member("oldName", item.before);
    json.member("path", item.path);
    writeList(json, "changes", item.changes, [&](const Change& change) {
      json.open('{');
      json.member("what", change.what);
      json.member("old", change.before);
      json.member("new", change.after);
      json.close('}');
    });
    writeTexts(json, "newSources", item.newSources);
    writeTexts(json, "lostSources", item.lostSources);
    json.close('}');
  });
}

}  // namespace

void writeDiffJson(const ModelDiff& diff, std::ostream& out) {
  std::string text;
  JsonWriter json(text);
  json.begin('{');
  json.member("format", "xmla-diff/1");
  json.member("old", diff.oldName);
  json.member("new", diff.newName);
  writeLone(json, "added", diff.added);
  writeLone(json, "removed", diff.removed);
  writeChanged(json, "renamed", diff.renamed);
  writeChanged(json, "changed", diff.changed);
  json.close('}');
  out << text << "\n";
}

}  // namespace tav
