#include "exports/node_rows.h"

#include "framework/std/mask.h"
#include "lineage/coverage.h"

namespace tav {
namespace {

std::string_view typeNameOf(const TAVModelObject* object) {
  const auto* feature = as<TAVFeature>(object);
  const TAVType* type = feature ? feature->type.get() : nullptr;
  if (const auto* derived = as<TAVDerivedType>(type)) return derived->dataType;
  const auto* base = as<TAVBaseType>(type);
  return base ? base->dataType.view() : std::string_view();
}

/// Of a database's column nothing is known but what the views that show it tell.
std::string_view dataType(const LineageGraph& graph, NodeId id) {
  const auto out = graph.outOf(id);
  if (graph.node(id).kind != NodeKind::databaseColumn || out.empty())
    return typeNameOf(graph.node(id).object);
  const LineageEdge& first = graph.edges()[out.front()];
  return first.kind == EdgeKind::direct ? typeNameOf(graph.node(first.to).object) : std::string_view();
}

std::string_view schemaOf(const LineageGraph& graph, NodeId id) {
  const NodeId owner = graph.node(id).owner;
  return graph.schema(owner == kNoNode ? id : owner);
}

std::string_view hidden(const TAVModelObject* object) {
  const auto* measure = as<TAVMeasure>(object);
  if (!measure) return {};
  return measure->hidden ? "1" : "0";
}

/// Whether a node can lead to a column: those that others are parts of, and conditions, have no value.
bool hasValue(NodeKind kind) {
  return !isClassifierKind(kind) && kind != NodeKind::condition && kind != NodeKind::perspective;
}

bool isColumn(NodeKind kind) {
  return kind <= NodeKind::condition;
}

}  // namespace

NodeRows::NodeRows(const LineageGraph& graph)
    : graph_(graph), reached_(graph.reachingColumns(true)), reachedByModel_(graph.reachingColumns(false)) {}

NodeRow NodeRows::row(NodeId id) const {
  const LineageNode& node = graph_.node(id);
  const DatabaseAddress* database = graph_.database(id);
  const auto text = [](std::string_view value) { return maskPasswords(value); };
  return {std::string(nodeKindName(node.kind)),
          text(node.name),
          text(graph_.qualifiedName(id)),
          text(graph_.path(id)),
          text(database ? database->server : std::string_view()),
          text(database ? database->database : std::string_view()),
          text(schemaOf(graph_, id)),
          text(dataType(graph_, id)),
          text(graph_.expression(id)),
          std::string(graph_.language(id)),
          std::string(graph_.aggregation(id)),
          text(node.object ? node.object->description.view() : std::string_view()),
          std::string(hidden(node.object)),
          std::string(hasLineage(id)),
          reason(id)};
}

std::string_view NodeRows::hasLineage(NodeId id) const {
  if (!hasValue(graph_.node(id).kind)) return {};
  if (!reached_[id]) return "no";
  return reachedByModel_[id] ? "yes" : "by graph";
}

std::string NodeRows::reason(NodeId id) const {
  const NodeKind kind = graph_.node(id).kind;
  if (reached_[id] || !hasValue(kind) || isColumn(kind)) return {};
  return maskPasswords(gapReason(graph_, id));
}

}  // namespace tav
