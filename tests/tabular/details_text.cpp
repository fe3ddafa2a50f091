#include "tests/tabular/details_text.h"

#include "tests/support/corpus.h"

namespace tav::test {
namespace {

/// Places of levels have no names of their own.
std::string pathOf(const TAVModelObject& object) {
  const auto* place = as<TAVHierarchyLevelAssociation>(&object);
  if (!place) return object.getPath(true).str();
  const TAVHierarchy& hierarchy = *place->hierarchy;
  return hierarchy.dimension->getPath(true).str() + "/" + hierarchy.getName().str() + "/" +
         place->level->getName().str();
}

std::string inQuotes(std::string_view text) {
  return "\"" + escape(std::string(text), true) + "\"";
}

std::string itemText(const Details& details, ItemId id) {
  const DetailItem& item = details.item(id);
  std::string text = labelOf(details, id);
  if (item.owner != kNoItem) text += " of " + labelOf(details, item.owner);
  if (!item.text.empty())
    text += ": " + std::string(item.language) + (item.language.empty() ? "" : " ") + inQuotes(item.text);
  return text + "\n";
}

}  // namespace

std::string labelOf(const Details& details, ItemId id) {
  const DetailItem& item = details.item(id);
  if (item.object) return pathOf(*item.object);
  return std::string(rowOf(item.kind).name) + (item.name.empty() ? "" : " ") + std::string(item.name);
}

std::string detailsText(const Details& details) {
  std::string text;
  for (ItemId id = 0; id < details.items().size(); ++id)
    if (!details.item(id).object) text += itemText(details, id);
  for (const DetailRelation& relation : details.relations()) {
    text += std::string(rowOf(relation.kind).name) + ": " + labelOf(details, relation.from) + " -> " +
            labelOf(details, relation.to);
    text += relation.text.empty() ? "\n" : " (" + std::string(relation.text) + ")\n";
  }
  for (const DetailSetting& setting : details.settings())
    text += labelOf(details, setting.item) + " has " + std::string(setting.name) + " = " +
            inQuotes(setting.value) + "\n";
  for (const OpenName& name : details.openNames()) {
    text += labelOf(details, name.item) + " names " + std::string(name.name) + ": " +
            std::string(openNameStateText(name.state)) + (name.note.empty() ? "" : ", ") +
            std::string(name.note) + "\n";
  }
  for (std::size_t i = 0; i < kPassedOverCount; ++i) {
    if (const std::size_t count = details.passedOver(static_cast<PassedOver>(i)))
      text += "passed over: " + std::to_string(count) + " " +
              std::string(rowOf(static_cast<PassedOver>(i)).name) + "\n";
  }
  return text;
}

}  // namespace tav::test
