#include "tests/support/json_model.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/model/class_info.h"
#include "framework/model/link.h"

namespace tav::test {
namespace {

using Json = nlohmann::ordered_json;

class JsonModelReader {
 public:
  SavedModel read(const Json& document) {
    if (document.at("format") != "tav-model/1") throw std::runtime_error("the format is not known");
    Owned<TAVObject> root = make(document.at("model"));
    for (std::size_t i = 0; i < objects_.size(); ++i) addParts(*objects_[i].first, *objects_[i].second);
    for (const auto& [json, object] : objects_) refer(*json, *object);
    for (const auto& [json, object] : objects_) addProperties(*json, *object, *root);
    std::unique_ptr<Details> details;
    if (document.contains("details")) details = readDetails(document.at("details"));
    return {Owned<TAVModel>(static_cast<TAVModel*>(root.release())), std::move(details)};
  }

 private:
  /// An object without what it contains.
  Owned<TAVObject> make(const Json& json) {
    const ClassInfo* info = findClass(json.at("class").get<std::string>());
    if (!info || !info->create) throw std::runtime_error("no class " + json.at("class").dump());
    Owned<TAVObject> object = info->create();
    object->setName(json.at("name").get<std::string>());
    for (const AttributeRow* row : info->attributes)
      if (json.contains(row->name)) row->set(*object, valueOf(*row, json.at(std::string(row->name))));
    byId_.emplace(json.at("id").get<std::uint32_t>(), object.get());
    objects_.emplace_back(&json, object.get());
    return object;
  }

  void addParts(const Json& json, TAVObject& object) {
    for (const auto& [name, value] : json.items()) {
      const LinkInfo* link = findLink(classInfo(object.classId()), name, LinkKind::contained);
      if (!link) continue;
      for (const Json& part : value) linkObjects(link->number, object, *make(part).release());
    }
  }

  static const LinkInfo* findLink(const ClassInfo& info, std::string_view name, LinkKind kind) {
    for (const LinkInfo& link : info.links)
      if (link.row->kind == kind && link.row->name == name) return &link;
    return nullptr;
  }

  Value valueOf(const AttributeRow& row, const Json& json) {
    if (row.kind == AttributeKind::flag) return json.get<bool>();
    if (row.kind == AttributeKind::number) return json.get<std::int64_t>();
    if (row.kind == AttributeKind::text) return std::string_view(json.get_ref<const std::string&>());
    const Json& version = json.at("version");
    return TAVDataStore{json.at("name").get<std::string>(), version.at(0), version.at(1), version.at(2)};
  }

  void refer(const Json& json, TAVObject& object) {
    for (const auto& [name, value] : json.items()) {
      const LinkInfo* link = findLink(classInfo(object.classId()), name, LinkKind::reference);
      if (!link) continue;
      for (const Json& id : value.is_array() ? value : Json::array({value}))
        linkObjects(link->number, object, *byId_.at(id.get<std::uint32_t>()));
    }
  }

  /// A property is called as its type, of which there may be one for each kind of element.
  static void addProperties(const Json& json, TAVObject& object, TAVObject& root) {
    if (!json.contains("properties")) return;
    auto& element = static_cast<TAVElement&>(object);
    for (const auto& [name, text] : json.at("properties").items()) {
      auto& value = add<&TAVElement::propertyValues>(element, tav::make<TAVPropertyValue>(name));
      value.value = text.get<std::string>();
      TAVPropertyType* type = nullptr;
      for (TAVPropertyType& each : static_cast<TAVModel&>(root).propertyTypes)
        if (each.getName() == name && (!type || each.elementType == element.getElementType())) type = &each;
      if (type) link<&TAVPropertyValue::propertyType>(value, *type);
    }
  }

  std::unique_ptr<Details> readDetails(const Json& json) {
    auto details = std::make_unique<Details>();
    for (const Json& item : json.at("items")) {
      items_.emplace(item.at("id").get<std::uint32_t>(),
                     details->add(objectKindOf(text(item, "kind")).value(), kNoItem, text(item, "name"),
                                  text(item, "text"), text(item, "language")));
    }
    for (const Json& item : json.at("items")) {
      if (item.contains("owner"))
        details->setOwner(itemOf(*details, item, "id"), itemOf(*details, item, "owner"));
    }
    for (const Json& relation : json.at("relations"))
      details->relate(relationKindOf(text(relation, "kind")).value(), itemOf(*details, relation, "from"),
                      itemOf(*details, relation, "to"), text(relation, "text"));
    for (const Json& setting : json.at("settings"))
      details->set(itemOf(*details, setting, "item"), text(setting, "name"), text(setting, "value"));
    for (const Json& name : json.at("openNames"))
      details->addOpenName(itemOf(*details, name, "item"), text(name, "name"),
                           openNameStateOf(text(name, "state")).value(), text(name, "note"));
    for (const Json& passed : json.at("passedOver"))
      details->passOver(passedOverOf(text(passed, "what")).value(), passed.at("count").get<std::size_t>());
    return details;
  }

  static std::string_view text(const Json& json, const char* name) {
    return json.contains(name) ? std::string_view(json.at(name).get_ref<const std::string&>())
                               : std::string_view();
  }

  ItemId itemOf(Details& details, const Json& json, const char* name) {
    const auto id = json.at(name).get<std::uint32_t>();
    if (const auto found = items_.find(id); found != items_.end()) return found->second;
    return details.itemOf(static_cast<const TAVModelObject&>(*byId_.at(id)));
  }

  std::vector<std::pair<const Json*, TAVObject*>> objects_;
  std::unordered_map<std::uint32_t, TAVObject*> byId_;
  std::unordered_map<std::uint32_t, ItemId> items_;  // those that only the details have
};

}  // namespace

SavedModel readJson(std::string_view json) {
  return JsonModelReader().read(Json::parse(json));
}

}  // namespace tav::test
