#include "exports/meeting.h"

#include "framework/std/text.h"

namespace tav {

std::string meetingKey(const LineageGraph& graph, NodeId id) {
  return graph.isShared(id) ? foldedName(graph.path(id)) : std::string();
}

}  // namespace tav
