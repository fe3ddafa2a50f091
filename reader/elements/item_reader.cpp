#include "reader/elements/item_reader.h"

#include "framework/std/empty_table.h"
#include "reader/elements/element_shape.h"
#include "reader/run/vocabulary.h"

using namespace tav::xmla;  // NOLINT(google-build-using-namespace): the vocabulary of definitions

namespace tav {
namespace {

constexpr std::string_view kHierarchyId = "HierarchyID";
constexpr std::string_view kCubeDimensionId = "CubeDimensionID";

/// The name that the model has for what an element was made into.
std::string_view nameInModel(const TAVModelObject& object) {
  const auto* use = as<TAVHierarchyLevelAssociation>(&object);
  return use && use->level ? use->level->getName() : object.getName();
}

}  // namespace

const TAVModelObject* ItemReader::findObject(const ElementPlace& place) {
  if (reading_.rule(place).kind != ObjectKind::cubeAttribute)
    return reading_.run.elements.find(*place.element);
  const TAVModelObject* shown = reading_.references.ids().findCubeAttribute(
      *place.scope, place.element->getFirstElementValue(kAttributeId));
  if (shown) listed_.insert(shown);
  return shown;
}

void ItemReader::open(ElementPlace& place, ItemId owner, const TAVModelObject* object) {
  const ElementRule& rule = reading_.rule(place);
  place.isItem = true;
  place.outerBegin = reading_.settings.begin();
  place.columns = rule.relation;
  place.text = {};
  place.item =
      object ? reading_.details.itemOf(*object) : reading_.details.add(rule.kind, owner, nameOf(place));
  enterIds(place);
  if (rule.kind == ObjectKind::dimension) nameAttributes(*place.element);
  if (rule.kind == ObjectKind::attribute) originals_.try_emplace(place.item, place.element);
  relateToOwner(place, owner);
  if (rule.kind == ObjectKind::dimension || rule.kind == ObjectKind::cube)
    place.scope = &reading_.scopes.naming(*place.scope, object);
  readOwn(place, object);
}

void ItemReader::relateToOwner(const ElementPlace& place, ItemId owner) {
  const RelationKind relation = reading_.rule(place).toOwner;
  if (relation == RelationKind::secures)
    reading_.references.relate(relation, owner, place.item);
  else if (relation != RelationKind::mentions)
    reading_.references.relate(relation, place.item, owner);
}

std::string_view ItemReader::nameOf(const ElementPlace& place) {
  const TAVDOMElement& element = *place.element;
  switch (reading_.rule(place).kind) {
    case ObjectKind::cubeHierarchy:
      return nameOf(IdSpace::originalHierarchy, *place.scope, element.getFirstElementValue(kHierarchyId));
    case ObjectKind::dimensionUsage:
      return nameOf(IdSpace::cubeDimension, *place.scope, element.getFirstElementValue(kCubeDimensionId));
    case ObjectKind::accountType:
      return element.getFirstElementValue("AccountType");
    default:
      const std::string_view name = element.getFirstElementValue(kName);
      return name.empty() ? element.getFirstElementValue(kId) : name;
  }
}

std::string_view ItemReader::nameOf(IdSpace space, const IdScope& scope, std::string_view id) {
  const auto found = reading_.references.ids().find(space, scope, id);
  if (!found) return id;
  const DetailItem& item = reading_.details.item(*found);
  return item.object ? nameInModel(*item.object) : item.name;
}

void ItemReader::enterIds(const ElementPlace& place) {
  const ElementRule& rule = reading_.rule(place);
  const TAVDOMElement& element = *place.element;
  IdRegistry& ids = reading_.references.ids();
  const std::string_view id = element.getFirstElementValue(kId);
  if (rule.space != IdSpace::none) ids.add(rule.space, *place.scope, id, place.item);
  if (rule.kind == ObjectKind::measureGroup)
    ids.add(IdSpace::measureGroupName, *place.scope, element.getFirstElementValue(kName), place.item);
  if (rule.kind == ObjectKind::cubeHierarchy)
    ids.add(IdSpace::hierarchy, *place.scope, element.getFirstElementValue(kHierarchyId), place.item);
  if (rule.kind == ObjectKind::cubeDimension)
    ids.addCubeDimension(*place.scope, id, element.getFirstElementValue(kDimensionId));
}

void ItemReader::readOwn(const ElementPlace& place, const TAVModelObject* object) {
  Details& details = reading_.details;
  const std::string_view name = place.element->getFirstElementValue(kName);
  const std::string_view id = place.element->getFirstElementValue(kId);
  const std::string_view description = place.element->getFirstElementValue(kDescription);
  const std::string_view known = object ? nameInModel(*object) : details.item(place.item).name;
  if (!name.empty() && name != known) details.set(place.item, kName, name);
  if (!id.empty() && id != name) details.set(place.item, kId, id);
  const auto* described = as<TAVElement>(object);
  if (!description.empty() && !(described && described->description == description))
    details.set(place.item, kDescription, description);
}

std::string_view ItemReader::nameOfAttribute(std::string_view id) const {
  const auto found = attributeNames_.find(id);
  return found == attributeNames_.end() ? std::string_view() : found->second;
}

void ItemReader::nameAttributes(const TAVDOMElement& dimension) {
  emptyTable(attributeNames_);
  const TAVDOMElement* attributes = dimension.getFirstElement(kAttributes);
  if (!attributes) return;
  for (const TAVDOMElement& attribute : attributes->getElements())
    attributeNames_.try_emplace(attribute.getFirstElementValue(kId), attribute.getFirstElementValue(kName));
}

bool ItemReader::readCopy(const ElementPlace& place) {
  const TAVDOMElement& element = *place.element;
  const std::string_view id = element.getFirstElementValue(kAttributeId);
  const auto original = originals_.find(reading_.references.ids().findInDimension(*place.scope, id));
  const TAVDOMElement* type = element.getFirstElement(kType);
  const TAVDOMElement* keys = element.getFirstElement(kKeyColumns);
  const std::int32_t others = (type ? 1 : 0) + (keys ? 1 : 0) + 1;
  if (original == originals_.end() || element.getElementCount() != others) return false;
  if (type && type->getValue() != "Regular") return false;
  const TAVDOMElement* originalKeys = original->second->getFirstElement(kKeyColumns);
  if (keys && !(originalKeys && areEqual(*keys, *originalKeys))) return false;
  reading_.references.add(
      IdReference{place.item, RelationKind::uses, IdSpace::attribute, place.scope, id, kAttributeId, {}});
  return true;
}

void ItemReader::close(const ElementPlace& place) {
  if (reading_.rule(place).kind == ObjectKind::cubeDimension) noteUnlisted(place);
  reading_.settings.beginAt(place.outerBegin);
}

/// A cube shows all attributes of a dimension in its model; which of them it lists is said by what it does
/// not list.
void ItemReader::noteUnlisted(const ElementPlace& place) {
  Details& details = reading_.details;
  const auto* shown = as<TAVAliasClassifier>(details.item(place.item).object);
  if (!shown) return;
  const TAVDOMElement* list = place.element->getFirstElement(kAttributes);
  if (!list || isLeaf(*list)) return details.set(place.item, kAttributes, "not listed");
  for (const TAVFeature& attribute : shown->features)
    if (!listed_.contains(&attribute)) details.set(details.itemOf(attribute), "IsListed", "false");
  emptyTable(listed_);
}

}  // namespace tav
