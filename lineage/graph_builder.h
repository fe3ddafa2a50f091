#pragma once

// How a lineage graph comes about: nodes in one walk over the model, then the edges into each of them
// (graph_builder.cpp), then those that the model does not have (found_edges.cpp).

#include <string_view>
#include <unordered_map>
#include <vector>

#include "lineage/lineage_graph.h"

namespace tav {

class DatabaseNodes;

/// The addresses of databases that items of the details lead to by the data sources that they name.
using ItemAddresses = std::unordered_map<ItemId, std::uint32_t>;

class GraphBuilder {
 public:
  explicit GraphBuilder(LineageGraph& graph) : graph_(graph) {}

  void build();

 private:
  void addNodes();
  void addClassifier(const TAVClassifier& classifier);
  void addFeature(const TAVFeature& feature);
  void addPerspective(const TAVSynonym& perspective);
  void addNode(NodeKind kind, NodeId owner, const TAVModelObject& object);
  void setCubeOwners();
  void nameCubeDimensions();
  void addView(const TAVDesignPackage& package);
  void addLevel(const TAVHierarchyLevelAssociation& use);
  void addDetailNodes();
  void addPartitions();
  [[nodiscard]] NodeId enclosingCube(const TAVClassifier& classifier) const;

  void addModelEdges(NodeId id);
  void addClassifierEdges(NodeId id, const TAVClassifier& classifier);
  void addFeatureEdges(NodeId id, const TAVFeature& feature);
  void addTableEdges(NodeId id, const TAVFeature& feature);
  void addConditionEdges(NodeId id);
  void addMemberEdges(NodeId id);
  void addDatabaseEdges();
  void addTableSource(NodeId id, DatabaseNodes& databases);
  void addQuerySources(NodeId id, DatabaseNodes& databases);
  void addColumnSources(NodeId id, DatabaseNodes& databases);
  void addDetailSources(DatabaseNodes& databases);
  void addPartitionSources(const ItemAddresses& addresses, DatabaseNodes& databases);
  void addLinkedSources(const ItemAddresses& addresses, DatabaseNodes& databases);
  void addNamedColumns(NodeId id, EdgeKind kind, DatabaseNodes& databases);
  [[nodiscard]] NodeId miningModelBehind(std::string_view name, NodeId table) const;

  void addBasisEdges(NodeId id);
  void addDetailEdges();
  void addLinkedMeasureEdges();
  void addFilledEdges();

  static NodeId nodeOf(const TAVObject* object);
  void addEdge(NodeId from, NodeId to, EdgeKind kind, bool foundByGraph = false);
  void settleEdges(std::size_t first);
  void arrangeSettings();
  void arrange();

  LineageGraph& graph_;
  std::unordered_map<const TAVNamespace*, NodeId> cubes_;    // by the package that the cube is in
  std::unordered_map<std::string_view, NodeId> dimensions_;  // of the database, by name
  std::unordered_map<NodeId, NodeId> firstConditions_;       // by table
  std::unordered_map<NodeId, NodeId>
      fillers_;                       // by measure group or table: its partition, or what stands for all
  std::vector<NodeId> columnOfView_;  // by node: the database's column that a view's column stands for
  std::vector<std::uint32_t> tableAddress_;               // by node of a view's table
  std::unordered_map<std::string, NodeId> miningModels_;  // by folded name
};

}  // namespace tav
