#include "lineage/traced_nodes.h"

#include "framework/model/roles.h"

namespace tav {

std::vector<bool> TracedNodes::run() {
  for (NodeId id = 0; id < reached_.size(); ++id)
    if (isSource(id) || graph_.countsRows(id)) add(id);
  spread();
  return std::move(reached_);
}

bool TracedNodes::isSource(NodeId id) const {
  const DatabaseAddress* database = graph_.database(id);
  return database && database->named;
}

void TracedNodes::add(NodeId id) {
  if (reached_[id]) return;
  reached_[id] = true;
  waiting_.push_back(id);
}

/// Tables go this way too, each to what it feeds as a whole: an expression may count rows beside what else it
/// does. No value owes anything else to a table: other edges from a table to a value are conditions.
void TracedNodes::spread() {
  while (!waiting_.empty()) {
    const NodeId source = waiting_.back();
    waiting_.pop_back();
    for (const std::uint32_t place : graph_.outOf(source)) {
      const LineageEdge& edge = graph_.edges()[place];
      if (!givesValue(edge.kind) || edge.kind == EdgeKind::applied) continue;
      if (givesRows(source, edge.to)) add(edge.to);
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

std::vector<bool> LineageGraph::tracedBack() const {
  return TracedNodes(*this).run();
}

}  // namespace tav
