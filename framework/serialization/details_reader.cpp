#include "framework/serialization/details_reader.h"

#include <algorithm>

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
    const std::string_view text = element.getAttribute(kText);
    const std::string_view ends = element.getAttribute(kEnds);
    if (ends.empty()) return details_->relate(*kind, itemOf(element, kFrom), itemOf(element, kTo), text);
    NumberList from(*this, element, kEnds);
    NumberList to(*this, element, kEnds);
    forEachWord(ends, [&](std::string_view word) {
      const std::size_t colon = word.find(':');
      if (colon != word.npos) to.goOn(word.substr(0, colon));
      from.goOn(colon == word.npos ? word : word.substr(colon + 1));
      details_->relate(*kind, from.item(), to.item(), text);
    });
  }

  /// The settings of one name, or, as they were written before, those of one item.
  void readSettings(const TAVDOMElement& element) {
    if (element.getTagName() == kSettingsOfItem) return readSettingsOfItem(element);
    const std::string_view name = element.getAttribute(kNameAttribute);
    for (const TAVDOMElement& value : element.getElements()) {
      NumberList items(*this, value, kOf);
      forEachWord(value.getAttribute(kOf), [&](std::string_view word) {
        items.goOn(word);
        details_->set(items.item(), name, value.getAttribute(kValue));
      });
    }
  }

  void readSettingsOfItem(const TAVDOMElement& element) {
    const ItemId item = itemOf(element, kRef);
    for (const DomAttribute& attribute : element.getAttributes())
      if (attribute.name->written != kRef) details_->set(item, attribute.name->written, attribute.value);
    for (const TAVDOMElement& setting : element.getElements())
      details_->set(item, setting.getAttribute(kNameAttribute), setting.getAttribute(kValue));
  }

  void readOpenName(const TAVDOMElement& element) {
    const auto state = openNameStateOf(element.getAttribute(kState));
    if (!state) failAt(element, "'" + std::string(element.getAttribute(kState)) + "' is no state of a name");
    details_->addOpenName(itemOf(element, kRef), element.getAttribute(kNameAttribute), *state,
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
    if (!parseNumber(text, number)) failAt(element, noNumber(name, text));
    return number;
  }

  /// The item that an attribute names by its id: one of the details, or an object of the model.
  ItemId itemOf(const TAVDOMElement& element, std::string_view name) {
    return itemOf(element, name, numberOf(element, name));
  }

  ItemId itemOf(const TAVDOMElement& element, std::string_view name, std::uint32_t id) {
    if (const auto item = items_.find(id); item != items_.end()) return item->second;
    const auto object = objects_.find(id);
    const auto* modelObject = object == objects_.end() ? nullptr : as<TAVModelObject>(object->second);
    if (!modelObject)
      failAt(element,
             "'" + std::string(name) + "' names the object '" + std::to_string(id) + "', which is not there");
    return details_->itemOf(*modelObject);
  }

  /// Reads ids that are told by how far each lies behind the one before.
  class NumberList {
   public:
    NumberList(DetailsReader& reader, const TAVDOMElement& element, std::string_view name)
        : reader_(reader), element_(element), name_(name) {}

    void goOn(std::string_view word) {
      std::int32_t distance = 0;
      if (!parseNumber(word, distance)) reader_.failAt(element_, noNumber(name_, word));
      number_ += static_cast<std::uint32_t>(distance);
      item_ = reader_.itemOf(element_, name_, number_);
    }
    /// The last one; fails where there is none.
    [[nodiscard]] ItemId item() const {
      if (item_ == kNoItem) reader_.failAt(element_, noNumber(name_, {}));
      return item_;
    }

   private:
    DetailsReader& reader_;
    const TAVDOMElement& element_;
    std::string_view name_;
    std::uint32_t number_ = 0;
    ItemId item_ = kNoItem;
  };

  static std::string noNumber(std::string_view name, std::string_view text) {
    return "'" + std::string(name) + "' is '" + std::string(text) + "', not a number";
  }

  template <class Use> static void forEachWord(std::string_view text, Use use) {
    for (std::size_t end = 0; end != text.npos; text.remove_prefix(std::min(end + 1, text.size()))) {
      end = text.find(' ');
      use(text.substr(0, end));
    }
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
