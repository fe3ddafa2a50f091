#pragma once

// Items of the details: what an element is, how it is called, by which IDs it is found, and what it says of
// itself.

#include <unordered_map>
#include <unordered_set>

#include "reader/elements/element_reading.h"

namespace tav {

class ItemReader {
 public:
  explicit ItemReader(ElementReading& reading) : reading_(reading) {}

  /// The object that the model made of an element; null when it made none. What a cube shows of an attribute
  /// is found by the attribute.
  const TAVModelObject* findObject(const ElementPlace& place);
  /// Makes the item of an element, which is in `owner`; `object` may be null.
  void open(ElementPlace& place, ItemId owner, const TAVModelObject* object);
  /// Says what can be said once all that an item holds has been read.
  void close(const ElementPlace& place);
  /// What an item says of itself, as far as neither the model nor the item itself has it.
  void readOwn(const ElementPlace& place, const TAVModelObject* object);

  /// Whether a measure group only repeats how an attribute is keyed; then it uses the attribute and says no
  /// more of it.
  bool readCopy(const ElementPlace& place);
  /// The name of an attribute of the dimension that is read, which may come later.
  [[nodiscard]] std::string_view nameOfAttribute(std::string_view id) const;

 private:
  std::string_view nameOf(const ElementPlace& place);
  std::string_view nameOf(IdSpace space, const IdScope& scope, std::string_view id);
  void enterIds(const ElementPlace& place);
  void relateToOwner(const ElementPlace& place, ItemId owner);
  void nameAttributes(const TAVDOMElement& dimension);
  void noteUnlisted(const ElementPlace& place);

  ElementReading& reading_;
  std::unordered_map<std::string_view, std::string_view> attributeNames_;  // by ID
  std::unordered_map<ItemId, const TAVDOMElement*> originals_;             // of attributes
  std::unordered_set<const TAVModelObject*> listed_;                       // of a dimension of a cube
};

}  // namespace tav
