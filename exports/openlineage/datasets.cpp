#include "exports/openlineage/datasets.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace tav {
namespace {

constexpr std::string_view kUnnamed = "(unnamed)";
constexpr std::string_view kUnknownTable = "(unknown table)";
constexpr std::string_view kCalculations = "Calculated Measures";

/// Behind which others a dataset stands: what feeds something comes before it, as far as kinds decide.
constexpr std::array kOrder{
    NodeKind::databaseTable, NodeKind::viewTable,    NodeKind::namedQuery,         NodeKind::dimension,
    NodeKind::cubeDimension, NodeKind::measureGroup, NodeKind::linkedMeasureGroup, NodeKind::calculations,
    NodeKind::kpi,           NodeKind::cube,         NodeKind::perspective};

std::string_view nameOrUnnamed(std::string_view name) {
  return name.empty() ? kUnnamed : name;
}

/// Appends a part of a dataset's name, in brackets where its dots would read as the ends of parts.
void appendPart(std::string& name, std::string_view part) {
  if (!name.empty()) name += '.';
  if (part.find_first_of(".[]") == part.npos) {
    name += nameOrUnnamed(part);
    return;
  }
  name += '[';
  for (const char c : part) name.append(c == ']' ? 2 : 1, c);
  name += ']';
}

std::string joinParts(std::initializer_list<std::string_view> parts) {
  std::string name;
  for (const std::string_view part : parts) appendPart(name, part);
  return name;
}

/// Whether nodes of this kind have values: columns, attributes, measures.
bool isField(NodeKind kind) {
  return !isClassifierKind(kind) && kind != NodeKind::condition && kind < NodeKind::perspective;
}

/// Whether an edge has to do with the values of a node: it gives them, or decides which count.
bool isLineage(EdgeKind kind) {
  return givesValue(kind) || kind == EdgeKind::condition;
}

/// What a node takes over as it is, when that is all of its lineage; else kNoNode.
NodeId onlySourceOf(const LineageGraph& graph, NodeId id) {
  NodeId source = kNoNode;
  for (const LineageEdge& edge : graph.into(id)) {
    if (!isLineage(edge.kind)) continue;
    if (edge.kind != EdgeKind::direct || source != kNoNode) return kNoNode;
    source = edge.from;
  }
  return source;
}

std::uint64_t fieldKey(DatasetId dataset, NodeId field) {
  return (std::uint64_t{dataset} << 32U) | field;
}

}  // namespace

std::string UniqueNames::take(std::string name) {
  if (taken_.insert(name).second) return name;
  std::size_t& last = last_.try_emplace(name, 1).first->second;
  for (;;) {
    std::string numbered = name + "/" + std::to_string(++last);
    if (taken_.insert(numbered).second) return numbered;
  }
}

CatalogDatasets::CatalogDatasets(const LineageGraph& graph, std::string_view server)
    : graph_(graph),
      server_(server),
      standsFor_(graph.nodes().size(), kNoNode),
      describedBy_(graph.nodes().size(), kNoNode),
      datasetOf_(graph.nodes().size(), kNoDataset) {
  findStandIns();
  findDescriptions();
  addDatasets();
  addUnknownTables();
  for (DatasetId id = 0; id < datasets_.size(); ++id) nameFields(id);
}

void CatalogDatasets::findStandIns() {
  for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
    if (graph_.node(id).kind != NodeKind::viewTable) continue;
    const NodeId table = tableBehind(id);
    if (table == kNoNode) continue;
    standsFor_[id] = table;
    for (const NodeId column : graph_.partsOf(id)) standsFor_[column] = columnBehind(column);
  }
}

/// The one table of a database that a view's table is another name of; kNoNode when it is more than that.
NodeId CatalogDatasets::tableBehind(NodeId viewTable) const {
  const NodeId table = onlySourceOf(graph_, viewTable);
  if (table == kNoNode || graph_.node(table).kind != NodeKind::databaseTable) return kNoNode;
  for (const NodeId column : graph_.partsOf(viewTable)) {
    const NodeId behind = columnBehind(column);
    if (behind == kNoNode || graph_.node(behind).owner != table) return kNoNode;
  }
  return table;
}

NodeId CatalogDatasets::columnBehind(NodeId viewColumn) const {
  const NodeId source = onlySourceOf(graph_, viewColumn);
  const bool same = graph_.node(viewColumn).kind == NodeKind::viewColumn && source != kNoNode &&
                    graph_.node(source).kind == NodeKind::databaseColumn;
  return same ? source : kNoNode;
}

void CatalogDatasets::findDescriptions() {
  for (const LineageEdge& edge : graph_.edges()) {
    const NodeKind to = graph_.node(edge.to).kind;
    const bool same =
        edge.kind == EdgeKind::direct && (to == NodeKind::viewTable || to == NodeKind::viewColumn);
    if (same && graph_.database(edge.from) && describedBy_[edge.from] == kNoNode)
      describedBy_[edge.from] = edge.to;
  }
}

NodeId CatalogDatasets::describing(NodeId id) const noexcept {
  return describedBy_[id] == kNoNode ? id : describedBy_[id];
}

bool CatalogDatasets::isDataset(NodeId id) const {
  const NodeKind kind = graph_.node(id).kind;
  return (isClassifierKind(kind) || kind == NodeKind::perspective) && standsFor_[id] == kNoNode;
}

void CatalogDatasets::addDatasets() {
  std::vector<NodeId> nodes;
  for (NodeId id = 0; id < graph_.nodes().size(); ++id)
    if (isDataset(id)) nodes.push_back(id);
  const auto rank = [&](NodeId id) {
    return std::find(kOrder.begin(), kOrder.end(), graph_.node(id).kind) - kOrder.begin();
  };
  std::stable_sort(nodes.begin(), nodes.end(), [&](NodeId a, NodeId b) { return rank(a) < rank(b); });
  for (const NodeId id : nodes) addDataset(id);
}

void CatalogDatasets::addDataset(NodeId node) {
  const DatabaseAddress* address = graph_.database(node);
  const auto id = static_cast<DatasetId>(datasets_.size());
  CatalogDataset dataset{node, address ? address->server : server_, {}, {}, !address};
  dataset.name = names_[dataset.space].take(address ? nameInDatabase(node) : nameInModel(node));
  datasetOf_[node] = id;
  for (const NodeId part : graph_.partsOf(node)) {
    if (isClassifierKind(graph_.node(part).kind) || graph_.node(part).kind >= NodeKind::perspective) continue;
    datasetOf_[part] = id;
    if (isField(graph_.node(part).kind)) dataset.fields.push_back(part);
  }
  if (graph_.node(node).kind == NodeKind::perspective) addShownFields(dataset);
  datasets_.push_back(std::move(dataset));
}

void CatalogDatasets::addShownFields(CatalogDataset& perspective) const {
  for (const LineageEdge& edge : graph_.into(perspective.node))
    if (edge.kind == EdgeKind::member && isField(graph_.node(edge.from).kind))
      perspective.fields.push_back(edge.from);
}

/// Columns that a named query takes from one of its tables, without saying from which: they are gathered by
/// query.
void CatalogDatasets::addUnknownTables() {
  std::unordered_map<NodeId, DatasetId> byQuery;
  for (NodeId column = 0; column < graph_.nodes().size(); ++column) {
    const LineageNode& node = graph_.node(column);
    if (node.kind != NodeKind::databaseColumn || node.owner != kNoNode || graph_.outOf(column).empty())
      continue;
    const NodeId reader = graph_.edges()[graph_.outOf(column)[0]].to;
    const NodeId query = graph_.node(reader).owner;
    const auto [place, isNew] = byQuery.try_emplace(query, static_cast<DatasetId>(datasets_.size()));
    if (isNew) {
      std::string name = nameInModel(query).append(".").append(kUnknownTable);
      datasets_.push_back({query, server_, names_[server_].take(std::move(name)), {}, false});
    }
    datasetOf_[column] = place->second;
    datasets_[place->second].fields.push_back(column);
  }
}

void CatalogDatasets::nameFields(DatasetId id) {
  UniqueNames names;
  for (const NodeId field : datasets_[id].fields) {
    const std::string given = graph_.name(field);
    std::string name = names.take(std::string(nameOrUnnamed(given)));
    if (name != given) otherNames_.emplace(fieldKey(id, field), std::move(name));
  }
}

std::string CatalogDatasets::fieldName(DatasetId dataset, NodeId field) const {
  const auto other = otherNames_.find(fieldKey(dataset, field));
  return other == otherNames_.end() ? graph_.name(field) : other->second;
}

/// Names are like paths of the model, so that a cube, a dimension and a measure group of one name differ.
std::string CatalogDatasets::nameInModel(NodeId id) const {
  const std::string name = graph_.name(id);
  const std::string database = graph_.modelName();
  const NodeId cubeNode = graph_.cubeOf(id);
  const std::string cube = cubeNode == kNoNode ? std::string() : graph_.name(cubeNode);
  switch (graph_.node(id).kind) {
    case NodeKind::viewTable:
    case NodeKind::namedQuery:
      return joinParts({database, "Data Source Views", graph_.packageName(id), name});
    case NodeKind::dimension:
      return joinParts({database, "Dimensions", name});
    case NodeKind::cubeDimension:
      return joinParts({database, cube, "Dimensions", name});
    case NodeKind::calculations:
      if (name == kCalculations) return joinParts({database, cube, kCalculations});
      return joinParts({database, cube, kCalculations, name});
    case NodeKind::kpi:
      return joinParts({database, cube, "KPIs", name});
    case NodeKind::measureGroup:
    case NodeKind::linkedMeasureGroup:
      return joinParts({database, cube, "Measure Groups", name});
    default:
      return joinParts({database, name});
  }
}

/// As every producer names tables: without marks around names that hold dots. What is linked from another
/// definition, that one names as this one does its own.
std::string CatalogDatasets::nameInDatabase(NodeId table) const {
  const DatabaseAddress& address = *graph_.database(table);
  const std::string schema = graph_.schema(table);
  const std::string own = graph_.name(table);
  const std::string_view name = nameOrUnnamed(own);
  if (!graph_.isLinked(table)) return catalogueName(address, schema, name);
  return schema.empty() ? joinParts({address.database, "Dimensions", name})
                        : joinParts({address.database, schema, "Measure Groups", name});
}

}  // namespace tav
