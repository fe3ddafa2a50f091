#include "lineage/relation_diff.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

#include "framework/std/mask.h"
#include "lineage/arrange.h"

namespace tav {
namespace {

/// Whether a thing of this kind says nothing but how others relate: to add or remove one is one difference,
/// however many it relates.
bool relatesOthers(NodeKind kind) {
  switch (kind) {
    case NodeKind::relationship:
    case NodeKind::dimensionUsage:
    case NodeKind::partition:
    case NodeKind::everyMeasure:
    case NodeKind::everyPartition:
    case NodeKind::calculatedCells:
    case NodeKind::scope:
    case NodeKind::assignment:
    case NodeKind::scriptStatement:
    case NodeKind::action:
    case NodeKind::role:
    case NodeKind::permission:
      return true;
    default:
      return false;
  }
}

std::string_view wordsOf(EdgeKind kind) {
  const std::string_view words = rowOf(kind).upstream;
  return words.empty() ? "comes from" : words;
}

bool affectsOthers(EdgeKind kind) {
  const RelationSense sense = rowOf(kind).sense;
  return sense != RelationSense::shows && sense != RelationSense::formats;
}

}  // namespace

std::string kindAndName(const LineageGraph& graph, NodeId id) {
  return std::string(nodeKindLabel(graph.node(id).kind)) + " " + graph.qualifiedName(id);
}

RelationDiff::RelationDiff(const LineageGraph& before, const LineageGraph& after, const NodePairs& pairs)
    : pairs_(pairs), before_(makeSide(before, false)), after_(makeSide(after, true)) {}

RelationDiff::Side RelationDiff::makeSide(const LineageGraph& graph, bool isNew) {
  Side side{&graph, isNew, {}, {}};
  const Details* details = graph.details();
  if (!details) return side;
  const auto relations = details->relations();
  arrangeByKey(
      graph.nodes().size(), relations.size(), [&](std::uint32_t i) { return graph.nodeOf(relations[i].to); },
      side.offsets, side.relations);
  return side;
}

std::vector<RelationChange> RelationDiff::compare(NodeId old, NodeId now) const {
  Lone lone = loneOf(old, now);
  const auto order = [](const Side& side) {
    return [&side](const Related& a, const Related& b) {
      return std::tie(a.kind, side.graph->node(a.from).rawName) <
             std::tie(b.kind, side.graph->node(b.from).rawName);
    };
  };
  std::stable_sort(lone.lost.begin(), lone.lost.end(), order(before_));
  std::stable_sort(lone.gained.begin(), lone.gained.end(), order(after_));
  std::vector<RelationChange> changes;
  std::span<const Related> lost(lone.lost);
  std::span<const Related> gained(lone.gained);
  while (!lost.empty() || !gained.empty()) {
    const EdgeKind kind = lost.empty()     ? gained.front().kind
                          : gained.empty() ? lost.front().kind
                                           : std::min(lost.front().kind, gained.front().kind);
    const auto first = [&](std::span<const Related>& list) {
      std::size_t count = 0;
      while (count < list.size() && list[count].kind == kind) ++count;
      const auto those = list.first(count);
      list = list.subspan(count);
      return those;
    };
    const auto lostSo = first(lost);
    addOfKind(lostSo, first(gained), changes);
  }
  return changes;
}

/// Of one kind, in the order of the names. What is lost and gained under one name is one change, and so is
/// the only one.
void RelationDiff::addOfKind(std::span<const Related> lost, std::span<const Related> gained,
                             std::vector<RelationChange>& changes) const {
  const auto add = [&](const Related* before, const Related* after) {
    changes.push_back({changeOf(before, after), affectsOthers((after ? after : before)->kind)});
  };
  if (lost.size() == 1 && gained.size() == 1) return add(&lost.front(), &gained.front());
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < lost.size() || j < gained.size()) {
    const int order =
        i == lost.size() ? 1
        : j == gained.size()
            ? -1
            : before_.graph->node(lost[i].from).rawName.compare(after_.graph->node(gained[j].from).rawName);
    const Related* before = order <= 0 ? &lost[i++] : nullptr;
    const Related* after = order >= 0 ? &gained[j++] : nullptr;
    add(before, after);
  }
}

std::vector<RelationDiff::Related> RelationDiff::relatedOf(const Side& side, NodeId id) const {
  std::vector<Related> all;
  addOfModel(side, id, all);
  addOfDetails(side, id, all);
  const auto label = [](const Related& related) {
    return std::tie(related.kind, related.source, related.text);
  };
  std::stable_sort(all.begin(), all.end(),
                   [&](const Related& a, const Related& b) { return label(a) < label(b); });
  // What the model says too counts as often as the details say it.
  std::vector<Related> merged;
  for (Related& related : all) {
    if (merged.empty() || label(merged.back()) != label(related))
      merged.push_back(std::move(related));
    else
      merged.back().count += related.count;
  }
  for (Related& related : merged) related.count = std::max<std::size_t>(related.count, 1);
  return merged;
}

/// Of what stands for a whole, the parts tell what they come from.
void RelationDiff::addOfModel(const Side& side, NodeId id, std::vector<Related>& all) const {
  const bool whole = isClassifierKind(side.graph->node(id).kind);
  for (const LineageEdge& edge : side.graph->into(id)) {
    if (edge.relation != kNoRelation || edge.kind == EdgeKind::loads) continue;
    if (!whole || edge.kind == EdgeKind::direct)
      all.push_back({keyOf(side, edge.from), "", edge.kind, edge.from, 0});
  }
}

void RelationDiff::addOfDetails(const Side& side, NodeId id, std::vector<Related>& all) const {
  if (!side.graph->details()) return;
  const auto relations = side.graph->details()->relations();
  for (std::uint32_t i = side.offsets[id]; i < side.offsets[id + 1]; ++i) {
    const DetailRelation& relation = relations[side.relations[i]];
    const NodeId from = side.graph->nodeOf(relation.from);
    all.push_back({keyOf(side, from), std::string(relation.text), relation.kind, from, 1});
  }
}

std::string RelationDiff::keyOf(const Side& side, NodeId from) const {
  return side.isNew ? pairs_.newSourceKey(from) : pairs_.oldSourceKey(from);
}

/// What is told of by itself is not told of once more at each thing that it relates or that showed it.
bool RelationDiff::isToldOf(const Side& side, const Related& related) const {
  if (side.graph->database(related.from)) return false;
  const NodeId partner = side.isNew ? pairs_.beforeOf(related.from) : pairs_.afterOf(related.from);
  if (partner != kNoNode) return false;
  return relatesOthers(side.graph->node(related.from).kind) || related.kind == EdgeKind::member;
}

RelationDiff::Lone RelationDiff::loneOf(NodeId old, NodeId now) const {
  const auto key = [](const Related& related) {
    return std::tie(related.kind, related.source, related.text, related.count);
  };
  const auto less = [&](const Related& a, const Related& b) { return key(a) < key(b); };
  std::vector<Related> before = relatedOf(before_, old);
  std::vector<Related> after = relatedOf(after_, now);
  Lone lone;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(lone.lost),
                      less);
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(lone.gained), less);
  std::erase_if(lone.lost, [&](const Related& related) { return isToldOf(before_, related); });
  std::erase_if(lone.gained, [&](const Related& related) { return isToldOf(after_, related); });
  return lone;
}

std::string RelationDiff::shown(const Side& side, const Related& related) const {
  const std::string_view label = nodeKindLabel(side.graph->node(related.from).kind);
  const bool saysKind = wordsOf(related.kind).ends_with(label);
  std::string text =
      saysKind ? side.graph->qualifiedName(related.from) : kindAndName(*side.graph, related.from);
  if (!related.text.empty()) text.append(" (").append(maskPasswords(related.text)).append(")");
  if (related.count > 1) text.append(", ").append(std::to_string(related.count)).append(" times");
  return text;
}

/// Columns of one name in two tables are told of as the tables, and tables of one name as their schemas: a
/// table that comes from elsewhere is one thing, however many columns it has.
bool RelationDiff::showOwners(const Related& before, const Related& after, Change& change) const {
  const LineageGraph& oldGraph = *before_.graph;
  const LineageGraph& newGraph = *after_.graph;
  const LineageNode& source = oldGraph.node(before.from);
  const LineageNode& newSource = newGraph.node(after.from);
  if (source.rawName != newSource.rawName || source.kind != newSource.kind || before.text != after.text)
    return false;
  const bool isTable = source.kind == NodeKind::databaseTable;
  const NodeId was = isTable ? before.from : source.owner;
  const NodeId is = isTable ? after.from : newSource.owner;
  if (was == kNoNode || is == kNoNode) return false;
  const bool sameTable = oldGraph.node(was).rawName == newGraph.node(is).rawName;
  if (oldGraph.database(was) && newGraph.database(is) && sameTable) {
    change.before = "schema " + oldGraph.schema(was);
    change.after = "schema " + newGraph.schema(is);
  } else {
    change.before = kindAndName(oldGraph, was);
    change.after = kindAndName(newGraph, is);
  }
  return change.before != change.after;
}

Change RelationDiff::changeOf(const Related* before, const Related* after) const {
  Change change;
  change.about = Change::About::relation;
  change.what = wordsOf((after ? after : before)->kind);
  if (before && after && showOwners(*before, *after, change)) return change;
  if (before) change.before = shown(before_, *before);
  if (after) change.after = shown(after_, *after);
  change.hidden = change.before == change.after;
  return change;
}

}  // namespace tav
