#include "exports/stored_graph.h"

#include <utility>

namespace tav {
namespace {

constexpr std::uint32_t kNoAddress = 0xFFFFFFFF;

}  // namespace

StoredGraph::StoredGraph(Part part) : model_(std::move(part.model)), notes_(std::move(part.notes)) {
  for (const StoredNode* row : part.nodes) byId_.emplace(row->id, static_cast<NodeId>(byId_.size()));
  for (const StoredNode* row : part.nodes) addNode(*row);
  addEdges(part.edges);
  arrangeNodes();
}

void StoredGraph::addNode(const StoredNode& row) {
  LineageNode& node = nodes_.emplace_back();
  node.kind = row.kind;
  node.owner = row.owner == 0 ? kNoNode : nodeOf(row.owner);
  node.rawName = row.name;
  rows_.push_back(&row);
  if (row.server.empty()) {
    address_.push_back(kNoAddress);
    return;
  }
  const auto [known, isNew] =
      knownAddresses_.try_emplace(std::string(row.server).append(1, '\0').append(row.database),
                                  static_cast<std::uint32_t>(addresses_.size()));
  if (isNew) {
    DatabaseAddress& address = addresses_.emplace_back();
    address.server = row.server;
    address.database = row.database;
  }
  address_.push_back(known->second);
}

void StoredGraph::addEdges(const std::vector<const StoredEdge*>& edges) {
  std::size_t next = 0;
  for (NodeId id = 0; id < nodes_.size(); ++id) {
    inOffsets_.push_back(static_cast<std::uint32_t>(next));
    for (; next < edges.size() && edges[next]->to == rows_[id]->id; ++next) {
      const StoredEdge& row = *edges[next];
      LineageEdge& edge = edges_.emplace_back();
      edge.from = nodeOf(row.from);
      edge.to = id;
      edge.kind = row.kind;
      edge.foundByGraph = row.foundByGraph;
      edge.replaces = row.replaces;
      edge.relation = static_cast<std::uint32_t>(next);
      edgeTexts_.emplace_back(row.text);
    }
  }
  inOffsets_.push_back(static_cast<std::uint32_t>(next));
}

std::string StoredGraph::edgeText(const LineageEdge& edge) const {
  return std::string(edgeTexts_[edge.relation]);
}

const DatabaseAddress* StoredGraph::database(NodeId id) const noexcept {
  return address_[id] == kNoAddress ? nullptr : &addresses_[address_[id]];
}

}  // namespace tav
