#include "lineage/lineage_graph.h"

#include <algorithm>

#include "framework/model/roles.h"

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

std::span<const LineageEdge> LineageGraph::into(NodeId id) const noexcept {
  return slice(edges_, inOffsets_, id);
}

std::span<const std::uint32_t> LineageGraph::outOf(NodeId id) const noexcept {
  return slice(out_, outOffsets_, id);
}

std::span<const NodeId> LineageGraph::partsOf(NodeId id) const noexcept {
  return slice(parts_, partOffsets_, id);
}

NodeId LineageGraph::cubeOf(NodeId id) const noexcept {
  while (id != kNoNode && node(id).kind != NodeKind::cube) id = node(id).owner;
  return id;
}

const DatabaseAddress* LineageGraph::database(NodeId id) const noexcept {
  return id < firstDatabaseNode_ ? nullptr : &addresses_[places_[id - firstDatabaseNode_].address];
}

std::string_view LineageGraph::rawSchema(NodeId id) const noexcept {
  return id < firstDatabaseNode_ ? std::string_view() : places_[id - firstDatabaseNode_].schema;
}

/// What a node takes over as it is; kNoNode when there is nothing, or more than one.
NodeId LineageGraph::onlySourceOf(NodeId id) const {
  NodeId source = kNoNode;
  for (const LineageEdge& edge : into(id)) {
    if (edge.kind != EdgeKind::direct) continue;
    if (source != kNoNode) return kNoNode;
    source = edge.from;
  }
  return source;
}

NodeId LineageGraph::originalOf(NodeId id) const {
  for (std::size_t steps = 0; steps < kNodeKindCount; ++steps) {
    const NodeKind kind = node(id).kind;
    const bool copy =
        kind == NodeKind::cubeMeasure || kind == NodeKind::cubeAttribute || kind == NodeKind::linkedMeasure;
    if (!copy) break;
    const NodeId source = onlySourceOf(id);
    if (source == kNoNode) break;
    id = source;
  }
  return id;
}

/// Whether rows of tables are all that gives a value of its own: what changes it afterwards does not count.
bool LineageGraph::isCountOfTables(NodeId id) const {
  const auto sources = into(id);
  const auto isCounted = [](const LineageEdge& edge) { return edge.kind == EdgeKind::counted; };
  const auto isOther = [](const LineageEdge& edge) {
    return edge.kind == EdgeKind::direct || edge.kind == EdgeKind::computed ||
           edge.kind == EdgeKind::aggregated;
  };
  return !isClassifierKind(node(id).kind) && std::any_of(sources.begin(), sources.end(), isCounted) &&
         std::none_of(sources.begin(), sources.end(), isOther);
}

bool LineageGraph::countsRows(NodeId id) const {
  const LineageNode& original = node(originalOf(id));
  if (tabular_) return isCountOfTables(originalOf(id));
  const auto* measure = as<TAVMeasure>(original.object);
  return measure && original.kind == NodeKind::measure && tav::countsRows(*measure);
}

}  // namespace tav
