#include "lineage/node_pairs.h"

#include <algorithm>

namespace tav {
namespace {

/// Separates the parts of a key; no name of a definition holds it.
constexpr char kSeparator = '\0';

void appendPart(std::string& key, std::string_view part) {
  key.append(part).push_back(kSeparator);
}

/// How many renamed things in a row are followed.
constexpr int kRounds = 8;

/// The turn in which each node is paired, behind its owner: what stands by itself, then tables, groups and
/// the like, then parts, and parts of those.
std::vector<std::uint32_t> turnsOf(const LineageGraph& graph) {
  constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
  constexpr std::uint32_t kPart = 2;
  std::vector<std::uint32_t> turns(graph.nodes().size(), kUnknown);
  std::vector<NodeId> chain;
  for (NodeId id = 0; id < turns.size(); ++id) {
    NodeId at = id;
    for (; turns[at] == kUnknown; at = graph.node(at).owner) {
      const LineageNode& node = graph.node(at);
      if (node.owner == kNoNode || isClassifierKind(node.kind)) {
        turns[at] = node.owner == kNoNode ? 0 : 1;
        break;
      }
      chain.push_back(at);
    }
    for (std::uint32_t turn = std::max(turns[at] + 1, kPart); !chain.empty(); ++turn) {
      turns[chain.back()] = turn;
      chain.pop_back();
    }
  }
  return turns;
}

}  // namespace

NodePairs::NodePairs(const LineageGraph& before, const LineageGraph& after)
    : sides_{makeSide(before, false), makeSide(after, true)} {
  const std::size_t turns = std::min(sides_[0].turns.size(), sides_[1].turns.size());
  for (std::size_t turn = 0; turn < turns; ++turn) {
    pairNames(turn);
    // What was renamed tells what it feeds, which may have been renamed as well.
    for (int round = 0; round < kRounds && pairContents(turn) > 0;) ++round;
  }
}

NodePairs::Side NodePairs::makeSide(const LineageGraph& graph, bool isNew) {
  Side side{&graph, std::vector<NodeId>(graph.nodes().size(), kNoNode), isNew, {}};
  const std::vector<std::uint32_t> turns = turnsOf(graph);
  for (NodeId id = 0; id < turns.size(); ++id) {
    if (graph.database(id)) continue;
    if (side.turns.size() <= turns[id]) side.turns.resize(turns[id] + 1);
    side.turns[turns[id]].push_back(id);
  }
  return side;
}

NodePairs::Index NodePairs::indexOf(const Side& side, std::size_t turn, Key key) const {
  Index index;
  for (const NodeId id : side.turns[turn])
    if (side.partners[id] == kNoNode)
      if (std::string text = (this->*key)(side, id); !text.empty()) index[std::move(text)].push_back(id);
  return index;
}

/// Nodes with the same key are paired in their order.
void NodePairs::pairNames(std::size_t turn) {
  const Index before = indexOf(sides_[0], turn, &NodePairs::nameKey);
  for (const auto& [text, after] : indexOf(sides_[1], turn, &NodePairs::nameKey)) {
    const auto known = before.find(text);
    if (known == before.end()) continue;
    for (std::size_t i = 0; i < std::min(known->second.size(), after.size()); ++i)
      join(known->second[i], after[i]);
  }
}

/// Only what is like nothing else can be taken for the same.
std::size_t NodePairs::pairContents(std::size_t turn) {
  const Index before = indexOf(sides_[0], turn, &NodePairs::contentKey);
  std::size_t count = 0;
  for (const auto& [text, after] : indexOf(sides_[1], turn, &NodePairs::contentKey)) {
    const auto known = before.find(text);
    if (known == before.end() || known->second.size() != 1 || after.size() != 1) continue;
    join(known->second.front(), after.front());
    ++count;
  }
  return count;
}

void NodePairs::join(NodeId before, NodeId after) {
  sides_[0].partners[before] = after;
  sides_[1].partners[after] = before;
}

std::string NodePairs::nameKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  std::string key = ownerKey(side, id);
  if (key.empty()) return key;
  appendPart(key, node.owner == kNoNode ? side.graph->rawPath(id) : std::string(node.rawName));
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
  for (const NodeId part : graph.partsOf(id)) made.emplace_back(graph.node(part).rawName);
  if (made.empty() && graph.rawExpression(id).empty()) return {};
  std::sort(made.begin(), made.end());
  appendPart(key, graph.rawExpression(id));
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
  if (side.partners[id] != kNoNode) {
    appendPart(key, std::to_string(side.isNew ? id : side.partners[id]));
    return key;
  }
  appendPart(key, nodeKindName(node.kind));
  appendPart(key, side.graph->database(id) ? side.graph->rawQualifiedName(id) : side.graph->rawPath(id));
  return key;
}

}  // namespace tav
