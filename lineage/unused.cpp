#include "lineage/unused.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include "framework/model/roles.h"

namespace tav {
namespace {

constexpr std::array kTables{NodeKind::viewTable, NodeKind::namedQuery};
constexpr std::array kColumns{NodeKind::viewColumn, NodeKind::computedColumn};
constexpr std::array kDimensions{NodeKind::dimension};
constexpr std::array kAttributes{NodeKind::attribute};
constexpr std::array kMeasures{NodeKind::measure, NodeKind::calculatedMeasure};
constexpr std::array kMembers{NodeKind::calculatedMember};
constexpr std::array kSets{NodeKind::namedSet};
constexpr std::array kExpressions{NodeKind::sharedExpression};
constexpr std::array kFunctions{NodeKind::function};

constexpr std::array<UnusedGroup, 9> kGroups{{
    {"tables", kTables},
    {"columns", kColumns},
    {"dimensions", kDimensions},
    {"attributes", kAttributes},
    {"measures", kMeasures},
    {"members", kMembers},
    {"sets", kSets},
    {"expressions", kExpressions},
    {"functions", kFunctions},
}};

/// Whether an edge tells that `to` shows or arranges what it names, and would miss nothing without it. What
/// an attribute is related to says how its members lie, not that anything needs them.
bool isShow(EdgeKind kind) {
  return rowOf(kind).sense == RelationSense::shows || kind == EdgeKind::related;
}

bool isWhole(NodeKind kind) {
  return kind == NodeKind::viewTable || kind == NodeKind::namedQuery || kind == NodeKind::dimension;
}

/// The settings that hide something, and the value with which they do.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kHidingSettings{{
    {"AttributeHierarchyVisible", "false"},
    {"Visible", "false"},
    {"VISIBLE", "0"},
    {"Hidden", "true"},
    {"IsHidden", "true"},
    {"isHidden", "true"},
}};

bool hides(std::string_view name, std::string_view value) {
  return std::any_of(kHidingSettings.begin(), kHidingSettings.end(),
                     [&](const auto& row) { return row.first == name && row.second == value; });
}

class UnusedSearch {
 public:
  UnusedSearch(const LineageGraph& graph, const UnusedGroup& group, const std::vector<bool>& alsoUsed)
      : graph_(graph), group_(group), alsoUsed_(alsoUsed), seenIn_(graph.nodes().size()) {}

  std::vector<UnusedNode> run() {
    std::vector<UnusedNode> unused;
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      if (!isWanted(id)) continue;
      UnusedNode node{.node = id, .shows = {}};
      if (isUsed(id, node.shows) || isPartOfUnused(id)) continue;
      keepOnce(node.shows);
      node.hidden = graph_.isHidden(id);
      if (isWhole(graph_.node(id).kind)) node.parts = countFeatures(id);
      unused.push_back(std::move(node));
    }
    return unused;
  }

  std::vector<bool> runForAll() {
    std::vector<bool> used;
    std::vector<LineageEdge> shows;
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      shows.clear();
      used.push_back(isUsed(id, shows));
    }
    return used;
  }

 private:
  [[nodiscard]] bool isWanted(NodeId id) const {
    const NodeKind kind = graph_.node(id).kind;
    return std::find(group_.kinds.begin(), group_.kinds.end(), kind) != group_.kinds.end();
  }

  /// Of a table or dimension, whether anything uses it as a whole or one of its parts; what parts of it do
  /// with each other is no use of it.
  bool isUsed(NodeId id, std::vector<LineageEdge>& shows) {
    if (!isWhole(graph_.node(id).kind)) return isUsedOutside(id, kNoNode, shows);
    if (isUsedOutside(id, id, shows)) return true;
    std::vector<LineageEdge> others;
    const auto parts = graph_.partsOf(id);
    return std::any_of(parts.begin(), parts.end(),
                       [&](NodeId part) { return isUsedOutside(part, id, others); });
  }

  /// Whether anything but parts of `whole` uses a node. Goes through its copies, which stand for it.
  bool isUsedOutside(NodeId id, NodeId whole, std::vector<LineageEdge>& shows) {
    if (!alsoUsed_.empty() && alsoUsed_[id]) return true;
    waiting_.assign(1, id);
    ++walk_;
    for (std::size_t next = 0; next < waiting_.size(); ++next) {
      for (const std::uint32_t place : graph_.outOf(waiting_[next])) {
        const LineageEdge& edge = graph_.edges()[place];
        if (edge.to == id || edge.to == edge.from || isInside(edge.to, whole)) continue;
        if (isCopy(edge))
          addOnce(edge.to);
        else if (isShow(edge.kind))
          shows.push_back(edge);
        else
          return true;
      }
    }
    return false;
  }

  [[nodiscard]] bool isInside(NodeId id, NodeId whole) const {
    if (whole == kNoNode) return false;
    while (id != kNoNode && id != whole) id = graph_.node(id).owner;
    return id != kNoNode;
  }

  [[nodiscard]] bool isCopy(const LineageEdge& edge) const {
    return edge.kind == EdgeKind::direct && isCopyKind(graph_.node(edge.to).kind);
  }

  void addOnce(NodeId copy) {
    if (seenIn_[copy] == walk_) return;
    seenIn_[copy] = walk_;
    waiting_.push_back(copy);
  }

  /// A part is told with its whole.
  bool isPartOfUnused(NodeId id) {
    const NodeId owner = graph_.node(id).owner;
    if (owner == kNoNode || !isWhole(graph_.node(owner).kind)) return false;
    if (owner != lastOwner_) {
      std::vector<LineageEdge> shows;
      lastOwner_ = owner;
      isLastUnused_ = !isUsed(owner, shows) && shows.empty();
    }
    return isLastUnused_;
  }

  /// Several copies of one node may be shown by one cube.
  static void keepOnce(std::vector<LineageEdge>& shows) {
    std::unordered_set<std::uint64_t> known;
    std::erase_if(shows, [&](const LineageEdge& edge) {
      const std::uint64_t way = std::uint64_t{edge.to} * kEdgeKindCount + static_cast<unsigned>(edge.kind);
      return !known.insert(way).second;
    });
  }

  [[nodiscard]] std::size_t countFeatures(NodeId id) const {
    const auto parts = graph_.partsOf(id);
    return static_cast<std::size_t>(std::count_if(parts.begin(), parts.end(), [&](NodeId part) {
      const NodeKind kind = graph_.node(part).kind;
      return kind == NodeKind::attribute || kind == NodeKind::viewColumn || kind == NodeKind::computedColumn;
    }));
  }

  const LineageGraph& graph_;
  const UnusedGroup& group_;
  const std::vector<bool>& alsoUsed_;
  std::vector<NodeId> waiting_;      // a node and its copies
  std::size_t walk_ = 0;             // the number of the walk over them
  std::vector<std::size_t> seenIn_;  // by copy: the walk that last came to it
  NodeId lastOwner_ = kNoNode;
  bool isLastUnused_ = false;
};

}  // namespace

std::span<const UnusedGroup> unusedGroups() noexcept {
  return kGroups;
}

std::vector<UnusedNode> findUnused(const LineageGraph& graph, const UnusedGroup& group,
                                   const std::vector<bool>& alsoUsed) {
  return UnusedSearch(graph, group, alsoUsed).run();
}

std::vector<bool> usedNodes(const LineageGraph& graph) {
  return UnusedSearch(graph, {}, {}).runForAll();
}

bool LineageGraph::isHidden(NodeId id) const {
  if (const auto* measure = as<TAVMeasure>(node(id).object); measure && measure->hidden) return true;
  const auto hidesIt = [](const auto& one) { return hides(one.first, one.second); };
  const auto hidesAny = [&](const auto& texts) { return std::any_of(texts.begin(), texts.end(), hidesIt); };
  return hidesAny(settings(id)) || hidesAny(properties(id));
}

}  // namespace tav
