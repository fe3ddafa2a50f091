#include "exports/meeting.h"

#include "framework/std/text.h"
#include "lineage/joined_graph.h"

namespace tav {

std::string meetingKey(const LineageGraph& graph, NodeId id) {
  return isShared(graph, id) ? foldedName(graph.path(id)) : std::string();
}

}  // namespace tav
