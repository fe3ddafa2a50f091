#include "lineage/node_pairs.h"

#include <algorithm>

namespace tav {
namespace {

/// Separates the parts of a key; no name of a definition holds it.
constexpr char kSeparator = '\0';

void appendPart(std::string& key, std::string_view part) {
  key.append(part).push_back(kSeparator);
}

/// Kinds of which a thing may become another: a table a query, a column a computed one.
NodeKind familyOf(NodeKind kind) {
  if (kind == NodeKind::namedQuery) return NodeKind::viewTable;
  return kind == NodeKind::computedColumn ? NodeKind::viewColumn : kind;
}

bool canMove(NodeKind kind) {
  switch (kind) {
    case NodeKind::attribute:
    case NodeKind::measure:
    case NodeKind::calculatedMeasure:
    case NodeKind::hierarchy:
    case NodeKind::namedSet:
    case NodeKind::calculatedMember:
    case NodeKind::partition:
    case NodeKind::calculationItem:
      return true;
    default:
      return false;
  }
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

bool isStatementKind(NodeKind kind) noexcept {
  return kind == NodeKind::scope || kind == NodeKind::assignment || kind == NodeKind::scriptStatement;
}

NodePairs::NodePairs(const LineageGraph& before, const LineageGraph& after)
    : sides_{makeSide(before, false), makeSide(after, true)} {
  const std::size_t turns = std::min(sides_[0].turns.size(), sides_[1].turns.size());
  for (std::size_t turn = 0; turn < turns; ++turn) {
    pairNames(turn);
    pairOnly(turn, &NodePairs::plainNameKey);
    // What was renamed tells what it feeds, which may have been renamed as well.
    for (int round = 0; round < kRounds && pairOnly(turn, &NodePairs::contentKey) > 0;) ++round;
    pairSimilar(turn);
    pairOnly(turn, &NodePairs::statementKey);
    pairOnly(turn, &NodePairs::movedKey);
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

/// Only what is like nothing else can be taken for the same. How many pairs were found.
std::size_t NodePairs::pairOnly(std::size_t turn, Key key) {
  const Index before = indexOf(sides_[0], turn, key);
  if (before.empty()) return 0;
  std::size_t count = 0;
  for (const auto& [text, after] : indexOf(sides_[1], turn, key)) {
    const auto known = before.find(text);
    if (known == before.end() || known->second.size() != 1 || after.size() != 1) continue;
    join(known->second.front(), after.front());
    ++count;
  }
  return count;
}

/// Pairs what has at least half of its parts in common, and with nothing else as many.
void NodePairs::pairSimilar(std::size_t turn) {
  const PartIndex parts = partsOfUnpaired(turn);
  if (parts.empty()) return;
  std::unordered_map<NodeId, Candidate> chosen;  // by old node
  for (const NodeId id : sides_[1].turns[turn]) {
    if (sides_[1].partners[id] != kNoNode) continue;
    const Candidate candidate = mostAlike(parts, id);
    if (candidate.node == kNoNode) continue;
    Candidate& known = chosen.try_emplace(candidate.node).first->second;
    if (known.common == candidate.common)
      known.node = kNoNode;
    else if (known.common < candidate.common)
      known = {id, candidate.common};
  }
  for (const auto& [before, after] : chosen)
    if (after.node != kNoNode) join(before, after.node);
}

NodePairs::PartIndex NodePairs::partsOfUnpaired(std::size_t turn) const {
  PartIndex index;
  for (const NodeId id : sides_[0].turns[turn]) {
    if (sides_[0].partners[id] != kNoNode) continue;
    for (std::string& key : partKeys(sides_[0], id)) index[std::move(key)].push_back(id);
  }
  return index;
}

/// The parts of a node, each told apart from those of other kinds of owners; empty when it cannot be paired.
std::vector<std::string> NodePairs::partKeys(const Side& side, NodeId id) const {
  std::vector<std::string> keys;
  const std::string owner = ownerKey(side, id);
  if (owner.empty()) return keys;
  for (const NodeId part : side.graph->partsOf(id)) {
    std::string key = owner;
    appendPart(key, nodeKindName(familyOf(side.graph->node(part).kind)));
    appendPart(key, side.graph->node(part).rawName);
    keys.push_back(std::move(key));
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

NodePairs::Candidate NodePairs::mostAlike(const PartIndex& parts, NodeId id) const {
  // A part that very many have, as a key of that name, tells nothing.
  constexpr std::size_t kTellsApart = 8;
  std::unordered_map<NodeId, std::size_t> common;
  for (const std::string& key : partKeys(sides_[1], id)) {
    const auto owners = parts.find(key);
    if (owners == parts.end() || owners->second.size() > kTellsApart) continue;
    for (const NodeId owner : owners->second) ++common[owner];
  }
  Candidate best;
  for (const auto& [owner, count] : common) {
    if (count == best.common) best.node = kNoNode;
    if (count > best.common) best = {owner, count};
  }
  if (best.node == kNoNode) return best;
  const std::size_t most =
      std::max(sides_[0].graph->partsOf(best.node).size(), sides_[1].graph->partsOf(id).size());
  return best.common * 2 >= most ? best : Candidate{};
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

/// The name without the folder, of what stands by itself: a view may have another name now.
std::string NodePairs::plainNameKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  if (node.owner != kNoNode) return {};
  std::string key = ownerKey(side, id);
  appendPart(key, node.rawName);
  return key;
}

/// What a node is beside its name. A node of which nothing is known has none.
std::string NodePairs::contentKey(const Side& side, NodeId id) const {
  std::string key = ownerKey(side, id);
  const std::string made = key.empty() ? key : madeOf(side, id);
  return made.empty() ? made : key.append(made);
}

/// The same with the name in the place of the owner, for what may stand at another one. Measures may also
/// come from one that is gone; of everything else that is rather gone as well.
std::string NodePairs::movedKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  if (node.owner == kNoNode || !canMove(node.kind)) return {};
  if (!isMeasureKind(node.kind) && side.partners[node.owner] == kNoNode) return {};
  const std::string made = madeOf(side, id);
  if (made.empty()) return {};
  std::string key;
  appendPart(key, nodeKindName(familyOf(node.kind)));
  appendPart(key, node.rawName);
  return key.append(made);
}

/// Statements have no name but their text: the only one of its kind that changed is the same one.
std::string NodePairs::statementKey(const Side& side, NodeId id) const {
  return isStatementKind(side.graph->node(id).kind) ? ownerKey(side, id) : std::string();
}

/// What a node is made from and how; empty when it has neither.
std::string NodePairs::madeOf(const Side& side, NodeId id) const {
  const LineageGraph& graph = *side.graph;
  std::vector<std::string> made;
  for (const LineageEdge& edge : graph.into(id))
    if (edge.from != id && edge.kind != EdgeKind::loads) made.push_back(sourceKey(side, edge.from));
  for (const NodeId part : graph.partsOf(id)) made.emplace_back(graph.node(part).rawName);
  if (made.empty() && graph.rawExpression(id).empty()) return {};
  std::sort(made.begin(), made.end());
  std::string key;
  appendPart(key, graph.rawExpression(id));
  appendPart(key, graph.aggregation(id));
  for (const std::string& source : made) appendPart(key, source);
  return key;
}

/// Kind and owner; empty when the owner has no partner, and so no part of it can have one.
std::string NodePairs::ownerKey(const Side& side, NodeId id) const {
  const LineageNode& node = side.graph->node(id);
  std::string key;
  appendPart(key, nodeKindName(familyOf(node.kind)));
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
  appendPart(key, nodeKindName(familyOf(node.kind)));
  appendPart(key, side.graph->database(id) ? side.graph->rawQualifiedName(id) : side.graph->rawPath(id));
  return key;
}

}  // namespace tav
