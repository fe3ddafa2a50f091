#include "lineage/walk_graph.h"

#include "framework/std/mask.h"
#include "lineage/arrange.h"

namespace tav {
namespace {

template <class T>
std::span<const T> slice(const std::vector<T>& items, const std::vector<std::uint32_t>& offsets,
                         NodeId id) noexcept {
  return std::span(items).subspan(offsets[id], offsets[id + 1] - offsets[id]);
}

}  // namespace

bool isMeasureKind(NodeKind kind) noexcept {
  return kind == NodeKind::measure || kind == NodeKind::linkedMeasure ||
         kind == NodeKind::calculatedMeasure || kind == NodeKind::cubeMeasure;
}

bool isOriginalsCopy(NodeKind kind) noexcept {
  return kind == NodeKind::cubeMeasure || kind == NodeKind::cubeAttribute || kind == NodeKind::linkedMeasure;
}

std::span<const LineageEdge> WalkGraph::into(NodeId id) const noexcept {
  return slice(edges_, inOffsets_, id);
}

std::span<const std::uint32_t> WalkGraph::outOf(NodeId id) const noexcept {
  return slice(out_, outOffsets_, id);
}

std::span<const NodeId> WalkGraph::partsOf(NodeId id) const noexcept {
  return slice(parts_, partOffsets_, id);
}

NodeId WalkGraph::cubeOf(NodeId id) const noexcept {
  while (id != kNoNode && node(id).kind != NodeKind::cube) id = node(id).owner;
  return id;
}

/// What a node takes over as it is; kNoNode when there is nothing, or more than one.
NodeId WalkGraph::onlySourceOf(NodeId id) const {
  NodeId source = kNoNode;
  for (const LineageEdge& edge : into(id)) {
    if (edge.kind != EdgeKind::direct) continue;
    if (source != kNoNode) return kNoNode;
    source = edge.from;
  }
  return source;
}

NodeId WalkGraph::originalOf(NodeId id) const {
  for (std::size_t steps = 0; steps < kNodeKindCount; ++steps) {
    if (!isOriginalsCopy(node(id).kind)) break;
    const NodeId source = onlySourceOf(id);
    if (source == kNoNode) break;
    id = source;
  }
  return id;
}

std::string WalkGraph::schema(NodeId id) const {
  return maskPasswords(rawSchema(id));
}

void WalkGraph::arrangeNodes() {
  const std::size_t count = nodes_.size();
  arrangeByKey(
      count, edges_.size(), [&](std::uint32_t i) { return edges_[i].from; }, outOffsets_, out_);
  arrangeByKey(
      count, count, [&](std::uint32_t i) { return nodes_[i].owner; }, partOffsets_, parts_);
}

}  // namespace tav
