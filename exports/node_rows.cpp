#include "exports/node_rows.h"

#include "lineage/gap_reason.h"
#include "lineage/unused.h"

namespace tav {
namespace {

/// Of a database's column nothing is known but what the views that show it tell.
std::string dataTypeOf(const LineageGraph& graph, NodeId id) {
  const auto out = graph.outOf(id);
  if (graph.node(id).kind != NodeKind::databaseColumn || out.empty()) return graph.dataType(id);
  const LineageEdge& first = graph.edges()[out.front()];
  return first.kind == EdgeKind::direct ? graph.dataType(first.to) : std::string();
}

std::string schemaOf(const LineageGraph& graph, NodeId id) {
  const NodeId owner = graph.node(id).owner;
  return graph.schema(owner == kNoNode ? id : owner);
}

/// Whether it is kept from people, who browse measures and attributes.
std::string_view hidden(const LineageGraph& graph, NodeId id) {
  const bool isBrowsed = as<TAVMeasure>(graph.node(id).object) != nullptr ||
                         graph.node(id).kind == NodeKind::attribute ||
                         graph.node(id).kind == NodeKind::cubeAttribute;
  if (graph.isHidden(id)) return "1";
  return isBrowsed ? "0" : std::string_view();
}

bool isColumn(NodeKind kind) {
  return kind == NodeKind::databaseColumn || kind == NodeKind::viewColumn || kind == NodeKind::computedColumn;
}

/// Whether a node can trace back to a column: only columns, attributes and measures have a value.
bool hasValue(NodeKind kind) {
  switch (kind) {
    case NodeKind::attribute:
    case NodeKind::cubeAttribute:
    case NodeKind::kpiValue:
      return true;
    default:
      return isColumn(kind) || isMeasureKind(kind);
  }
}

/// Whether only the details name a node, as that of another database.
bool isOfDetails(const LineageGraph& graph, NodeId id) {
  return !graph.node(id).object && !graph.database(id);
}

}  // namespace

NodeRows::NodeRows(const LineageGraph& graph) : graph_(graph), reached_(graph.tracedBack()) {}

NodeRow NodeRows::row(NodeId id) const {
  const LineageNode& node = graph_.node(id);
  const DatabaseAddress* database = graph_.database(id);
  return {std::string(nodeKindName(node.kind)),
          graph_.name(id),
          graph_.qualifiedName(id),
          graph_.path(id),
          database ? database->server : std::string(),
          database ? database->database : std::string(),
          schemaOf(graph_, id),
          dataTypeOf(graph_, id),
          graph_.expression(id),
          std::string(graph_.language(id)),
          std::string(graph_.aggregation(id)),
          graph_.description(id),
          std::string(hidden(graph_, id)),
          std::string(hasLineage(id)),
          reason(id)};
}

std::string_view NodeRows::hasLineage(NodeId id) const {
  if (!hasValue(graph_.node(id).kind) || isOfDetails(graph_, id)) return {};
  return reached_[id] ? "yes" : "no";
}

std::string NodeRows::reason(NodeId id) const {
  const NodeKind kind = graph_.node(id).kind;
  if (reached_[id] || !hasValue(kind) || isColumn(kind) || isOfDetails(graph_, id)) return {};
  return gapReason(graph_, id);
}

}  // namespace tav
