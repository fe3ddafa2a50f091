#include "exports/json.h"

#include "exports/formats.h"
#include "framework/model/tree_walk.h"
#include "framework/std/json_text.h"
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

  void write(const TAVModel& model) {
    numberTree(model, isPropertyValue);
    text_ = R"({"format":"tav-model/1","model":)";
    first_ = true;
    walkTree(model, *this);
    text_ += "}\n";
    flush();
  }

  // What walkTree tells.
  void enter(const TAVObject& object) {
    if (isPropertyValue(object)) return;
    text_ += first_ ? "\n{" : ",\n{";
    const ClassInfo& info = classInfo(object.classId());
    text_ += "\"id\":" + std::to_string(Numbering::get(object));
    member("class", info.name);
    member("name", object.getName());
    for (const AttributeRow* row : info.attributes) attribute(*row, object);
    if (const auto* element = as<TAVElement>(&object)) properties(*element);
    for (const LinkInfo& link : info.links)
      if (link.row->kind == LinkKind::reference) references(*link.row, object);
    if (text_.size() >= kFlushSize) flush();
  }
  void leave(const TAVObject& object) {
    if (isPropertyValue(object)) return;
    text_ += '}';
    first_ = false;
  }
  void enterRole(const LinkRow& row) {
    if (row.target == classId<TAVPropertyValue>) return;
    key(row.name);
    text_ += '[';
    first_ = true;
  }
  void leaveRole(const LinkRow& row) {
    if (row.target == classId<TAVPropertyValue>) return;
    text_ += "\n]";
    first_ = false;
  }

 private:
  void key(std::string_view name) { text_.append(",\"").append(name).append("\":"); }

  /// The one way for texts of the model, any of which may hold a password.
  void text(std::string_view value) { appendJsonText(text_, maskPasswords(value)); }

  void member(std::string_view name, std::string_view value) {
    key(name);
    text(value);
  }

  void attribute(const AttributeRow& row, const TAVObject& object) {
    const Value value = row.get(object);
    if (isDefault(value)) return;
    if (const auto* given = std::get_if<std::string_view>(&value)) return member(row.name, *given);
    key(row.name);
    if (const auto* store = std::get_if<TAVDataStore>(&value))
      dataStore(*store);
    else if (const auto* number = std::get_if<std::int64_t>(&value))
      text_ += std::to_string(*number);
    else
      text_ += "true";
  }

  void dataStore(const TAVDataStore& store) {
    text_ += R"({"name":)";
    text(store.name);
    text_ += ",\"version\":[" + std::to_string(store.major) + "," + std::to_string(store.minor) + "," +
             std::to_string(store.release) + "]}";
  }

  void properties(const TAVElement& element) {
    if (element.propertyValues.empty()) return;
    key("properties");
    char separator = '{';
    for (const TAVPropertyValue& value : element.propertyValues) {
      text_ += separator;
      separator = ',';
      const TAVPropertyType* type = value.propertyType.get();
      const std::string_view name = type ? type->getName() : value.getName();
      text(name);
      text_ += ':';
      appendJsonText(text_, maskProperty(name, value.value));
    }
    text_ += '}';
  }

  void references(const LinkRow& row, const TAVObject& object) {
    EndWalk walk(row, object);
    const TAVObject* other = walk.next();
    if (!other) return;
    key(row.name);
    if (row.isMany()) text_ += '[';
    text_ += std::to_string(Numbering::get(*other));
    while ((other = walk.next())) text_ += "," + std::to_string(Numbering::get(*other));
    if (row.isMany()) text_ += ']';
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  std::ostream& out_;
  std::string text_;    // what is not yet handed to the stream
  bool first_ = false;  // whether the next object is the first of its list
};

}  // namespace

void exportJson(const TAVModel& model, std::ostream& out) {
  JsonExport(out).write(model);
}

extern const ExportFormat kJsonFormat{.name = "json",
                                      .description = "the whole model as one document",
                                      .write = [](const TAVModel& model, const ExportOptions& /*options*/,
                                                  std::ostream& out) { exportJson(model, out); }};

}  // namespace tav
