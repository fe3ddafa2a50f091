#include "lineage/traced_nodes.h"

#include <algorithm>

#include "framework/model/roles.h"

namespace tav {
namespace {

bool isViewTable(NodeKind kind) {
  return kind == NodeKind::viewTable || kind == NodeKind::namedQuery;
}

const TAVNamespace* viewOf(const LineageNode& table) {
  return as<TAVClassifier>(table.object)->nameSpace.get();
}

}  // namespace

std::vector<bool> TracedNodes::run() {
  for (NodeId id = 0; id < reached_.size(); ++id)
    if (const DatabaseAddress* database = graph_.database(id); database && database->named) add(id);
  spread();
  addCountsOfUnknownTables();
  spread();
  return std::move(reached_);
}

void TracedNodes::add(NodeId id) {
  if (reached_[id]) return;
  reached_[id] = true;
  waiting_.push_back(id);
}

/// Tables go this way too, each to what it feeds as a whole: that is how a count of rows finds out whether
/// its table is one of a database. No value but a count of rows owes anything to a table: other edges from a
/// table to a value are conditions.
void TracedNodes::spread() {
  while (!waiting_.empty()) {
    const NodeId source = waiting_.back();
    waiting_.pop_back();
    for (const std::uint32_t place : graph_.outOf(source)) {
      const LineageEdge& edge = graph_.edges()[place];
      if (!givesValue(edge.kind) || (edge.foundByGraph && !withFound_)) continue;
      if (!givesRows(source, edge.to)) continue;
      add(edge.to);
      if (isViewTable(graph_.node(source).kind)) addRowCounts(edge.to);
    }
  }
}

/// A tabular table is fed by those that its calculated columns read too, but has its rows only from those
/// that its own expression reads.
bool TracedNodes::givesRows(NodeId from, NodeId to) {
  if (graph_.node(from).kind != NodeKind::dimension || graph_.node(to).kind != NodeKind::dimension)
    return true;
  const auto [found, isNew] = tablesOfExpression_.try_emplace(to);
  if (isNew)
    for (const std::string_view name : linesOfProperty(*graph_.node(to).object, label::kSourceTables))
      found->second.insert(name);
  return found->second.contains(graph_.node(from).object->getName());
}

void TracedNodes::addRowCounts(NodeId group) {
  if (graph_.node(group).kind != NodeKind::measureGroup) return;
  for (const NodeId part : graph_.partsOf(group))
    if (graph_.countsRows(part)) add(part);
}

/// A model has the tables of a measure group from the columns of its measures: of a group that only counts
/// rows it has none. But all groups of a cube read one data source view, so the table is one of that view;
/// where all of them are reached, this one is. A cube of nothing but such groups may read any view.
void TracedNodes::addCountsOfUnknownTables() {
  std::vector<NodeId> groups;
  std::unordered_map<View, bool> views;  // whether all tables are reached
  for (NodeId id = 0; id < reached_.size(); ++id) {
    const LineageNode& node = graph_.node(id);
    if (isViewTable(node.kind))
      views.try_emplace(viewOf(node), true).first->second &= reached_[id];
    else if (node.kind == NodeKind::measureGroup && !hasTable(id))
      groups.push_back(id);
  }
  if (groups.empty() || views.empty()) return;
  const bool all = std::all_of(views.begin(), views.end(), [](const auto& view) { return view.second; });
  const auto viewsOfCube = viewsOfCubes();
  for (const NodeId group : groups) {
    const auto known = viewsOfCube.find(graph_.cubeOf(group));
    const bool reached = known == viewsOfCube.end() ? all
                                                    : std::all_of(known->second.begin(), known->second.end(),
                                                                  [&](View view) { return views.at(view); });
    if (reached) addRowCounts(group);
  }
}

std::unordered_map<NodeId, std::unordered_set<TracedNodes::View>> TracedNodes::viewsOfCubes() const {
  std::unordered_map<NodeId, std::unordered_set<View>> views;
  for (const LineageEdge& edge : graph_.edges())
    if (graph_.node(edge.to).kind == NodeKind::measureGroup && isViewTable(graph_.node(edge.from).kind))
      views[graph_.cubeOf(edge.to)].insert(viewOf(graph_.node(edge.from)));
  return views;
}

bool TracedNodes::hasTable(NodeId group) const {
  const auto into = graph_.into(group);
  return std::any_of(into.begin(), into.end(),
                     [&](const LineageEdge& edge) { return isViewTable(graph_.node(edge.from).kind); });
}

std::vector<bool> LineageGraph::tracedBack(bool withFound) const {
  return TracedNodes(*this, withFound).run();
}

}  // namespace tav
