#include "lineage/graph_builder.h"

#include <unordered_set>

#include "framework/model/roles.h"
#include "framework/model/tree_walk.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"
#include "lineage/arrange.h"
#include "lineage/database_nodes.h"

namespace tav {
namespace {

/// The number of an object that is no node. Nodes are numbered from 1.
constexpr std::uint32_t kNoNumber = 0;

NodeKind kindOf(const TAVClassifier& classifier) {
  switch (roleOf(classifier)) {
    case ClassifierRole::viewTable:
      return NodeKind::viewTable;
    case ClassifierRole::namedQuery:
      return NodeKind::namedQuery;
    case ClassifierRole::measureGroup:
      return NodeKind::measureGroup;
    case ClassifierRole::linkedMeasureGroup:
      return NodeKind::linkedMeasureGroup;
    case ClassifierRole::calculatedMeasures:
      return NodeKind::calculations;
    case ClassifierRole::kpi:
      return NodeKind::kpi;
    case ClassifierRole::cube:
      return NodeKind::cube;
    case ClassifierRole::cubeDimension:
      return NodeKind::cubeDimension;
    default:
      return NodeKind::dimension;
  }
}

NodeKind kindOf(const TAVColumn& column, NodeKind owner) {
  const bool computed = owner == NodeKind::viewTable && !column.expression.empty();
  return computed ? NodeKind::computedColumn : NodeKind::viewColumn;
}

NodeKind kindOfMeasure(NodeKind owner) {
  switch (owner) {
    case NodeKind::calculations:
      return NodeKind::calculatedMeasure;
    case NodeKind::kpi:
      return NodeKind::kpiValue;
    case NodeKind::cube:
      return NodeKind::cubeMeasure;
    default:
      return NodeKind::measure;
  }
}

NodeKind kindOf(const TAVFeature& feature, NodeKind owner) {
  if (const auto* column = as<TAVColumn>(&feature)) return kindOf(*column, owner);
  if (is<TAVCondition>(feature)) return NodeKind::condition;
  if (is<TAVMeasure>(feature)) return kindOfMeasure(owner);
  if (is<TAVDimensionAttribute>(feature)) return NodeKind::attribute;
  return owner == NodeKind::linkedMeasureGroup ? NodeKind::linkedMeasure : NodeKind::cubeAttribute;
}

bool isColumn(NodeKind kind) {
  return kind == NodeKind::viewColumn || kind == NodeKind::computedColumn;
}

EdgeKind kindOfEdge(NodeKind from, NodeKind to, bool computed) {
  if (to == NodeKind::condition) return EdgeKind::condition;
  if (to == NodeKind::measure && isColumn(from)) return EdgeKind::aggregated;
  return computed ? EdgeKind::computed : EdgeKind::direct;
}

/// Whether an alias shows the dimension of an association under the association's name, or that with a
/// number.
bool isUseOf(const TAVAliasClassifier& alias, const TAVCubeDimensionAssociation& association) {
  const TAVClassifierMap* map = alias.getDestinationOfClassifierMap();
  const std::string_view name = association.getName();
  return map && association.dimension && map->sourceClassifiers.first() == association.dimension.get() &&
         (alias.getName() == name || alias.getName().view().starts_with(std::string(name).append("/")));
}

std::string_view databaseName(const TAVModelObject& object) {
  return object.physicalName.empty() ? object.getName().view() : object.physicalName.view();
}

}  // namespace

/// The passes, each of which needs what those before it made.
LineageGraph::LineageGraph(const DetailedModel& model) : LineageGraph(model, {}) {}

LineageGraph::LineageGraph(const DetailedModel& model, const AddressMap& map)
    : model_(model.model), details_(model.details), map_(map), tabular_(tav::isTabular(model.model)) {
  GraphBuilder(*this).build();
}

void GraphBuilder::build() {
  // All nodes first: a source may stand anywhere in the model, also behind what it feeds.
  addNodes();
  // A cube stands behind some of what belongs to it.
  setCubeOwners();
  nameCubeDimensions();
  addDetailNodes();
  addPartitions();
  for (NodeId id = 0; id < graph_.nodes_.size(); ++id)
    if (graph_.nodes_[id].kind == NodeKind::miningModel)
      miningModels_.try_emplace(foldedName(graph_.nodes_[id].rawName), id);
  // What databases hold comes behind the nodes of the model, made when a table or query first names it.
  graph_.firstDatabaseNode_ = static_cast<NodeId>(graph_.nodes_.size());
  for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) addModelEdges(id);
  addDatabaseEdges();
  addDetailEdges();
  // What the graph finds beyond the model comes last: it leaves out what the model has.
  addLinkedMeasureEdges();
  addFilledEdges();
  // Only now it is known how many edges each node has.
  arrange();
}

NodeId GraphBuilder::nodeOf(const TAVObject* object) {
  const std::uint32_t number = object ? Numbering::get(*object) : kNoNumber;
  return number == kNoNumber ? kNoNode : number - 1;
}

void GraphBuilder::addNodes() {
  forEachObject(graph_.model_, [&](const TAVObject& object) {
    Numbering::set(object, kNoNumber);
    if (is<TAVLevel>(object)) return;
    if (const auto* classifier = as<TAVClassifier>(&object))
      addClassifier(*classifier);
    else if (const auto* feature = as<TAVFeature>(&object))
      addFeature(*feature);
    else if (const auto* synonym = as<TAVSynonym>(&object))
      addPerspective(*synonym);
    else if (is<TAVModel>(object))
      addNode(NodeKind::database, kNoNode, *as<TAVModel>(&object));
    else if (const auto* connection = as<TAVStoreConnection>(&object))
      addNode(NodeKind::dataSource, kNoNode, *connection);
    else if (const auto* package = as<TAVDesignPackage>(&object))
      addView(*package);
    else if (const auto* hierarchy = as<TAVHierarchy>(&object))
      addNode(NodeKind::hierarchy, nodeOf(hierarchy->dimension.get()), *hierarchy);
    else if (const auto* use = as<TAVHierarchyLevelAssociation>(&object))
      addLevel(*use);
  });
}

void GraphBuilder::addClassifier(const TAVClassifier& classifier) {
  const NodeKind kind = kindOf(classifier);
  addNode(kind, kNoNode, classifier);
  if (kind == NodeKind::dimension) dimensions_.try_emplace(classifier.getName(), nodeOf(&classifier));
  if (is<TAVCube>(classifier) && classifier.nameSpace)
    cubes_.try_emplace(classifier.nameSpace.get(), nodeOf(&classifier));
}

void GraphBuilder::addFeature(const TAVFeature& feature) {
  const NodeId owner = nodeOf(feature.classifier.get());
  if (owner != kNoNode) addNode(kindOf(feature, graph_.nodes_[owner].kind), owner, feature);
}

void GraphBuilder::addPerspective(const TAVSynonym& perspective) {
  const auto* cube = as<TAVCube>(perspective.modelObject.get());
  if (cube) addNode(NodeKind::perspective, nodeOf(cube), perspective);
}

void GraphBuilder::addView(const TAVDesignPackage& package) {
  if (package.nativeType == label::kDataSourceView) addNode(NodeKind::dataSourceView, kNoNode, package);
}

/// A level of one hierarchy: the level that the model has may be shared by several.
void GraphBuilder::addLevel(const TAVHierarchyLevelAssociation& use) {
  if (!use.level) return;
  addNode(NodeKind::level, nodeOf(use.hierarchy.get()), use);
  graph_.nodes_.back().rawName = use.level->getName();
}

void GraphBuilder::addNode(NodeKind kind, NodeId owner, const TAVModelObject& object) {
  graph_.nodes_.push_back({kind, owner, &object, object.getName()});
  Numbering::set(object, static_cast<std::uint32_t>(graph_.nodes_.size()));
}

void GraphBuilder::setCubeOwners() {
  for (LineageNode& node : graph_.nodes_) {
    const auto* classifier = as<TAVClassifier>(node.object);
    if (classifier && node.kind != NodeKind::cube) node.owner = enclosingCube(*classifier);
  }
}

/// The cube of the package that a classifier is in, or of the one around that: a cube has no deeper folders.
NodeId GraphBuilder::enclosingCube(const TAVClassifier& classifier) const {
  const TAVNamespace* package = classifier.nameSpace.get();
  for (int depth = 0; package && depth < 2; ++depth) {
    if (const auto cube = cubes_.find(package); cube != cubes_.end()) return cube->second;
    package = package->nameSpace.get();
  }
  return kNoNode;
}

/// The dimensions of a cube and its associations with them are made together, in one order; only the
/// associations keep the name as the cube gives it. The other one gets a number where the package has that
/// name already, as a cube that is called like one of its dimensions has. Expressions use the cube's name.
void GraphBuilder::nameCubeDimensions() {
  std::unordered_map<NodeId, std::vector<NodeId>> dimensions;
  for (NodeId id = 0; id < graph_.nodes_.size(); ++id) {
    const LineageNode& node = graph_.nodes_[id];
    if (node.kind == NodeKind::cubeDimension && node.owner != kNoNode) dimensions[node.owner].push_back(id);
  }
  for (const auto& [cube, aliases] : dimensions) {
    const auto& associations = as<TAVCube>(graph_.nodes_[cube].object)->cubeDimensionAssociations;
    if (static_cast<std::size_t>(associations.getCount()) != aliases.size()) continue;
    auto alias = aliases.begin();
    for (const TAVCubeDimensionAssociation& association : associations) {
      LineageNode& node = graph_.nodes_[*alias++];
      if (isUseOf(*as<TAVAliasClassifier>(node.object), association)) node.rawName = association.getName();
    }
  }
}

void GraphBuilder::addModelEdges(NodeId id) {
  const TAVModelObject* object = graph_.nodes_[id].object;
  if (const auto* classifier = as<TAVClassifier>(object)) {
    addClassifierEdges(id, *classifier);
  } else if (const auto* feature = as<TAVFeature>(object)) {
    addFeatureEdges(id, *feature);
    if (graph_.tabular_) addTableEdges(id, *feature);
  }
  addConditionEdges(id);
  addMemberEdges(id);
  addBasisEdges(id);
}

void GraphBuilder::addClassifierEdges(NodeId id, const TAVClassifier& classifier) {
  for (const TAVClassifierMap& map : classifier.destinationOfClassifierMaps)
    for (const TAVClassifier& source : map.sourceClassifiers)
      if (nodeOf(&source) != kNoNode) addEdge(nodeOf(&source), id, EdgeKind::direct);
}

void GraphBuilder::addFeatureEdges(NodeId id, const TAVFeature& feature) {
  const TAVFeatureMap* map = feature.getDestinationOfFeatureMap();
  if (!map) return;
  const NodeKind kind = graph_.nodes_[id].kind;
  for (const TAVFeature& source : map->sourceFeatures)
    if (const NodeId from = nodeOf(&source); from != kNoNode)
      addEdge(from, id, kindOfEdge(graph_.nodes_[from].kind, kind, !map->operation.empty()));
  for (const TAVFeature& control : map->controlFeatures)
    if (nodeOf(&control) != kNoNode) addEdge(nodeOf(&control), id, EdgeKind::condition);
}

/// A feature map has features only. The tables that an expression names decide which rows its value is of,
/// and give none, unless the value is how many rows they have.
void GraphBuilder::addTableEdges(NodeId id, const TAVFeature& feature) {
  const std::vector<std::string_view> names = linesOfProperty(feature, label::kSourceTables);
  if (names.empty()) return;
  std::unordered_set<std::string_view> counted;
  for (const std::string_view name : linesOfProperty(feature, label::kCountedTables)) counted.insert(name);
  for (const std::string_view name : names)
    if (const auto table = dimensions_.find(name); table != dimensions_.end())
      addEdge(table->second, id, counted.contains(name) ? EdgeKind::counted : EdgeKind::condition);
}

/// Every value of a query depends on the conditions under which it takes rows. Where there are several, the
/// first one stands for all, so that their number does not multiply with that of the columns.
void GraphBuilder::addConditionEdges(NodeId id) {
  const LineageNode& node = graph_.nodes_[id];
  if (node.kind != NodeKind::condition) return;
  const auto [first, isFirst] = firstConditions_.try_emplace(node.owner, id);
  if (!isFirst) {
    addEdge(id, first->second, EdgeKind::condition);
    return;
  }
  for (const TAVFeature& column : as<TAVFeature>(node.object)->classifier->features)
    if (is<TAVColumn>(column)) addEdge(id, nodeOf(&column), EdgeKind::condition);
}

void GraphBuilder::addMemberEdges(NodeId id) {
  switch (graph_.nodes_[id].kind) {
    case NodeKind::perspective:
      // What it lists stands in the details; without them it may be anything of its cube.
      if (!graph_.details_) addEdge(graph_.nodes_[id].owner, id, EdgeKind::member);
      break;
    case NodeKind::cubeMeasure:
    case NodeKind::cubeDimension:
    case NodeKind::cubeAttribute:
      if (const NodeId cube = graph_.cubeOf(id); cube != kNoNode) addEdge(id, cube, EdgeKind::member);
      break;
    default:
      break;
  }
}

/// A level shows the attribute behind its key. The model has levels of one name once, whatever hierarchies
/// have them; the details of a multidimensional definition tell what each of them is based on.
void GraphBuilder::addBasisEdges(NodeId id) {
  const auto* use = as<TAVHierarchyLevelAssociation>(graph_.nodes_[id].object);
  if (!use || (graph_.details_ && !graph_.tabular_)) return;
  if (const NodeId attribute = nodeOf(keyAttributeOf(*use->level)); attribute != kNoNode)
    addEdge(attribute, id, EdgeKind::basis);
}

/// Three turns over the nodes: the connections of all tables have to be known before the first query is read,
/// and the columns that stand for one of a database before a query may name that one again.
void GraphBuilder::addDatabaseEdges() {
  DatabaseNodes databases(graph_);
  columnOfView_.assign(graph_.firstDatabaseNode_, kNoNode);
  tableAddress_.assign(graph_.firstDatabaseNode_, 0);
  const auto forEach = [&](auto add) {
    for (NodeId id = 0; id < graph_.firstDatabaseNode_; ++id) (this->*add)(id, databases);
  };
  forEach(&GraphBuilder::addTableSource);
  forEach(&GraphBuilder::addQuerySources);
  forEach(&GraphBuilder::addColumnSources);
  addDetailSources(databases);
}

void GraphBuilder::addTableSource(NodeId id, DatabaseNodes& databases) {
  const auto* table = as<TAVTable>(graph_.nodes_[id].object);
  if (!table) return;
  const std::uint32_t address = databases.addressOfConnection(table->storeConnections.first());
  tableAddress_[id] = address;
  if (graph_.nodes_[id].kind == NodeKind::namedQuery) return;
  const NodeId source = databases.table(address, table->schemaName, databaseName(*table));
  addEdge(source, id, EdgeKind::direct);
  for (const TAVFeature& feature : table->features) {
    const NodeId column = nodeOf(&feature);
    if (column == kNoNode || graph_.nodes_[column].kind != NodeKind::viewColumn) continue;
    columnOfView_[column] = databases.column(source, databaseName(feature));
    addEdge(columnOfView_[column], column, EdgeKind::direct);
  }
}

void GraphBuilder::addQuerySources(NodeId id, DatabaseNodes& databases) {
  const auto* table = as<TAVTable>(graph_.nodes_[id].object);
  if (!table) return;
  for (const std::string_view name : querySourcesOf(*table)) {
    if (const NodeId mined = miningModelBehind(name, id); mined != kNoNode)
      addEdge(mined, id, EdgeKind::mines, true);
    else
      addEdge(databases.namedTable(tableAddress_[id], name), id, EdgeKind::computed);
  }
}

/// The mining model whose content a query reads, as `[Model].DIMENSION_CONTENT` of the database that it is
/// in: no table of any other. kNoNode where a connection is read.
NodeId GraphBuilder::miningModelBehind(std::string_view name, NodeId table) const {
  const auto* query = as<TAVTable>(graph_.nodes_[table].object);
  if (miningModels_.empty() || !query || query->storeConnections.first()) return kNoNode;
  const std::vector<std::string> parts = splitDottedName(name);
  const auto model = parts.size() < 2 ? miningModels_.end() : miningModels_.find(foldedName(parts.front()));
  return model == miningModels_.end() ? kNoNode : model->second;
}

void GraphBuilder::addColumnSources(NodeId id, DatabaseNodes& databases) {
  const TAVModelObject* object = graph_.nodes_[id].object;
  if (as<TAVCondition>(object)) addNamedColumns(id, EdgeKind::condition, databases);
  if (as<TAVColumn>(object))
    addNamedColumns(id, graph_.rawExpression(id).empty() ? EdgeKind::direct : EdgeKind::computed, databases);
}

/// A query is resolved against the tables of its view first: columns of the database that the model's own map
/// leads to already are not named once more.
void GraphBuilder::addNamedColumns(NodeId id, EdgeKind kind, DatabaseNodes& databases) {
  const std::vector<std::string_view> names = querySourcesOf(*graph_.nodes_[id].object);
  if (names.empty()) return;
  std::unordered_set<NodeId> known;
  if (const TAVFeatureMap* map = as<TAVFeature>(graph_.nodes_[id].object)->getDestinationOfFeatureMap())
    for (const TAVFeature& source : map->sourceFeatures)
      if (const NodeId from = nodeOf(&source); from != kNoNode) known.insert(columnOfView_[from]);
  const NodeId table = graph_.nodes_[id].owner;
  for (const std::string_view name : names) {
    const NodeId mined = miningModelBehind(name, table);
    const NodeId source = mined == kNoNode ? databases.namedColumn(tableAddress_[table], name, table) : mined;
    if (known.insert(source).second)
      addEdge(source, id, mined == kNoNode ? kind : EdgeKind::mines, mined != kNoNode);
  }
}

void GraphBuilder::addEdge(NodeId from, NodeId to, EdgeKind kind, bool foundByGraph) {
  graph_.edges_.push_back({from, to, kind, foundByGraph});
}

/// The edges into each node together, in the order in which they were found.
void GraphBuilder::arrange() {
  const std::size_t nodes = graph_.nodes_.size();
  const std::vector<LineageEdge> edges = std::move(graph_.edges_);
  std::vector<std::uint32_t> offsets;
  std::vector<std::uint32_t> order;
  arrangeByKey(
      nodes, edges.size(), [&](std::uint32_t i) { return edges[i].to; }, offsets, order);
  graph_.edges_.clear();
  graph_.edges_.reserve(edges.size());
  graph_.inOffsets_.clear();
  for (std::size_t id = 0; id < nodes; ++id) {
    const std::size_t first = graph_.edges_.size();
    graph_.inOffsets_.push_back(static_cast<std::uint32_t>(first));
    for (std::uint32_t i = offsets[id]; i < offsets[id + 1]; ++i) graph_.edges_.push_back(edges[order[i]]);
    if (graph_.details_) settleEdges(first);
  }
  graph_.inOffsets_.push_back(static_cast<std::uint32_t>(graph_.edges_.size()));
  graph_.arrangeNodes();
  arrangeSettings();
}

}  // namespace tav
