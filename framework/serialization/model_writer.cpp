#include "framework/serialization/model_writer.h"

#include <algorithm>

#include "framework/model/tree_walk.h"
#include "framework/serialization/details_writer.h"
#include "framework/serialization/model_format.h"
#include "framework/serialization/replacing_file.h"
#include "framework/serialization/xml_text.h"
#include "framework/std/mask.h"

namespace tav {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 18;
constexpr std::size_t kDeepestIndent = 40;  // beyond it, indentation would outgrow the document

class Writer {
 public:
  Writer(std::ostream& out, Passwords passwords) : out_(out), passwords_(passwords) {
    text_.reserve(kFlushSize + (kFlushSize >> 3));
  }

  void write(const TAVModel& model, const Details* details) {
    const ClassInfo& root = classInfo(classId<TAVMultiModel>);
    const ClassInfo& content = classInfo(classId<TAVModelContent>);
    text_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    openDocumentElement(root);
    attribute(kFormatAttribute, kFormat);
    text_ += ">\n <contents>\n  ";
    openDocumentElement(content);
    text_ += ">\n   <models>";
    depth_ = 4;
    // Before anything is written, because references may name what comes later.
    const std::uint32_t count = numberTree(model, [](const TAVObject& /*object*/) { return false; });
    walkTree(model, *this);
    text_ += "\n   </models>\n  </";
    text_.append(content.name).append(">\n");
    flush();
    if (details) writeDetails(*details, count, out_, passwords_);
    text_.append(" </contents>\n</").append(root.name).append(">\n");
    flush();
  }

  void enter(const TAVObject& object) {
    const ClassInfo& info = classInfo(object.classId());
    startTag(info.name);
    number(kIdAttribute, Numbering::get(object));
    if (!object.getName().empty()) attribute(kNameAttribute, object.getName());
    const auto* property = as<TAVPropertyValue>(&object);
    for (const AttributeRow* row : info.attributes) {
      if (property && passwords_ == Passwords::masked)
        maskedProperty(row->name, *property);
      else
        value(row->name, row->get(object));
    }
    for (const LinkInfo& link : info.links)
      if (link.row->kind == LinkKind::reference) references(*link.row, object);
  }
  void enterRole(const LinkRow& row) { startTag(row.name); }
  void leaveRole(const LinkRow& row) { endTag(row.name); }
  void leave(const TAVObject& object) {
    endTag(classInfo(object.classId()).name);
    if (text_.size() > kFlushSize) flush();
  }

 private:
  void openDocumentElement(const ClassInfo& info) {
    text_.append("<").append(info.name);
    number(kElementTypeAttribute, kClassRanges[info.id].code);
  }

  /// The tag stays open for what its element may hold, so that an element without content is closed in one.
  void startTag(std::string_view tag) {
    if (tagOpen_) text_ += '>';
    newLine();
    text_.append("<").append(tag);
    tagOpen_ = true;
    ++depth_;
  }

  void endTag(std::string_view tag) {
    --depth_;
    if (tagOpen_) {
      text_ += "/>";
    } else {
      newLine();
      text_.append("</").append(tag).append(">");
    }
    tagOpen_ = false;
  }

  void newLine() { text_.append("\n").append(std::min(depth_, kDeepestIndent), ' '); }

  void attribute(std::string_view name, std::string_view text) {
    text_.append(" ").append(name).append("=\"");
    if (passwords_ == Passwords::masked)
      appendAttributeText(text_, maskPasswords(text));
    else
      appendAttributeText(text_, text);
    text_ += '"';
  }
  /// Only with the name of a property can a value be told to be a password. A property has no other
  /// attribute.
  void maskedProperty(std::string_view name, const TAVPropertyValue& property) {
    const TAVPropertyType* type = property.propertyType.get();
    const std::string text = maskProperty(type ? type->getName() : property.getName(), property.value);
    if (!text.empty()) attribute(name, text);
  }
  void number(std::string_view name, std::int64_t number) {
    text_.append(" ").append(name).append("=\"").append(std::to_string(number)).append("\"");
  }

  void value(std::string_view name, const Value& value) {
    if (isDefault(value)) return;
    if (const auto* text = std::get_if<std::string_view>(&value)) return attribute(name, *text);
    if (const auto* amount = std::get_if<std::int64_t>(&value)) return number(name, *amount);
    if (const auto* store = std::get_if<TAVDataStore>(&value)) return attribute(name, textOf(*store));
    attribute(name, "true");
  }

  static std::string textOf(const TAVDataStore& store) {
    std::string text = store.name.str();
    text.append(" ").append(std::to_string(store.major)).append(".").append(std::to_string(store.minor));
    return text.append(".").append(std::to_string(store.release));
  }

  void references(const LinkRow& row, const TAVObject& object) {
    EndWalk walk(row, object);
    const TAVObject* target = walk.next();
    if (!target) return;
    text_.append(" ").append(row.name).append("=\"");
    for (;;) {
      text_ += std::to_string(Numbering::get(*target));
      target = walk.next();
      if (!target) break;
      text_ += ' ';
    }
    text_ += '"';
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  std::ostream& out_;
  Passwords passwords_;
  std::string text_;
  std::size_t depth_ = 0;
  bool tagOpen_ = false;
};

}  // namespace

void writeModel(const TAVModel& model, std::ostream& out, const Details* details, Passwords passwords) {
  Writer(out, passwords).write(model, details);
}

void saveModel(const TAVModel& model, const TAVString& path, const Details* details) {
  ReplacingFile file(path);
  writeModel(model, file.stream(), details);
  file.commit();
}

}  // namespace tav
