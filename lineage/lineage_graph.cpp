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

NodeId LineageGraph::originalOf(NodeId id) const {
  for (std::size_t steps = 0; steps < kNodeKindCount; ++steps) {
    const NodeKind kind = node(id).kind;
    const bool copy =
        kind == NodeKind::cubeMeasure || kind == NodeKind::cubeAttribute || kind == NodeKind::linkedMeasure;
    const auto sources = into(id);
    if (!copy || sources.size() != 1) break;
    id = sources.front().from;
  }
  return id;
}

/// Edges from a table to a feature are those of tables that its expression names (see addTableEdges).
bool LineageGraph::isCountOfTables(NodeId id) const {
  const auto sources = into(id);
  const auto isTable = [&](const LineageEdge& edge) { return node(edge.from).kind == NodeKind::dimension; };
  const auto isCounted = [](const LineageEdge& edge) { return edge.kind == EdgeKind::aggregated; };
  return !isClassifierKind(node(id).kind) && std::all_of(sources.begin(), sources.end(), isTable) &&
         std::any_of(sources.begin(), sources.end(), isCounted);
}

bool LineageGraph::countsRows(NodeId id) const {
  const LineageNode& original = node(originalOf(id));
  if (tabular_) return isCountOfTables(originalOf(id));
  const auto* measure = as<TAVMeasure>(original.object);
  return measure && original.kind == NodeKind::measure && tav::countsRows(*measure);
}

}  // namespace tav
