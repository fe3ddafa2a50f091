#include "exports/meeting.h"

#include "framework/std/text.h"

namespace tav {

std::string meetingKey(const LineageGraph& graph, NodeId id) {
  const DatabaseAddress* address = graph.database(id);
  if (!address || !address->named || address->server.starts_with("connection:")) return {};
  const LineageNode& node = graph.node(id);
  if (node.kind == NodeKind::databaseColumn && node.owner == kNoNode) return {};
  return foldedName(graph.path(id));
}

}  // namespace tav
