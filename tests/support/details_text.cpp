#include "tests/support/details_text.h"

#include <algorithm>
#include <vector>

#include "tests/support/corpus.h"

namespace tav::test {
namespace {

std::string inQuotes(std::string_view text) {
  return "\"" + escape(text) + "\"";
}

std::string objectPath(const TAVModelObject& object) {
  const auto* use = as<TAVHierarchyLevelAssociation>(&object);
  if (!use) return object.getPath(true).str();
  return use->hierarchy->getPath(true).str() + "/" + (use->level ? use->level->getName().str() : "");
}

std::string pathOf(const Details& details, ItemId id) {
  std::vector<std::string> names;
  for (; id != kNoItem; id = details.item(id).owner) {
    const DetailItem& item = details.item(id);
    if (item.object && is<TAVModel>(*item.object) && !names.empty()) break;
    names.push_back(item.object ? objectPath(*item.object) : std::string(item.name));
    if (item.object) break;
  }
  std::string path;
  for (auto name = names.rbegin(); name != names.rend(); ++name) path += (path.empty() ? "" : " / ") + *name;
  return inQuotes(path);
}

std::string said(std::string_view text) {
  return text.empty() ? "" : " (" + std::string(text) + ")";
}

}  // namespace

std::string detailsText(const Details& details) {
  std::vector<std::string> lines(details.items().size());
  for (const DetailSetting& setting : details.settings())
    lines[setting.item] += "  " + std::string(setting.name) + " = " + escape(setting.value) + "\n";
  for (const DetailRelation& relation : details.relations())
    lines[relation.to] += "  " + std::string(rowOf(relation.kind).upstream) + " " +
                          pathOf(details, relation.from) + said(relation.text) + "\n";
  for (const OpenName& name : details.openNames())
    lines[name.item] += "  " + std::string(openNameStateText(name.state)) + ": " + std::string(name.name) +
                        said(name.note) + "\n";
  std::string text;
  for (ItemId id = 0; id < lines.size(); ++id) {
    const DetailItem& item = details.item(id);
    if (item.object && lines[id].empty()) continue;
    text += (item.object ? "" : std::string(rowOf(item.kind).label) + " ") + pathOf(details, id) + "\n";
    if (!item.text.empty()) text += "  " + std::string(item.language) + ": " + escape(item.text) + "\n";
    text += lines[id];
  }
  for (std::size_t i = 0; i < kPassedOverCount; ++i) {
    const auto what = static_cast<PassedOver>(i);
    if (const std::size_t count = details.passedOver(what))
      text += "passed over: " + std::to_string(count) + " " + std::string(rowOf(what).words) + "\n";
  }
  return text;
}

}  // namespace tav::test
