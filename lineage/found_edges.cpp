// The edges that a lineage graph has beyond those of its model.

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "lineage/graph_builder.h"
#include "lineage/kpi_functions.h"
#include "lineage/role_names.h"

namespace tav {

void GraphBuilder::addFoundEdges() {
  addRoleEdges();
  if (!graph_.tabular_) addKpiEdges();
  addLinkedMeasureEdges();
}

/// A model knows dimensions by the names that the database has for them. An expression uses those that its
/// cube has: such names are unresolved in the model, and that is where they are found.
void GraphBuilder::addRoleEdges() {
  RoleNames roles;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    const LineageNode& node = graph_.nodes_[id];
    const auto* alias = as<TAVAliasClassifier>(node.object);
    if (alias && node.kind == NodeKind::cubeDimension) roles.add(node.owner, node.rawName, *alias);
  }
  std::vector<const char*> resolved;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) addRoleEdgesOf(id, roles, resolved);
  std::sort(resolved.begin(), resolved.end(), std::less<>());
  graph_.resolvedNames_ = std::move(resolved);
}

void GraphBuilder::addRoleEdgesOf(NodeId id, RoleNames& roles, std::vector<const char*>& resolved) {
  const NodeId cube = graph_.cubeOf(id);
  if (cube == kNoNode) return;
  std::unordered_set<NodeId> known;
  for (const std::string_view name : graph_.rawUnresolved(id)) {
    const std::vector<const TAVFeature*> attributes = roles.find(cube, name);
    if (!attributes.empty()) resolved.push_back(name.data());
    for (const TAVFeature* attribute : attributes)
      if (known.insert(nodeOf(attribute)).second) addEdge(nodeOf(attribute), id, EdgeKind::computed, true);
  }
}

/// The model takes no text in single quotes for a name, so `KPIValue('Growth')` leads nowhere in it.
void GraphBuilder::addKpiEdges() {
  KpiValues values;
  bool hasKpis = false;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    const LineageNode& node = graph_.nodes_[id];
    if (node.kind != NodeKind::kpiValue) continue;
    hasKpis = true;
    values.add(graph_.cubeOf(id), graph_.nodes_[node.owner].rawName, node.rawName, id);
  }
  if (!hasKpis) return;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) addKpiEdgesOf(id, values);
}

void GraphBuilder::addKpiEdgesOf(NodeId id, const KpiValues& values) {
  const NodeKind kind = graph_.nodes_[id].kind;
  if (kind != NodeKind::measure && kind != NodeKind::calculatedMeasure && kind != NodeKind::kpiValue) return;
  const std::vector<KpiCall> calls = kpiCallsOf(graph_.rawExpression(id));
  if (calls.empty()) return;
  std::unordered_set<NodeId> known;
  if (const TAVFeatureMap* map = as<TAVFeature>(graph_.nodes_[id].object)->getDestinationOfFeatureMap())
    for (const TAVFeature& source : map->sourceFeatures) known.insert(nodeOf(&source));
  std::unordered_set<std::string_view> missing;
  for (const KpiCall& call : calls) {
    const NodeId value = values.find(graph_.cubeOf(id), call);
    if (value == kNoNode) {
      if (missing.insert(call.text).second)
        graph_.missingKpis_[id].push_back(graph_.texts_.emplace_back(call.text));
    } else if (known.insert(value).second) {
      addEdge(value, id, EdgeKind::computed, true);
      ++graph_.foundKpis_;
    }
  }
}

/// A cube lists the measures that it links by name only: they come from its linked groups. Where the name
/// does not tell from which, the measure says so.
void GraphBuilder::addLinkedMeasureEdges() {
  const auto key = [&](NodeId id, std::string_view group) {
    return std::to_string(graph_.cubeOf(id))
        .append("/")
        .append(group)
        .append(1, '\0')
        .append(graph_.nodes_[id].rawName);
  };
  std::unordered_map<std::string, NodeId> linked;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    if (graph_.nodes_[id].kind != NodeKind::linkedMeasure) continue;
    linked.try_emplace(key(id, {}), id);
    linked.try_emplace(key(id, graph_.nodes_[graph_.nodes_[id].owner].rawName), id);
  }
  if (linked.empty()) return;
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) {
    const auto* measure = as<TAVMeasure>(graph_.nodes_[id].object);
    if (!measure || graph_.nodes_[id].kind != NodeKind::cubeMeasure || measure->getDestinationOfFeatureMap())
      continue;
    if (const auto source = linked.find(key(id, measure->linkedGroup)); source != linked.end())
      addEdge(source->second, id, EdgeKind::direct, true);
  }
}

}  // namespace tav
