#include "exports/diff/node_pairs.h"

#include <algorithm>
#include <unordered_map>

namespace tav {
namespace {

/// Separates the parts of a key; no name of a definition holds it.
constexpr char kSeparator = '\0';

void appendPart(std::string& key, std::string_view part) {
  key.append(part).push_back(kSeparator);
}

/// Of two nodes of one graph with the same key neither is paired.
constexpr NodeId kSeveral = kNoNode - 1;

/// How many renamed things in a row are followed.
constexpr int kRounds = 8;

}  // namespace

NodePairs::NodePairs(const LineageGraph& before, const LineageGraph& after)
    : sides_{Side{&before, std::vector<NodeId>(before.nodes().size(), kNoNode), false},
             Side{&after, std::vector<NodeId>(after.nodes().size(), kNoNode), true}} {
  for (const Turn turn : {Turn::alone, Turn::ownedWhole, Turn::part}) {
    pairTurn(turn, &NodePairs::nameKey);
    // What was renamed tells what it feeds, which may have been renamed as well.
    for (int round = 0; round < kRounds && pairTurn(turn, &NodePairs::contentKey) > 0;) ++round;
  }
}

NodePairs::Turn NodePairs::turnOf(const LineageNode& node) {
  if (node.owner == kNoNode) return Turn::alone;
  return isClassifierKind(node.kind) ? Turn::ownedWhole : Turn::part;
}

std::size_t NodePairs::pairTurn(Turn turn, Key key) {
  std::unordered_map<std::string, NodeId> byKey;
  const auto forEach = [&](const Side& side, auto visit) {
    for (NodeId id = 0; id < side.graph->nodes().size(); ++id) {
      const LineageNode& node = side.graph->node(id);
      if (!node.object || turnOf(node) != turn || side.partners[id] != kNoNode) continue;
      if (const std::string text = (this->*key)(side, id); !text.empty()) visit(id, text);
    }
  };
  const auto add = [](auto& index, NodeId id, const std::string& text) {
    const auto [place, isNew] = index.try_emplace(text, id);
    if (!isNew) place->second = kSeveral;
  };
  forEach(sides_[0], [&](NodeId id, const std::string& text) { add(byKey, id, text); });
  std::unordered_map<std::string, NodeId> newByKey;
  forEach(sides_[1], [&](NodeId id, const std::string& text) { add(newByKey, id, text); });
  std::size_t count = 0;
  for (const auto& [text, after] : newByKey) {
    const auto before = byKey.find(text);
    if (before == byKey.end() || before->second == kSeveral || after == kSeveral) continue;
    sides_[0].partners[before->second] = after;
    sides_[1].partners[after] = before->second;
    ++count;
  }
  return count;
}

std::string NodePairs::nameKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  std::string key = ownerKey(side, id);
  if (key.empty()) return key;
  appendPart(key, node.owner == kNoNode ? side.graph->path(id) : std::string(node.name));
  return key;
}

/// What a node is beside its name: what it is made from and how. A node without either has none.
std::string NodePairs::contentKey(const Side& side, NodeId id) const {
  const LineageGraph& graph = *side.graph;
  std::string key = ownerKey(side, id);
  if (key.empty()) return key;
  std::vector<std::string> made;
  for (const LineageEdge& edge : graph.into(id))
    if (edge.from != id) made.push_back(sourceKey(side, edge.from));
  for (const NodeId part : graph.partsOf(id)) made.emplace_back(graph.node(part).name);
  if (made.empty() && graph.expression(id).empty()) return {};
  std::sort(made.begin(), made.end());
  appendPart(key, graph.expression(id));
  appendPart(key, graph.aggregation(id));
  for (const std::string& source : made) appendPart(key, source);
  return key;
}

/// Kind and owner; empty when the owner has no partner, and so no part of it can have one.
std::string NodePairs::ownerKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  std::string key;
  appendPart(key, nodeKindName(node.kind));
  if (node.owner == kNoNode) return key;
  const NodeId partner = side.partners[node.owner];
  if (partner == kNoNode) return {};
  appendPart(key, std::to_string(side.isNew ? node.owner : partner));
  return key;
}

std::string NodePairs::sourceKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  std::string key;
  if (node.object && side.partners[id] != kNoNode) {
    appendPart(key, std::to_string(side.isNew ? id : side.partners[id]));
    return key;
  }
  appendPart(key, nodeKindName(node.kind));
  appendPart(key, node.object ? side.graph->path(id) : side.graph->qualifiedName(id));
  return key;
}

}  // namespace tav
