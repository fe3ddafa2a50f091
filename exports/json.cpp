#include "exports/json.h"

#include "exports/formats.h"
#include "framework/model/tree_walk.h"
#include "framework/std/json_writer.h"
#include "framework/std/mask.h"

namespace tav {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 16;

/// Values of user properties are members of their element's object, not objects of their own.
bool isPropertyValue(const TAVObject& object) {
  return is<TAVPropertyValue>(object);
}

class JsonExport {
 public:
  explicit JsonExport(std::ostream& out) : out_(out) {}

  void write(const DetailedModel& model) {
    const std::uint32_t objects = numberTree(model.model, isPropertyValue);
    json_.begin('{');
    json_.member("format", "tav-model/1");
    json_.key("model");
    walkTree(model.model, *this);
    if (model.details) details(*model.details, objects);
    json_.close('}');
    text_ += '\n';
    flush();
  }

  // What walkTree tells.
  void enter(const TAVObject& object) {
    if (isPropertyValue(object)) return;
    json_.line();
    json_.open('{');
    const ClassInfo& info = classInfo(object.classId());
    json_.member("id", Numbering::get(object));
    json_.member("class", info.name);
    text("name", object.getName());
    for (const AttributeRow* row : info.attributes) attribute(*row, object);
    if (const auto* element = as<TAVElement>(&object)) properties(*element);
    for (const LinkInfo& link : info.links)
      if (link.row->kind == LinkKind::reference) references(*link.row, object);
    if (text_.size() >= kFlushSize) flush();
  }
  void leave(const TAVObject& object) {
    if (!isPropertyValue(object)) json_.close('}');
  }
  void enterRole(const LinkRow& row) {
    if (row.target != classId<TAVPropertyValue>) json_.open(row.name, '[');
  }
  void leaveRole(const LinkRow& row) {
    if (row.target != classId<TAVPropertyValue>) json_.closeOnLine(']');
  }

 private:
  /// The one way for texts of the model, any of which may hold a password.
  void text(std::string_view name, std::string_view value) { json_.member(name, maskPasswords(value)); }

  void attribute(const AttributeRow& row, const TAVObject& object) {
    const Value value = row.get(object);
    if (isDefault(value)) return;
    if (const auto* given = std::get_if<std::string_view>(&value))
      text(row.name, *given);
    else if (const auto* store = std::get_if<TAVDataStore>(&value))
      dataStore(row.name, *store);
    else if (const auto* number = std::get_if<std::int64_t>(&value))
      json_.member(row.name, *number);
    else
      json_.member(row.name, true);
  }

  void dataStore(std::string_view name, const TAVDataStore& store) {
    json_.open(name, '{');
    text("name", store.name);
    json_.open("version", '[');
    for (const auto part : {store.major, store.minor, store.release}) json_.value(part);
    json_.close(']');
    json_.close('}');
  }

  void properties(const TAVElement& element) {
    if (element.propertyValues.empty()) return;
    json_.open("properties", '{');
    for (const TAVPropertyValue& value : element.propertyValues) {
      const TAVPropertyType* type = value.propertyType.get();
      const std::string_view name = type ? type->getName() : value.getName();
      json_.member(maskPasswords(name), maskProperty(name, value.value));
    }
    json_.close('}');
  }

  void references(const LinkRow& row, const TAVObject& object) {
    EndWalk walk(row, object);
    const TAVObject* other = walk.next();
    if (!other) return;
    if (!row.isMany()) return json_.member(row.name, Numbering::get(*other));
    json_.open(row.name, '[');
    for (; other; other = walk.next()) json_.value(Numbering::get(*other));
    json_.close(']');
  }

  /// Items that the model does not have are numbered behind its objects.
  void details(const Details& details, std::uint32_t objects) {
    numbers_.clear();
    for (const DetailItem& item : details.items())
      numbers_.push_back(item.object ? Numbering::get(*item.object) : ++objects);
    json_.open("details", '{');
    list(
        "items", details.items().size(), [&](std::size_t i) { return !details.items()[i].object; },
        [&](std::size_t i) { item(i, details.items()[i]); });
    const auto all = [](std::size_t /*place*/) { return true; };
    list("relations", details.relations().size(), all,
         [&](std::size_t i) { relation(details.relations()[i]); });
    list("settings", details.settings().size(), all, [&](std::size_t i) { setting(details.settings()[i]); });
    list("openNames", details.openNames().size(), all,
         [&](std::size_t i) { openName(details.openNames()[i]); });
    list(
        "passedOver", kPassedOverCount,
        [&](std::size_t i) { return details.passedOver(static_cast<PassedOver>(i)) > 0; },
        [&](std::size_t i) {
          json_.member("what", rowOf(static_cast<PassedOver>(i)).name);
          json_.member("count", details.passedOver(static_cast<PassedOver>(i)));
        });
    json_.close('}');
  }

  /// One object on each line, of those that `isShown`.
  template <class Predicate, class Write>
  void list(std::string_view name, std::size_t count, Predicate isShown, Write write) {
    json_.open(name, '[');
    for (std::size_t i = 0; i < count; ++i) {
      if (!isShown(i)) continue;
      json_.line();
      json_.open('{');
      write(i);
      json_.close('}');
      if (text_.size() >= kFlushSize) flush();
    }
    json_.close(']');
  }

  void item(std::size_t place, const DetailItem& item) {
    json_.member("id", numbers_[place]);
    json_.member("kind", rowOf(item.kind).name);
    if (item.owner != kNoItem) json_.member("owner", numbers_[item.owner]);
    text("name", item.name);
    json_.optional("language", item.language);
    if (!item.text.empty()) text("text", item.text);
  }

  void relation(const DetailRelation& relation) {
    json_.member("kind", rowOf(relation.kind).name);
    json_.member("from", numbers_[relation.from]);
    json_.member("to", numbers_[relation.to]);
    if (!relation.text.empty()) text("text", relation.text);
  }

  void setting(const DetailSetting& setting) {
    json_.member("item", numbers_[setting.item]);
    text("name", setting.name);
    json_.member("value", maskProperty(setting.name, setting.value));
  }

  void openName(const OpenName& name) {
    json_.member("item", numbers_[name.item]);
    text("name", name.name);
    json_.member("state", openNameStateText(name.state));
    if (!name.note.empty()) text("note", name.note);
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  std::ostream& out_;
  std::string text_;  // what is not yet handed to the stream
  JsonWriter json_{text_};
  std::vector<std::uint32_t> numbers_;  // by item of the details
};

}  // namespace

void exportJson(const DetailedModel& model, std::ostream& out) {
  JsonExport(out).write(model);
}

extern const ExportFormat kJsonFormat{
    .name = "json",
    .description = "the whole model as one document",
    .write = [](const DetailedModel& model, const ExportOptions& /*options*/,
                std::ostream& out) { exportJson(model, out); },
    .extension = ".json"};

}  // namespace tav
