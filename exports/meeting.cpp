#include "exports/meeting.h"

#include "framework/std/text.h"

namespace tav {

std::string meetingKey(const LineageGraph& graph, NodeId id) {
  if (!graph.isShared(id)) return {};
  return graph.readModel(id).empty() ? foldedName(graph.path(id)) : graph.sharedKey(id);
}

}  // namespace tav
