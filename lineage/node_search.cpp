#include "lineage/node_search.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "framework/std/dotted_name.h"
#include "framework/std/edit_distance.h"
#include "framework/std/printable.h"
#include "framework/std/text.h"
#include "framework/std/utf8.h"
#include "messages/message.h"

namespace tav {
namespace {

/// The path of a database, which all others begin with, as people write it.
constexpr std::string_view kRoot = "/";
constexpr std::size_t kListed = 10;  // alternatives that a message shows

using Fit = NameFit;

bool isKpi(NodeKind kind) {
  return kind == NodeKind::kpi || kind == NodeKind::kpiValue;
}

/// The parts of a node's full name from its end: its name, its owner's, the owner's of that, and for what a
/// database holds its schema and the database.
class FullName {
 public:
  FullName(const WalkGraph& graph, NodeId id) {
    NodeId last = id;
    for (NodeId at = id; at != kNoNode; at = graph.node(at).owner) {
      add(graph.node(at).rawName);
      last = at;
    }
    if (const DatabaseAddress* database = graph.database(last)) {
      add(graph.rawSchema(last));
      add(database->database);
    }
  }

  /// Whether it ends in these parts.
  [[nodiscard]] bool endsIn(std::span<const std::string> parts) const {
    if (parts.size() > count_) return false;
    for (std::size_t i = 0; i < parts.size(); ++i)
      if (!equalNames(parts_[i], parts[parts.size() - 1 - i])) return false;
    return true;
  }

 private:
  void add(std::string_view part) {
    if (!part.empty() && count_ < parts_.size()) parts_[count_++] = part;
  }

  std::array<std::string_view, 6> parts_;
  std::size_t count_ = 0;
};

class Search {
 public:
  Search(const WalkGraph& graph, std::string_view name)
      : graph_(graph),
        name_(name),
        parts_(splitDottedName(name)),
        isPath_(name.find('/') != name.npos),
        isWritten_(parts_.size() > 1 || name.starts_with('[')),
        foldedPath_("/" + foldedName(name)),
        folded_(foldedName(parts_.size() == 1 ? std::string_view(parts_.front()) : name)) {}

  /// What the name means among all nodes.
  NameMatch run() const {
    std::vector<NodeId> all(graph_.nodes().size());
    std::iota(all.begin(), all.end(), NodeId{0});
    return runAmong(all, Fit::part);
  }

  /// What it means among some nodes, in their order, that fit it as well as `worst`.
  NameMatch runAmong(std::span<const NodeId> nodes, Fit worst) const {
    std::vector<NodeId> found;
    Fit best = worst;
    for (const NodeId id : nodes) {
      const Fit fit = fitOf(id);
      if (fit == Fit::none || fit > best) continue;
      if (fit < best) found.clear();
      best = fit;
      found.push_back(id);
    }
    if (best == Fit::path) preferExactPath(found);
    preferExact(found);
    preferValues(found);
    return {found.empty() ? Fit::none : best, std::move(found)};
  }

 private:
  [[nodiscard]] Fit fitOf(NodeId id) const {
    if (isPath_) {
      const std::string path = foldedName(graph_.rawPath(id));
      if (path == (name_ == kRoot ? "" : std::string_view(foldedPath_).substr(1))) return Fit::path;
      if (path.ends_with(foldedPath_)) return Fit::ending;
    }
    const LineageNode& node = graph_.node(id);
    if (isWritten_ && equalNames(node.rawName, parts_.back()) &&
        equalNames(graph_.rawQualifiedName(id), name_))
      return Fit::qualified;
    if (fitsPrefix(node.kind) && parts_.size() > 1 &&
        FullName(graph_, id).endsIn(std::span(parts_).subspan(1)))
      return parts_.size() == 2 || isKpi(node.kind) ? Fit::qualified : Fit::ending;
    if (isOfCube(id)) return Fit::qualified;
    if (equalNames(node.rawName, name_) || FullName(graph_, id).endsIn(parts_)) return Fit::ending;
    return foldedName(node.rawName).find(folded_) == std::string::npos ? Fit::none : Fit::part;
  }

  /// `[Cube].[Measures].[Name]`
  [[nodiscard]] bool isOfCube(NodeId id) const {
    const LineageNode& node = graph_.node(id);
    if (parts_.size() != 3 || !isMeasureKind(node.kind) || !equalNames(parts_[1], "Measures")) return false;
    const NodeId cube = graph_.cubeOf(id);
    return cube != kNoNode && equalNames(graph_.node(cube).rawName, parts_[0]) &&
           equalNames(node.rawName, parts_[2]);
  }

  /// `[Measures]` and `[KPIs]` stand in front of names without being the name of anything.
  [[nodiscard]] bool fitsPrefix(NodeKind kind) const {
    return (isMeasureKind(kind) && equalNames(parts_.front(), "Measures")) ||
           (isKpi(kind) && equalNames(parts_.front(), "KPIs"));
  }

  /// What has values, or holds what has, is meant before what only the details tell of.
  void preferValues(std::vector<NodeId>& found) const {
    const auto isOfModel = [&](NodeId id) { return graph_.node(id).kind <= NodeKind::perspective; };
    if (std::any_of(found.begin(), found.end(), isOfModel))
      std::erase_if(found, [&](NodeId id) { return !isOfModel(id); });
  }

  void preferExact(std::vector<NodeId>& found) const {
    const auto isExact = [&](NodeId id) { return graph_.node(id).rawName == parts_.back(); };
    if (std::any_of(found.begin(), found.end(), isExact))
      std::erase_if(found, [&](NodeId id) { return !isExact(id); });
  }

  void preferExactPath(std::vector<NodeId>& found) const {
    const auto isExact = [&](NodeId id) { return graph_.rawPath(id) == name_; };
    if (std::any_of(found.begin(), found.end(), isExact))
      std::erase_if(found, [&](NodeId id) { return !isExact(id); });
  }

  const WalkGraph& graph_;
  std::string_view name_;
  std::vector<std::string> parts_;
  bool isPath_;
  bool isWritten_;          // as expressions write names: [Measures].[Sales], and [Sales] as DAX does
  std::string foldedPath_;  // behind a slash
  std::string folded_;
};

/// Leaves out what `others` lead to, or what leads to them, along edges that only take over. A cube's copy of
/// a hierarchy takes over what it is based on.
class CopyFilter {
 public:
  CopyFilter(const WalkGraph& graph, const std::vector<NodeId>& nodes)
      : graph_(graph), nodes_(nodes.begin(), nodes.end()) {
    std::sort(nodes_.begin(), nodes_.end());
  }

  [[nodiscard]] bool isCopyOfOther(NodeId id) const {
    const auto into = graph_.into(id);
    return std::any_of(into.begin(), into.end(),
                       [&](const LineageEdge& edge) { return takesOver(edge) && contains(edge.from); });
  }

  [[nodiscard]] bool isCopiedByOther(NodeId id) const {
    const auto out = graph_.outOf(id);
    return std::any_of(out.begin(), out.end(), [&](std::uint32_t place) {
      return takesOver(graph_.edges()[place]) && contains(graph_.edges()[place].to);
    });
  }

 private:
  [[nodiscard]] bool takesOver(const LineageEdge& edge) const {
    if (edge.from == edge.to) return false;
    if (edge.kind == EdgeKind::basis) return isCopyKind(graph_.node(edge.to).kind);
    return edge.kind == EdgeKind::direct || edge.kind == EdgeKind::aggregated;
  }
  [[nodiscard]] bool contains(NodeId id) const {
    return std::binary_search(nodes_.begin(), nodes_.end(), id);
  }

  const WalkGraph& graph_;
  std::vector<NodeId> nodes_;
};

void leaveOutCopies(const WalkGraph& graph, std::vector<NodeId>& found, LineageDirection direction) {
  const CopyFilter all(graph, found);
  std::erase_if(found, [&](NodeId id) { return isCopyKind(graph.node(id).kind) && all.isCopyOfOther(id); });
  const CopyFilter left(graph, found);
  std::vector<NodeId> told = found;
  std::erase_if(told, [&](NodeId id) {
    return direction == LineageDirection::upstream ? left.isCopiedByOther(id) : left.isCopyOfOther(id);
  });
  // Copies in a circle are each other's: all of them are meant.
  if (!told.empty()) found = std::move(told);
}

/// The characters of a name, letter case folded.
std::u32string charactersOf(std::string_view name) {
  const std::string folded = foldedName(name);
  std::u32string characters;
  for (std::string_view rest = folded; !rest.empty();) {
    const std::size_t length = utf8Length(rest);
    characters += length == 0 ? U'\uFFFD' : utf8Character(rest, length);
    rest.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return characters;
}

}  // namespace

std::vector<NodeId> findNodes(const WalkGraph& graph, std::string_view name, LineageDirection direction) {
  return matchNodes(graph, name, direction).nodes;
}

NameMatch matchNodes(const WalkGraph& graph, std::string_view name, LineageDirection direction) {
  if (name.empty()) return {Fit::none, {}};
  NameMatch match = Search(graph, name).run();
  leaveOutCopies(graph, match.nodes, direction);
  return match;
}

NodeNames::NodeNames(const WalkGraph& graph) : graph_(graph) {
  for (NodeId id = 0; id < graph.nodes().size(); ++id)
    byName_[foldedName(graph.node(id).rawName)].push_back(id);
}

std::string NodeNames::nameOf(NodeId id) const {
  if (isUnique(id)) return graph_.qualifiedName(id);
  std::string path = graph_.path(id);
  return path.empty() ? std::string(kRoot) : path;
}

bool NodeNames::isUnique(NodeId id) const {
  if (const std::optional<bool> known = graph_.isNameUnique(id)) return *known;
  const std::string name = graph_.rawQualifiedName(id);
  return name == graph_.qualifiedName(id) && means(name, id);
}

/// Only nodes of that last part, or of that whole name, fit a name as more than a text that theirs hold. One
/// without a name of its own goes by its owner's.
bool NodeNames::means(const std::string& name, NodeId id) const {
  if (name != printable(name) || name.find('/') != name.npos) return false;
  std::vector<NodeId> nodes;
  for (const std::string& key : {foldedName(splitDottedName(name).back()), foldedName(name), std::string()}) {
    const auto named = byName_.find(key);
    if (named == byName_.end()) continue;
    if (nodes.size() + named->second.size() > kCompared) return false;
    nodes.insert(nodes.end(), named->second.begin(), named->second.end());
  }
  std::sort(nodes.begin(), nodes.end());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  const std::vector<NodeId> found = Search(graph_, name).runAmong(nodes, Fit::ending).nodes;
  for (const LineageDirection direction : {LineageDirection::upstream, LineageDirection::downstream}) {
    std::vector<NodeId> meant = found;
    leaveOutCopies(graph_, meant, direction);
    if (meant != std::vector<NodeId>{id}) return false;
  }
  return true;
}

NameDistance::NameDistance(std::string_view name)
    : wanted_(charactersOf(splitDottedName(name).back())), limit_(wanted_.size() / 3 + 2) {}

std::optional<std::size_t> NameDistance::to(std::string_view name) {
  constexpr std::size_t kLongest = 200;  // nobody mistypes a longer name, and comparing costs its square
  if (wanted_.size() > kLongest) return std::nullopt;
  const std::size_t distance = editDistance<char32_t>(wanted_, charactersOf(name), limit_, row_);
  return distance < limit_ ? std::optional(distance) : std::nullopt;
}

std::vector<NearNode> nearestNodes(const WalkGraph& graph, std::string_view name, std::size_t count) {
  NameDistance distanceOf(name);
  std::vector<NearNode> near;
  for (NodeId id = 0; id < graph.nodes().size(); ++id) {
    if (isCopyKind(graph.node(id).kind)) continue;
    if (const auto distance = distanceOf.to(graph.node(id).rawName)) near.push_back({*distance, id});
  }
  std::stable_sort(near.begin(), near.end(),
                   [](const NearNode& a, const NearNode& b) { return a.distance < b.distance; });
  near.resize(std::min(count, near.size()));
  return near;
}

std::string nodeText(const WalkGraph& graph, NodeId id) {
  return std::string(nodeKindLabel(graph.node(id).kind)) + " " + graph.path(id);
}

std::string nodeListText(const std::vector<std::string>& nodes) {
  std::string text;
  for (std::size_t i = 0; i < std::min(nodes.size(), kListed); ++i)
    text.append(i == 0 ? ":" : "").append("\n  ").append(printable(nodes[i]));
  if (nodes.size() > kListed)
    text.append("\n  and ").append(std::to_string(nodes.size() - kListed)).append(" more");
  return text;
}

NodeId findNode(const WalkGraph& graph, std::string_view name, LineageDirection direction) {
  const std::vector<NodeId> found = findNodes(graph, name, direction);
  if (found.size() == 1) return found.front();
  std::vector<std::string> list;
  list.reserve(found.size());
  for (const NodeId id : found) list.push_back(nodeText(graph, id));
  if (!found.empty()) fail(Message::ambiguousName, {printable(name), nodeListText(list)});
  for (const NearNode& near : nearestNodes(graph, name, kNearest)) list.push_back(nodeText(graph, near.node));
  fail(Message::unknownName, {printable(name), (list.empty() ? "" : "; the nearest") + nodeListText(list)});
}

}  // namespace tav
