#include "lineage/model_diff.h"

#include <algorithm>
#include <memory>
#include <unordered_map>

#include "lineage/affected.h"
#include "lineage/node_facts.h"
#include "lineage/node_pairs.h"
#include "lineage/order_diff.h"
#include "lineage/relation_diff.h"

namespace tav {
namespace {

struct GroupRow {
  std::string_view name;
  std::string_view title;
};

// In the order of DiffGroup.
constexpr std::array<GroupRow, kDiffGroupCount> kGroups{{
    {"broken", "Broken"},
    {"lost-lineage", "Lost lineage"},
    {"changed", "Changed"},
    {"added", "Added"},
    {"removed", "Removed"},
    {"renamed", "Renamed"},
    {"moved", "Moved"},
    {"reordered", "Reordered only"},
}};

/// Settings that make an object another one for what depends on it.
constexpr std::array<std::string_view, 4> kMeaning{"aggregation", "connection string", "data type", "kind"};

/// Whether a change may change what depends on the object; relations say so themselves.
bool affectsOthers(const Change& change) {
  if (change.about == Change::About::expression) return !change.onlyLayout;
  return change.about == Change::About::setting &&
         std::find(kMeaning.begin(), kMeaning.end(), change.what) != kMeaning.end();
}

/// Two lists of changes that say the same have the same text.
std::string keyOf(const std::vector<Change>& changes) {
  std::string key;
  const auto add = [&](const std::optional<std::string>& text) {
    key += text ? '1' : '0';
    if (text) key.append(std::to_string(text->size())).append(":").append(*text);
  };
  for (const Change& change : changes) {
    add(change.what);
    add(change.before);
    add(change.after);
  }
  return key;
}

class Comparison {
 public:
  Comparison(const LineageGraph& before, const LineageGraph& after)
      : before_(before), after_(after), pairs_(before, after), relations_(before, after, pairs_) {}

  ModelDiff run() {
    diff_.oldName = before_.modelName();
    diff_.newName = after_.modelName();
    for (NodeId id = 0; id < after_.nodes().size(); ++id) compareNode(id);
    for (NodeId id = 0; id < before_.nodes().size(); ++id)
      if (!before_.database(id) && pairs_.afterOf(id) == kNoNode) addRemoved(id);
    findLostLineage();
    diff_.reordered = compareOrder(before_, after_, pairs_);
    findAffected();
    noteWhatIsPassedOver();
    return std::move(diff_);
  }

 private:
  void compareNode(NodeId id) {
    if (after_.database(id)) return;
    const NodeId old = pairs_.beforeOf(id);
    if (old != kNoNode) return comparePair(old, id);
    told_.push_back(id);
    if (isLone(after_, id, [&](NodeId other) { return pairs_.beforeOf(other); }))
      diff_.added.push_back(objectOf(after_, id));
    findBroken(old, id);
  }

  void addRemoved(NodeId id) {
    if (isLone(before_, id, [&](NodeId node) { return pairs_.afterOf(node); }))
      diff_.removed.push_back(objectOf(before_, id));
    for (const std::uint32_t place : before_.outOf(id)) {
      const LineageEdge& edge = before_.edges()[place];
      const NodeId now = rowOf(edge.kind).sense == RelationSense::shows ? kNoNode : pairs_.afterOf(edge.to);
      if (now != kNoNode) starts_.push_back(now);
    }
  }

  void comparePair(NodeId old, NodeId id) {
    const bool copy = isCopyKind(after_.node(id).kind);
    std::vector<Change> changes = changesOf(old, id);
    if (copy) leaveOutChangesOfOriginal(id, changes);
    bool affects = std::any_of(changes.begin(), changes.end(), affectsOthers);
    std::vector<RelationChange> relations = relations_.compare(old, id);
    if (!relations.empty()) leaveOutPlaces(changes);
    for (RelationChange& relation : relations) {
      affects |= relation.affects;
      changes.push_back(std::move(relation.change));
    }
    std::vector<Change> names = findBroken(old, id);
    std::move(names.begin(), names.end(), std::back_inserter(changes));
    if (affects) starts_.push_back(id);
    addChanged(old, id, std::move(changes));
  }

  void addChanged(NodeId old, NodeId id, std::vector<Change> changes) {
    const bool renamed = isRenamed(old, id);
    const bool moved = isMoved(old, id);
    if (!renamed && !moved && changes.empty()) return;
    told_.push_back(id);
    DiffObject object = plainObjectOf(after_, id);
    if (renamed || moved) object.before = nameOf(before_, old);
    if (object.before == object.name && !renamed) object.before.clear();
    if (moved) {
      changes.insert(changes.begin(),
                     {Change::About::setting, "stands in", kindAndName(before_, before_.node(old).owner),
                      kindAndName(after_, after_.node(id).owner)});
      diff_.moved.push_back({{std::move(object)}, std::move(changes)});
    } else if (renamed) {
      diff_.renamed.push_back({{std::move(object)}, std::move(changes)});
    } else {
      addAlike(std::move(object), std::move(changes));
    }
  }

  /// Puts an object to those that changed in the same way.
  void addAlike(DiffObject object, std::vector<Change> changes) {
    const auto [known, isNew] = alike_.try_emplace(keyOf(changes), diff_.changed.size());
    if (isNew) diff_.changed.push_back({{}, std::move(changes)});
    diff_.changed[known->second].objects.push_back(std::move(object));
  }

  [[nodiscard]] bool isRenamed(NodeId old, NodeId id) const {
    const LineageNode& node = after_.node(id);
    if (before_.node(old).rawName == node.rawName || isStatementKind(node.kind)) return false;
    const bool follows = isCopyKind(node.kind) || node.kind == NodeKind::dimensionUsage;
    return !follows || !followsSource(old, id);
  }

  /// Whether what is called by the name of another thing was renamed with that.
  [[nodiscard]] bool followsSource(NodeId old, NodeId id) const {
    const auto sources = after_.into(id);
    return std::any_of(sources.begin(), sources.end(), [&](const LineageEdge& edge) {
      const NodeId was = after_.database(edge.from) ? kNoNode : pairs_.beforeOf(edge.from);
      return was != kNoNode && before_.node(was).rawName == before_.node(old).rawName &&
             after_.node(edge.from).rawName == after_.node(id).rawName;
    });
  }

  [[nodiscard]] bool isMoved(NodeId old, NodeId id) const {
    const NodeId oldOwner = before_.node(old).owner;
    const NodeId owner = after_.node(id).owner;
    return oldOwner != kNoNode && owner != kNoNode && pairs_.afterOf(oldOwner) != owner;
  }

  /// Whether a node that has no partner is told of: not when its owner has none either, nor when it is the
  /// copy of something that has none.
  template <class Partner> static bool isLone(const LineageGraph& graph, NodeId id, Partner partner) {
    const LineageNode& node = graph.node(id);
    if (node.kind == NodeKind::everyPartition) return false;  // each of the partitions is told of
    if (node.owner != kNoNode && partner(node.owner) == kNoNode) return false;
    if (!isCopyKind(node.kind)) return true;
    const auto sources = graph.into(id);
    return sources.empty() || partner(sources.front().from) != kNoNode;
  }

  static DiffObject objectOf(const LineageGraph& graph, NodeId id) {
    return {graph.node(id).kind,      nameOf(graph, id),      graph.path(id), "",
            graph.partsOf(id).size(), graph.qualifiedName(id)};
  }

  static DiffObject plainObjectOf(const LineageGraph& graph, NodeId id) {
    DiffObject object = objectOf(graph, id);
    object.parts = 0;
    return object;
  }

  /// Qualified names say nothing of the cube.
  static std::string nameOf(const LineageGraph& graph, NodeId id) {
    std::string name = graph.qualifiedName(id);
    const NodeId cube = graph.cubeOf(id);
    if (cube != kNoNode && cube != id) name.append(" of cube ").append(graph.name(cube));
    return name;
  }

  [[nodiscard]] std::vector<Change> changesOf(NodeId old, NodeId id) const {
    std::vector<Change> changes;
    const LineageNode& was = before_.node(old);
    const LineageNode& is = after_.node(id);
    if (was.kind != is.kind)
      changes.push_back({Change::About::setting, "kind", std::string(nodeKindLabel(was.kind)),
                         std::string(nodeKindLabel(is.kind))});
    if (isStatementKind(is.kind) && was.rawName != is.rawName &&
        before_.rawExpression(old) == after_.rawExpression(id))
      changes.push_back({Change::About::expression, "statement", before_.name(old), after_.name(id)});
    for (std::vector<Change> part :
         {compareExpressions(before_, old, after_, id), compareFacts(before_, old, after_, id)})
      std::move(part.begin(), part.end(), std::back_inserter(changes));
    return changes;
  }

  /// A description that a dimension's attribute got stands on each of its copies too.
  void leaveOutChangesOfOriginal(NodeId id, std::vector<Change>& changes) const {
    const auto sources = after_.into(id);
    if (changes.empty() || sources.empty()) return;
    const NodeId original = sources.front().from;
    const NodeId old = after_.database(original) ? kNoNode : pairs_.beforeOf(original);
    if (old == kNoNode) return;
    const std::vector<Change> known = changesOf(old, original);
    std::erase_if(changes, [&](const Change& change) {
      return std::find(known.begin(), known.end(), change) != known.end();
    });
  }

  /// Where a table or column of a view stands in its database is what it comes from.
  static void leaveOutPlaces(std::vector<Change>& changes) {
    std::erase_if(changes, [](const Change& change) {
      return change.what == "physical name" || change.what == "schema name";
    });
  }

  /// Notes the names that break an expression, and gives the other ones that are new or gone.
  std::vector<Change> findBroken(NodeId old, NodeId id) {
    OpenNameChanges names = compareOpenNames(before_, old, after_, id);
    for (const OpenNameText& name : names.broken) {
      diff_.broken.push_back({plainObjectOf(after_, id), name.name, name.note});
    }
    if (!names.broken.empty()) starts_.push_back(id);
    return std::move(names.changes);
  }

  void findLostLineage() {
    const std::vector<bool> was = before_.tracedBack();
    const std::vector<bool> is = after_.tracedBack();
    for (NodeId id = 0; id < after_.nodes().size(); ++id) {
      if (after_.database(id)) continue;
      const NodeKind kind = after_.node(id).kind;
      const bool counts =
          (kind == NodeKind::attribute || isMeasureKind(kind)) && kind != NodeKind::cubeMeasure;
      const NodeId old = pairs_.beforeOf(id);
      if (counts && old != kNoNode && was[old] && !is[id])
        diff_.lostLineage.push_back(plainObjectOf(after_, id));
    }
  }

  /// What is told of by itself is not told of as affected.
  void findAffected() {
    std::vector<bool> isTold(after_.nodes().size());
    for (const NodeId id : told_) isTold[id] = true;
    std::vector<NodeId> affected = affectedBy(after_, starts_);
    for (const NodeId id : starts_)
      if (!isCopyKind(after_.node(id).kind)) affected.push_back(id);
    std::sort(affected.begin(), affected.end());
    affected.erase(std::unique(affected.begin(), affected.end()), affected.end());
    for (const NodeId id : affected) {
      if (isTold[id] || after_.database(id)) continue;
      if (diff_.affected++ < ModelDiff::kListed) diff_.firstAffected.push_back(plainObjectOf(after_, id));
    }
  }

  void noteWhatIsPassedOver() {
    for (std::size_t i = 0; i < kPassedOverCount; ++i) {
      const auto what = static_cast<PassedOver>(i);
      const auto count = [&](const LineageGraph& graph) {
        return graph.details() ? graph.details()->passedOver(what) : 0;
      };
      if (!rowOf(what).hasMeaning || count(before_) + count(after_) == 0) continue;
      diff_.notes.push_back("not compared: " + std::string(rowOf(what).words) + " (" +
                            std::to_string(count(before_)) + " and " + std::to_string(count(after_)) + ")");
    }
  }

  const LineageGraph& before_;
  const LineageGraph& after_;
  NodePairs pairs_;
  RelationDiff relations_;
  ModelDiff diff_;
  std::unordered_map<std::string, std::size_t> alike_;  // places in `changed`
  std::vector<NodeId> told_;                            // of the new graph: what stands in a group
  std::vector<NodeId> starts_;                          // and what is another one for those that depend on it
};

}  // namespace

std::string_view diffGroupName(DiffGroup group) noexcept {
  return kGroups[static_cast<std::size_t>(group)].name;
}

std::string_view diffGroupTitle(DiffGroup group) noexcept {
  return kGroups[static_cast<std::size_t>(group)].title;
}

std::optional<DiffGroup> diffGroupOf(std::string_view name) noexcept {
  const auto found =
      std::find_if(kGroups.begin(), kGroups.end(), [&](const GroupRow& row) { return row.name == name; });
  if (found == kGroups.end()) return std::nullopt;
  return static_cast<DiffGroup>(found - kGroups.begin());
}

std::size_t ModelDiff::count(DiffGroup group) const noexcept {
  switch (group) {
    case DiffGroup::broken:
      return broken.size();
    case DiffGroup::lostLineage:
      return lostLineage.size();
    case DiffGroup::changed:
      return changed.size();
    case DiffGroup::added:
      return added.size();
    case DiffGroup::removed:
      return removed.size();
    case DiffGroup::renamed:
      return renamed.size();
    case DiffGroup::moved:
      return moved.size();
    case DiffGroup::reordered:
      return reordered.size();
  }
  return 0;
}

bool ModelDiff::empty() const noexcept {
  for (std::size_t i = 0; i < kDiffGroupCount; ++i)
    if (count(static_cast<DiffGroup>(i)) > 0) return false;
  return true;
}

ModelDiff compareModels(const LineageGraph& before, const LineageGraph& after) {
  return Comparison(before, after).run();
}

ModelDiff compareModels(const DetailedModel& before, const DetailedModel& after, const AddressMap& map) {
  const bool both = before.details && after.details;
  const LineageGraph oldGraph(both ? before : DetailedModel(before.model), map);
  const LineageGraph newGraph(both ? after : DetailedModel(after.model), map);
  ModelDiff diff = compareModels(oldGraph, newGraph);
  if (both) return diff;
  const std::string_view which = before.details  ? "the new model has"
                                 : after.details ? "the old model has"
                                                 : "the models have";
  diff.notes.push_back(
      std::string(which) +
      " no details: keys, joins, roles, scripts and whatever else a model leaves out are not "
      "compared");
  return diff;
}

}  // namespace tav
