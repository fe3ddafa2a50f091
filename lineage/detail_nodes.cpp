// The nodes and edges that a lineage graph has out of the details of a definition.

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "lineage/arrange.h"
#include "lineage/database_nodes.h"
#include "lineage/graph_builder.h"

namespace tav {

/// Owners may stand behind what they own.
void GraphBuilder::addDetailNodes() {
  const Details* details = graph_.details_;
  if (!details) return;
  graph_.itemNodes_.assign(details->items().size(), kNoNode);
  for (ItemId item = 0; item < graph_.itemNodes_.size(); ++item) {
    const DetailItem& at = details->item(item);
    if (!at.object) {
      graph_.itemNodes_[item] = static_cast<NodeId>(graph_.nodes_.size());
      graph_.nodes_.push_back({at.kind, kNoNode, nullptr, at.name, item});
      continue;
    }
    if (nodeOf(at.object) == kNoNode) addNode(NodeKind::other, kNoNode, *at.object);
    graph_.itemNodes_[item] = nodeOf(at.object);
    graph_.nodes_[graph_.itemNodes_[item]].item = item;
  }
  for (ItemId item = 0; item < graph_.itemNodes_.size(); ++item)
    if (const ItemId owner = details->item(item).owner; owner != kNoItem && !details->item(item).object)
      graph_.nodes_[graph_.itemNodes_[item]].owner = graph_.itemNodes_[owner];
}

void GraphBuilder::addDetailEdges() {
  const Details* details = graph_.details_;
  if (!details) return;
  const auto relations = details->relations();
  for (std::uint32_t i = 0; i < relations.size(); ++i)
    graph_.edges_.push_back({graph_.itemNodes_[relations[i].from], graph_.itemNodes_[relations[i].to],
                             relations[i].kind, true, false, i});
}

namespace {

/// Settings of items by one name, the first of each.
std::unordered_map<ItemId, std::string_view> settingsCalled(const Details& details, std::string_view name) {
  std::unordered_map<ItemId, std::string_view> values;
  for (const DetailSetting& setting : details.settings())
    if (setting.name == name) values.try_emplace(setting.item, setting.value);
  return values;
}

/// The model lacks the sources of what it does not show.
ItemAddresses addressesIn(const Details& details, DatabaseNodes& databases) {
  ItemAddresses addresses;
  std::optional<std::unordered_map<ItemId, std::string_view>> connectionStrings;
  for (const DetailRelation& relation : details.relations()) {
    if (relation.kind != EdgeKind::connects || addresses.contains(relation.to)) continue;
    const DetailItem& source = details.item(relation.from);
    if (source.object) {
      addresses.emplace(relation.to, databases.addressOfConnection(as<TAVStoreConnection>(source.object)));
      continue;
    }
    if (!connectionStrings) connectionStrings = settingsCalled(details, "ConnectionString");
    if (const auto text = connectionStrings->find(relation.from); text != connectionStrings->end())
      addresses.emplace(relation.to, databases.addressOfFacts({source.name, text->second, {}, {}, {}}));
  }
  return addresses;
}

}  // namespace

void GraphBuilder::addDetailSources(DatabaseNodes& databases) {
  if (!graph_.details_) return;
  const ItemAddresses addresses = addressesIn(*graph_.details_, databases);
  addPartitionSources(addresses, databases);
  addLinkedSources(addresses, databases);
}

/// Tables and columns of the database that partitions read and no view shows.
void GraphBuilder::addPartitionSources(const ItemAddresses& addresses, DatabaseNodes& databases) {
  const Details* details = graph_.details_;
  std::unordered_set<std::uint64_t> known;
  for (const OpenName& name : details->openNames()) {
    if (!isOfDatabase(name)) continue;
    const NodeId reader = graph_.itemNodes_[name.item];
    const auto place = addresses.find(name.item);
    const std::uint32_t address =
        place == addresses.end() ? databases.addressOfConnection(nullptr) : place->second;
    const NodeId source = name.note == kTableOfDatabase ? databases.namedTable(address, name.name)
                                                        : databases.namedColumn(address, name.name, reader);
    if (known.insert((std::uint64_t{source} << 32) | reader).second)
      addEdge(source, reader, EdgeKind::reads, true);
  }
}

namespace {

/// What a dimension, measure group or measure is linked from: IDs of another database, as the definition has
/// them.
struct Link {
  std::string_view dimension;
  std::string_view cube;
  std::string_view group;
  std::string_view measure;
};

std::map<ItemId, Link> linksIn(const Details& details) {
  constexpr std::array<std::pair<std::string_view, std::string_view Link::*>, 4> kNotes{
      {{"DimensionID", &Link::dimension},
       {"CubeID", &Link::cube},
       {"MeasureGroupID", &Link::group},
       {"MeasureID", &Link::measure}}};
  std::map<ItemId, Link> links;
  for (const OpenName& name : details.openNames())
    for (const auto& [note, member] : kNotes)
      if (name.state == OpenNameState::beyond && name.note == note) links[name.item].*member = name.name;
  return links;
}

}  // namespace

/// What a definition links from another database, and the attributes and measures of that, which have no
/// other source.
void GraphBuilder::addLinkedSources(const ItemAddresses& addresses, DatabaseNodes& databases) {
  const Details* details = graph_.details_;
  const std::map<ItemId, Link> links = linksIn(*details);
  if (links.empty()) return;
  std::unordered_map<NodeId, NodeId> sources;  // by dimension or measure group
  for (const auto& [item, link] : links) {
    const NodeId node = graph_.itemNodes_[item];
    const NodeKind kind = graph_.nodes_[node].kind;
    const auto address = addresses.find(item);
    const std::string_view id = kind == NodeKind::dimension      ? link.dimension
                                : kind == NodeKind::measureGroup ? link.group
                                                                 : std::string_view();
    if (id.empty() || address == addresses.end()) continue;
    const NodeId source = databases.linked(address->second, link.cube, id);
    if (source == kNoNode) continue;
    sources.emplace(node, source);
    addEdge(source, node, EdgeKind::direct, true);
  }
  const auto ids = settingsCalled(*details, "ID");
  for (NodeId node = 0; node < graph_.firstDatabaseNode_; ++node) {
    const auto [kind, owner, object, name, item] = graph_.nodes_[node];
    const auto source = owner == kNoNode ? sources.end() : sources.find(owner);
    const auto* feature = as<TAVFeature>(object);
    if (source == sources.end() || (feature && feature->getDestinationOfFeatureMap())) continue;
    std::string_view id;
    if (kind == NodeKind::attribute)
      id = ids.contains(item) ? ids.at(item) : name;
    else if (kind == NodeKind::measure && links.contains(item))
      id = links.at(item).measure;
    if (!id.empty()) addEdge(databases.column(source->second, id), node, EdgeKind::direct, true);
  }
}

void GraphBuilder::arrangeSettings() {
  const Details* details = graph_.details_;
  if (!details) return;
  const std::size_t nodes = graph_.nodes_.size();
  const auto settings = details->settings();
  arrangeByKey(
      nodes, settings.size(), [&](std::uint32_t i) { return graph_.itemNodes_[settings[i].item]; },
      graph_.settingOffsets_, graph_.settings_);
  const auto names = details->openNames();
  arrangeByKey(
      nodes, names.size(), [&](std::uint32_t i) { return graph_.itemNodes_[names[i].item]; },
      graph_.openNameOffsets_, graph_.openNames_);
}

namespace {

/// What two edges between the same nodes have to differ in.
struct EdgeLabel {
  NodeId from;
  EdgeKind kind;
  const char* text;  // texts of relations are kept once, so that their places tell them apart

  friend bool operator==(const EdgeLabel&, const EdgeLabel&) = default;
};

struct EdgeLabelHash {
  std::size_t operator()(const EdgeLabel& label) const noexcept {
    const std::size_t number = (std::size_t{label.from} << 8) | static_cast<std::size_t>(label.kind);
    return std::hash<std::size_t>()(number) ^ std::hash<const void*>()(label.text);
  }
};

/// Labels of the edges into one node. Most nodes have few, which are compared one by one.
class EdgeLabels {
 public:
  /// Whether the label is new.
  bool insert(const EdgeLabel& label) {
    if (!many_.empty()) return many_.insert(label).second;
    const auto end = few_.begin() + static_cast<std::ptrdiff_t>(count_);
    if (std::find(few_.begin(), end, label) != end) return false;
    if (count_ < few_.size()) {
      few_[count_++] = label;
      return true;
    }
    many_.insert(few_.begin(), few_.end());
    return many_.insert(label).second;
  }

 private:
  std::array<EdgeLabel, 16> few_{};
  std::size_t count_ = 0;
  std::unordered_set<EdgeLabel, EdgeLabelHash> many_;  // empty until there are more
};

}  // namespace

/// Of the edges into one node, which begin at `first`: leaves out relations that the model has as well, those
/// that the definition says twice, and edges of the model that a relation takes the place of.
void GraphBuilder::settleEdges(std::size_t first) {
  auto& edges = graph_.edges_;
  const auto begin = edges.begin() + static_cast<std::ptrdiff_t>(first);
  if (std::none_of(begin, edges.end(), [](const LineageEdge& edge) { return edge.relation != kNoRelation; }))
    return;
  EdgeLabels known;
  std::unordered_set<NodeId> replaced;
  for (auto edge = begin; edge != edges.end(); ++edge)
    if (edge->kind == EdgeKind::replaced) replaced.insert(edge->from);
  const auto isSuperfluous = [&](const LineageEdge& edge) {
    if (edge.kind == EdgeKind::replaced) return true;
    if (edge.relation == kNoRelation && edge.kind == EdgeKind::computed && replaced.contains(edge.from))
      return true;
    const char* text = edge.relation == kNoRelation
                           ? nullptr
                           : graph_.details_->relations()[edge.relation].text.view().data();
    return !known.insert({edge.from, edge.kind, text});
  };
  edges.erase(std::remove_if(begin, edges.end(), isSuperfluous), edges.end());
  if (replaced.empty()) return;
  for (auto edge = begin; edge != edges.end(); ++edge)
    edge->replaces = edge->relation != kNoRelation && edge->kind == EdgeKind::computed;
}

}  // namespace tav
