#include "tests/support/model_text.h"

#include "framework/model/reflection.h"
#include "framework/model/tree_walk.h"
#include "tests/support/corpus.h"

namespace tav::test {
namespace {

constexpr std::string_view kPrefix = "TAV";

class ModelText {
 public:
  void enter(const TAVObject& object) {
    if (hidden_ > 0) return;
    line_ = std::string(depth_ * 2, ' ');
    const ClassInfo& info = classInfo(object.classId());
    line_.append(info.name.substr(kPrefix.size())).append(" ").append(quoted(object.getName()));
    for (const AttributeRow* row : info.attributes) addAttribute(object, *row);
    for (const LinkInfo& link : info.links)
      if (link.row->kind == LinkKind::reference) addReference(object, *link.row);
    text_ += line_ + "\n";
    ++depth_;
  }
  void enterRole(const LinkRow& row) { hidden_ += row.name == "types" || row.name == "metadataOrigins"; }
  void leaveRole(const LinkRow& row) { hidden_ -= row.name == "types" || row.name == "metadataOrigins"; }
  void leave(const TAVObject& /*object*/) {
    if (hidden_ == 0) --depth_;
  }
  std::string take() { return std::move(text_); }

 private:
  static std::string quoted(std::string_view text) { return "\"" + escape(text) + "\""; }

  void addAttribute(const TAVObject& object, const AttributeRow& row) {
    const Value value = row.get(object);
    if (isDefault(value) || row.name == "modificationTime") return;
    line_.append(" ").append(row.name);
    if (const auto* text = std::get_if<std::string_view>(&value))
      line_ += "=" + quoted(*text);
    else if (const auto* number = std::get_if<std::int64_t>(&value))
      line_ += "=" + std::to_string(*number);
    else if (const auto* store = std::get_if<TAVDataStore>(&value))
      line_ += "=" + store->name.str() + "-" + std::to_string(store->major);
  }

  static std::string describe(const TAVObject& object) {
    if (is<TAVType>(object) || is<TAVPropertyType>(object)) return object.getName().str();
    if (is<TAVHierarchyLevelAssociation>(object))
      return std::to_string(static_cast<const TAVHierarchyLevelAssociation&>(object).position);
    return object.getPath(true).str();
  }

  void addReference(const TAVObject& object, const LinkRow& row) {
    // A map's destination is the object that it stands in, and its feature's name says all.
    std::string targets;
    forEachAt(row, object, [&](const TAVObject& target) {
      targets += (targets.empty() ? "" : ", ") +
                 (row.name == "destinationFeature" ? target.getName().str() : describe(target));
    });
    if (!targets.empty() && row.name != "destinationClassifier")
      line_.append(" ").append(row.name).append("->").append(targets);
  }

  std::string text_;
  std::string line_;
  std::size_t depth_ = 0;
  int hidden_ = 0;
};

}  // namespace

std::string modelText(const TAVModel& model) {
  ModelText text;
  walkTree(model, text);
  return text.take();
}

}  // namespace tav::test
