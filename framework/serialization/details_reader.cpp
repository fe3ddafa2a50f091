#include "framework/serialization/details_reader.h"

#include "framework/serialization/model_format.h"

namespace tav {
namespace {

class DetailsReader {
 public:
  DetailsReader(const LoadedObjects& objects, std::string_view name)
      : objects_(objects), name_(name), details_(std::make_unique<Details>()) {}

  std::unique_ptr<Details> read(const TAVDOMElement& content) {
    // Items first, whatever the order: everything else names them.
    readPart(content, kItems, &DetailsReader::readItem);
    readPart(content, kItems, &DetailsReader::readOwner);
    checkOwners(content);
    readPart(content, kRelations, &DetailsReader::readRelation);
    readPart(content, kSettings, &DetailsReader::readSettings);
    readPart(content, kOpenNames, &DetailsReader::readOpenName);
    readPart(content, kPassedOver, &DetailsReader::readPassedOver);
    return std::move(details_);
  }

 private:
  [[noreturn]] void failAt(const TAVDOMElement& element, std::string_view cause) const {
    failToLoad(std::string(name_) + ":" + std::to_string(element.getLine()), cause);
  }

  void readPart(const TAVDOMElement& content, std::string_view name,
                void (DetailsReader::*readOne)(const TAVDOMElement& element)) {
    const TAVDOMElement* part = content.getFirstElement(name);
    if (!part) return;
    for (const TAVDOMElement& element : part->getElements()) (this->*readOne)(element);
  }

  void readItem(const TAVDOMElement& element) {
    const auto kind = objectKindOf(element.getTagName());
    if (!kind) failAt(element, "'" + std::string(element.getTagName()) + "' is no kind of item");
    const std::uint32_t id = numberOf(element, kIdAttribute);
    const ItemId item = details_->add(*kind, kNoItem, element.getAttribute(kNameAttribute),
                                      element.getAttribute(kText), element.getAttribute(kLanguage));
    if (objects_.contains(id) || !items_.emplace(id, item).second)
      failAt(element, "the id " + std::to_string(id) + " is there twice");
  }

  void readOwner(const TAVDOMElement& element) {
    if (element.getAttribute(kOwner).empty()) return;
    const ItemId item = items_.at(numberOf(element, kIdAttribute));
    details_->setOwner(item, itemOf(element, kOwner));
  }

  /// Nothing may own itself, directly or through others: who walks from owner to owner would never end.
  void checkOwners(const TAVDOMElement& content) const {
    std::vector<ItemId> seenFrom(details_->items().size(), kNoItem);
    for (ItemId start = 0; start < seenFrom.size(); ++start) {
      for (ItemId at = start; at != kNoItem && seenFrom[at] != start; at = details_->item(at).owner) {
        if (seenFrom[at] != kNoItem) break;
        seenFrom[at] = start;
        if (const ItemId owner = details_->item(at).owner; owner != kNoItem && seenFrom[owner] == start)
          failAt(content, "an item owns itself");
      }
    }
  }

  void readRelation(const TAVDOMElement& element) {
    const auto kind = relationKindOf(element.getTagName());
    if (!kind) failAt(element, "'" + std::string(element.getTagName()) + "' is no kind of relation");
    details_->relate(*kind, itemOf(element, kFrom), itemOf(element, kTo), element.getAttribute(kText));
  }

  void readSettings(const TAVDOMElement& element) {
    const ItemId item = itemOf(element, kSettingItem);
    for (const DomAttribute& attribute : element.getAttributes())
      if (attribute.name->written != kSettingItem)
        details_->set(item, attribute.name->written, attribute.value);
    for (const TAVDOMElement& setting : element.getElements())
      details_->set(item, setting.getAttribute(kNameAttribute), setting.getAttribute(kValue));
  }

  void readOpenName(const TAVDOMElement& element) {
    const auto state = openNameStateOf(element.getAttribute(kState));
    if (!state) failAt(element, "'" + std::string(element.getAttribute(kState)) + "' is no state of a name");
    details_->addOpenName(itemOf(element, kSettingItem), element.getAttribute(kNameAttribute), *state,
                          element.getAttribute(kNote));
  }

  void readPassedOver(const TAVDOMElement& element) {
    const auto what = passedOverOf(element.getTagName());
    if (!what) failAt(element, "'" + std::string(element.getTagName()) + "' is not passed over");
    details_->passOver(*what, numberOf(element, kCount));
  }

  [[nodiscard]] std::uint32_t numberOf(const TAVDOMElement& element, std::string_view name) const {
    std::uint32_t number = 0;
    const std::string_view text = element.getAttribute(name);
    if (!parseNumber(text, number))
      failAt(element, "'" + std::string(name) + "' is '" + std::string(text) + "', not a number");
    return number;
  }

  /// The item that an attribute names by its id: one of the details, or an object of the model.
  ItemId itemOf(const TAVDOMElement& element, std::string_view name) {
    const std::uint32_t id = numberOf(element, name);
    if (const auto item = items_.find(id); item != items_.end()) return item->second;
    const auto object = objects_.find(id);
    const auto* modelObject = object == objects_.end() ? nullptr : as<TAVModelObject>(object->second);
    if (!modelObject)
      failAt(element,
             "'" + std::string(name) + "' names the object '" + std::to_string(id) + "', which is not there");
    return details_->itemOf(*modelObject);
  }

  const LoadedObjects& objects_;
  std::string_view name_;
  std::unique_ptr<Details> details_;
  std::unordered_map<std::uint32_t, ItemId> items_;  // those that only the details have
};

}  // namespace

std::unique_ptr<Details> readDetails(const TAVDOMElement& content, const LoadedObjects& objects,
                                     std::string_view name) {
  return DetailsReader(objects, name).read(content);
}

}  // namespace tav
