#include "lineage/walk_graph.h"

#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "lineage/arrange.h"

namespace tav {
namespace {

constexpr std::string_view kModelPart = "model:";
constexpr char kServer = '\v';
constexpr char kLinked = '\1';  // no document can hold it

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

std::string modelPartKey(std::string_view model, std::string_view holder, std::string_view part) {
  std::string key(kModelPart);
  key.append(foldedName(model)).append(1, '\t').append(foldedName(holder));
  return part.empty() ? key : key.append(1, '\t').append(foldedName(part));
}

std::string linkedHolder(std::string_view cube, std::string_view id) {
  return std::string(1, kLinked).append(cube).append(1, kLinked).append(id);
}

std::string readPartKey(std::string_view partKey, std::string_view server) {
  return std::string(partKey).append(1, kServer).append(foldedName(server));
}

std::pair<std::string, std::string> readPartRange(std::string_view partKey) {
  std::string from(partKey.empty() ? kModelPart : partKey);
  if (!partKey.empty()) from += kServer;
  std::string to = from;
  ++to.back();
  return {from, to};
}

std::string_view partKeyIn(std::string_view key) noexcept {
  return key.starts_with(kModelPart) ? key.substr(0, key.find(kServer)) : std::string_view();
}

bool isReadable(NodeKind kind) noexcept {
  switch (kind) {
    case NodeKind::dimension:
    case NodeKind::cube:
    case NodeKind::attribute:
    case NodeKind::measureGroup:
    case NodeKind::linkedMeasureGroup:
    case NodeKind::measure:
    case NodeKind::linkedMeasure:
    case NodeKind::calculatedMeasure:
      return true;
    default:
      return false;
  }
}

std::vector<std::string> partKeys(std::string_view model, const ReadablePart& part) {
  const auto& [kind, own, owner, cube] = part;
  switch (kind) {
    case NodeKind::dimension:
      return {modelPartKey(model, own.name, {}), modelPartKey(model, linkedHolder({}, own.id), {})};
    case NodeKind::cube:
      return {modelPartKey(model, own.name, {})};
    case NodeKind::attribute:
      return {modelPartKey(model, owner.name, own.name),
              modelPartKey(model, linkedHolder({}, owner.id), own.id)};
    case NodeKind::measureGroup:
    case NodeKind::linkedMeasureGroup:
      return {modelPartKey(model, linkedHolder(cube.id, own.id), {})};
    case NodeKind::measure:
    case NodeKind::linkedMeasure:
      return {modelPartKey(model, cube.name, own.name),
              modelPartKey(model, linkedHolder(cube.id, owner.id), own.id)};
    case NodeKind::calculatedMeasure:
      return {modelPartKey(model, cube.name, own.name)};
    default:
      return {};
  }
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

std::vector<std::string> WalkGraph::partKeys(NodeId id) const {
  if (!isReadable(node(id).kind)) return {};
  const auto named = [this](NodeId one) {
    return one == kNoNode ? DefinedName() : DefinedName{name(one), definitionId(one)};
  };
  return tav::partKeys(modelName(), {node(id).kind, named(id), named(node(id).owner), named(cubeOf(id))});
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
