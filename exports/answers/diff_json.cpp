#include "exports/answers/diff_report.h"
#include "framework/std/json_text.h"

namespace tav {
namespace {

/// Objects and lists under construction; members are separated by themselves.
class JsonText {
 public:
  void open(char bracket) {
    text += bracket;
    first_ = true;
  }
  void close(char bracket) {
    text += bracket;
    first_ = false;
  }
  void item() {
    if (!first_) text += ',';
    first_ = false;
  }
  void key(std::string_view name) {
    item();
    text.append("\"").append(name).append("\":");
  }
  void member(std::string_view name, std::string_view value) {
    key(name);
    appendJsonText(text, value);
  }
  template <class Items, class F> void list(std::string_view name, const Items& items, F append) {
    key(name);
    open('[');
    for (const auto& entry : items) {
      item();
      append(entry);
    }
    close(']');
  }

  std::string text;

 private:
  bool first_ = true;
};

void appendChanges(JsonText& json, const ChangedItem& item) {
  const auto appendText = [&](const std::string& text) { appendJsonText(json.text, text); };
  json.list("changes", item.changes, [&](const Change& change) {
    json.open('{');
    json.member("what", change.what);
    json.member("old", change.before);
    json.member("new", change.after);
    json.close('}');
  });
  json.list("newSources", item.newSources, appendText);
  json.list("lostSources", item.lostSources, appendText);
}

void appendLone(JsonText& json, std::string_view name, const std::vector<LoneItem>& items) {
  json.list(name, items, [&](const LoneItem& item) {
    json.open('{');
    json.member("kind", item.kind);
    json.member("name", item.name);
    json.member("path", item.path);
    json.key("parts");
    json.text += std::to_string(item.parts);
    json.close('}');
  });
}

void appendItems(JsonText& json, std::string_view name, const std::vector<ChangedItem>& items) {
  json.list(name, items, [&](const ChangedItem& item) {
    json.open('{');
    json.member("kind", item.kind);
    json.member("name", item.name);
    if (item.before != item.name) json.member("oldName", item.before);
    json.member("path", item.path);
    appendChanges(json, item);
    json.close('}');
  });
}

}  // namespace

void writeDiffJson(const ModelDiff& diff, std::ostream& out) {
  JsonText json;
  json.open('{');
  json.member("format", "xmla-diff/1");
  json.member("old", diff.oldName);
  json.member("new", diff.newName);
  appendLone(json, "added", diff.added);
  appendLone(json, "removed", diff.removed);
  appendItems(json, "renamed", diff.renamed);
  appendItems(json, "changed", diff.changed);
  json.close('}');
  out << json.text << "\n";
}

}  // namespace tav
