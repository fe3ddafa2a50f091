#include "lineage/model_diff.h"

#include <algorithm>
#include <map>
#include <set>

#include "framework/model/reflection.h"
#include "framework/std/mask.h"
#include "lineage/node_pairs.h"

namespace tav {
namespace {

/// Attributes that say nothing about what an object means.
constexpr std::array<std::string_view, 4> kIgnored{"position", "nativeId", "modificationTime", "unresolved"};

std::string valueText(const Value& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return maskPasswords(*text);
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* store = std::get_if<TAVDataStore>(&value)) return maskPasswords(store->name);
  return std::get<bool>(value) ? "true" : "";
}

using Facts = std::map<std::string, std::string>;

/// Everything about an object that is compared, by name. What has its default is left out.
Facts factsOf(const TAVElement& element) {
  Facts facts;
  for (const AttributeRow* row : classInfo(element.classId()).attributes) {
    const Value value = row->get(element);
    const bool ignored = std::find(kIgnored.begin(), kIgnored.end(), row->name) != kIgnored.end();
    if (!ignored && !isDefault(value)) facts.emplace(row->name, valueText(value));
  }
  for (const TAVPropertyValue& property : element.propertyValues) {
    const TAVPropertyType* type = property.propertyType.get();
    const std::string_view name = type ? type->getName() : property.getName();
    facts.emplace("property " + maskPasswords(name), maskProperty(name, property.value));
  }
  const auto* feature = as<TAVFeature>(&element);
  if (feature && feature->type) facts.emplace("data type", maskPasswords(feature->type->getName()));
  return facts;
}

void compareFacts(const Facts& before, const Facts& after, std::vector<Change>& changes) {
  for (const auto& [what, text] : before) {
    const auto now = after.find(what);
    if (now == after.end())
      changes.push_back({what, text, ""});
    else if (now->second != text)
      changes.push_back({what, text, now->second});
  }
  for (const auto& [what, text] : after)
    if (!before.contains(what)) changes.push_back({what, "", text});
}

std::string levelsOf(const TAVHierarchy& hierarchy) {
  std::string text;
  for (const TAVHierarchyLevelAssociation& use : hierarchy.hierarchyLevelAssociations)
    text.append(text.empty() ? "" : " > ").append(use.level ? maskPasswords(use.level->getName()) : "?");
  return text;
}

class Comparison {
 public:
  Comparison(const LineageGraph& before, const LineageGraph& after)
      : before_(before), after_(after), pairs_(before, after) {}

  ModelDiff run() {
    diff_.oldName = before_.modelName();
    diff_.newName = after_.modelName();
    compareConnections();
    for (NodeId id = 0; id < after_.nodes().size(); ++id) compareNode(id);
    for (NodeId id = 0; id < before_.nodes().size(); ++id)
      if (isLone(before_, id, [&](NodeId node) { return pairs_.afterOf(node); }))
        diff_.removed.push_back(loneItem(before_, id));
    return std::move(diff_);
  }

 private:
  void compareConnections() {
    std::map<std::string_view, const TAVStoreConnection*> old;
    for (const TAVStoreConnection& connection : before_.model().storeConnections)
      old.emplace(connection.getName(), &connection);
    for (const TAVStoreConnection& connection : after_.model().storeConnections) {
      const auto known = old.find(connection.getName());
      if (known == old.end()) {
        diff_.added.push_back(connectionItem(connection));
        continue;
      }
      const std::string name = maskPasswords(connection.getName());
      ChangedItem item{"data source", name, name, "/" + name, {}, {}, {}};
      compareFacts(factsOf(*known->second), factsOf(connection), item.changes);
      if (!item.changes.empty()) diff_.changed.push_back(std::move(item));
      old.erase(known);
    }
    for (const auto& [name, connection] : old) diff_.removed.push_back(connectionItem(*connection));
  }

  static LoneItem connectionItem(const TAVStoreConnection& connection) {
    const std::string name = maskPasswords(connection.getName());
    return {"data source", name, "/" + name, 0};
  }

  void compareNode(NodeId id) {
    const LineageNode& node = after_.node(id);
    if (after_.database(id) || node.kind == NodeKind::dataSource) return;
    const NodeId old = pairs_.beforeOf(id);
    if (old == kNoNode) {
      if (isLone(after_, id, [&](NodeId other) { return pairs_.beforeOf(other); }))
        diff_.added.push_back(loneItem(after_, id));
      return;
    }
    ChangedItem item = compared(old, id);
    const bool renamed = before_.node(old).rawName != node.rawName;
    const bool follows = isCopyKind(node.kind) && followsOriginal(id);
    if (renamed && !follows)
      diff_.renamed.push_back(std::move(item));
    else if (!item.changes.empty() || !item.newSources.empty() || !item.lostSources.empty())
      diff_.changed.push_back(std::move(item));
  }

  /// Whether a node that has no partner is told of: not when its owner has none either, nor when it is the
  /// copy of something that has none.
  template <class Partner> static bool isLone(const LineageGraph& graph, NodeId id, Partner partner) {
    const LineageNode& node = graph.node(id);
    if (graph.database(id) || node.kind == NodeKind::dataSource || partner(id) != kNoNode) return false;
    if (node.owner != kNoNode && partner(node.owner) == kNoNode) return false;
    if (!isCopyKind(node.kind)) return true;
    const auto sources = graph.into(id);
    return sources.empty() || partner(sources.front().from) != kNoNode;
  }

  /// Whether a copy was renamed with what it copies.
  [[nodiscard]] bool followsOriginal(NodeId id) const {
    const auto sources = after_.into(id);
    if (sources.size() != 1) return false;
    const NodeId old = pairs_.beforeOf(sources.front().from);
    return old != kNoNode && before_.node(old).rawName != after_.node(sources.front().from).rawName;
  }

  static LoneItem loneItem(const LineageGraph& graph, NodeId id) {
    const LineageNode& node = graph.node(id);
    return {std::string(nodeKindLabel(node.kind)), nameOf(graph, id), graph.path(id),
            graph.partsOf(id).size()};
  }

  /// Qualified names say nothing of the cube.
  static std::string nameOf(const LineageGraph& graph, NodeId id) {
    std::string name = graph.qualifiedName(id);
    const NodeId cube = graph.cubeOf(id);
    if (cube != kNoNode && cube != id) name.append(" of cube ").append(graph.name(cube));
    return name;
  }

  ChangedItem compared(NodeId old, NodeId id) {
    ChangedItem item{std::string(nodeKindLabel(after_.node(id).kind)),
                     nameOf(before_, old),
                     nameOf(after_, id),
                     after_.path(id),
                     {},
                     {},
                     {}};
    item.changes = changesOf(old, id);
    if (isCopyKind(after_.node(id).kind)) leaveOutChangesOfOriginal(id, item.changes);
    compareSources(old, id, item);
    return item;
  }

  [[nodiscard]] std::vector<Change> changesOf(NodeId old, NodeId id) const {
    std::vector<Change> changes;
    const TAVModelObject* before = before_.node(old).object;
    const TAVModelObject* after = after_.node(id).object;
    if (before && after) compareFacts(factsOf(*before), factsOf(*after), changes);
    compareOperations(old, id, changes);
    if (before && after) compareHierarchies(*before, *after, changes);
    return changes;
  }

  /// Expressions that only the lineage keeps: those of attributes and of columns of named queries.
  void compareOperations(NodeId old, NodeId id, std::vector<Change>& changes) const {
    const bool isKept = std::any_of(changes.begin(), changes.end(), [](const Change& change) {
      return change.what == "expression" || change.what == "query";
    });
    std::string before = before_.expression(old);
    std::string after = after_.expression(id);
    if (!isKept && before != after) changes.push_back({"expression", std::move(before), std::move(after)});
  }

  static void compareHierarchies(const TAVModelObject& before, const TAVModelObject& after,
                                 std::vector<Change>& changes) {
    const auto* oldDimension = as<TAVDimension>(&before);
    const auto* newDimension = as<TAVDimension>(&after);
    if (!oldDimension || !newDimension) return;
    const auto facts = [](const TAVDimension& dimension) {
      Facts levels;
      for (const TAVHierarchy& hierarchy : dimension.hierarchies)
        levels.emplace("hierarchy " + maskPasswords(hierarchy.getName()), levelsOf(hierarchy));
      return levels;
    };
    compareFacts(facts(*oldDimension), facts(*newDimension), changes);
  }

  /// A description that a dimension's attribute got stands on each of its copies too.
  void leaveOutChangesOfOriginal(NodeId id, std::vector<Change>& changes) const {
    const auto sources = after_.into(id);
    if (changes.empty() || sources.size() != 1) return;
    const NodeId original = sources.front().from;
    const NodeId old = pairs_.beforeOf(original);
    if (old == kNoNode) return;
    const std::vector<Change> known = changesOf(old, original);
    std::erase_if(changes, [&](const Change& change) {
      return std::find(known.begin(), known.end(), change) != known.end();
    });
  }

  /// Of what stands for a whole, the lineage is that of its parts.
  void compareSources(NodeId old, NodeId id, ChangedItem& item) const {
    if (isClassifierKind(after_.node(id).kind) || after_.node(id).kind == NodeKind::perspective) return;
    std::map<std::string, NodeId> before;
    std::set<std::string> seen;
    for (const LineageEdge& edge : before_.into(old))
      before.emplace(pairs_.oldSourceKey(edge.from), edge.from);
    for (const LineageEdge& edge : after_.into(id)) {
      const std::string key = pairs_.newSourceKey(edge.from);
      if (seen.insert(key).second && before.erase(key) == 0)
        item.newSources.push_back(sourceText(after_, edge.from));
    }
    for (const auto& [key, source] : before) item.lostSources.push_back(sourceText(before_, source));
  }

  static std::string sourceText(const LineageGraph& graph, NodeId id) {
    return std::string(nodeKindLabel(graph.node(id).kind)) + " " + graph.qualifiedName(id);
  }

  const LineageGraph& before_;
  const LineageGraph& after_;
  NodePairs pairs_;
  ModelDiff diff_;
};

}  // namespace

ModelDiff compareModels(const LineageGraph& before, const LineageGraph& after) {
  return Comparison(before, after).run();
}

}  // namespace tav
