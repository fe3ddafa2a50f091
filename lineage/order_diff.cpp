#include "lineage/order_diff.h"

#include <algorithm>
#include <tuple>

#include "lineage/relation_diff.h"

namespace tav {
namespace {

struct Place {
  NodeId owner;
  NodeKind kind;
  NodeId now;
  NodeId before;
};

/// The places that are not in the longest row in which the old order still holds.
std::vector<Place> outOfOrder(std::span<const Place> places) {
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<std::size_t> ends;  // by length: the place that ends such a row earliest
  std::vector<std::size_t> previous(places.size(), kNone);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto at =
        std::lower_bound(ends.begin(), ends.end(), places[i].before,
                         [&](std::size_t end, NodeId before) { return places[end].before < before; });
    if (at != ends.begin()) previous[i] = *(at - 1);
    if (at == ends.end())
      ends.push_back(i);
    else
      *at = i;
  }
  std::vector<bool> stays(places.size());
  for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i]) stays[i] = true;
  std::vector<Place> moved;
  for (std::size_t i = 0; i < places.size(); ++i)
    if (!stays[i]) moved.push_back(places[i]);
  return moved;
}

bool isCounted(NodeKind kind) {
  return rowOf(kind).isOrdered && (!isCopyKind(kind) || kind == NodeKind::cubeDimension);
}

}  // namespace

std::vector<Reordered> compareOrder(const LineageGraph& before, const LineageGraph& after,
                                    const NodePairs& pairs) {
  std::vector<Place> places;
  for (NodeId id = 0; id < after.nodes().size(); ++id) {
    const LineageNode& node = after.node(id);
    if (after.database(id) || !isCounted(node.kind)) continue;
    const NodeId old = pairs.beforeOf(id);
    if (old == kNoNode || before.node(old).kind != node.kind) continue;
    const NodeId oldOwner = before.node(old).owner;
    const NodeId owner = oldOwner == kNoNode ? kNoNode : pairs.afterOf(oldOwner);
    if (owner == node.owner) places.push_back({node.owner, node.kind, id, old});
  }
  std::stable_sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
    return std::tie(a.owner, a.kind, a.now) < std::tie(b.owner, b.kind, b.now);
  });
  std::vector<Reordered> reordered;
  for (std::size_t i = 0; i < places.size();) {
    std::size_t end = i;
    while (end < places.size() && places[end].owner == places[i].owner && places[end].kind == places[i].kind)
      ++end;
    const std::vector<Place> moved = outOfOrder(std::span(places).subspan(i, end - i));
    if (!moved.empty()) {
      Reordered& one = reordered.emplace_back();
      one.kind = rowOf(places[i].kind).plural;
      if (places[i].owner != kNoNode) one.owner = kindAndName(after, places[i].owner);
      for (const Place& place : moved) one.moved.push_back(after.qualifiedName(place.now));
    }
    i = end;
  }
  return reordered;
}

}  // namespace tav
