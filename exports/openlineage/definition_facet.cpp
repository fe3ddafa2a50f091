#include "exports/openlineage/definition_facet.h"

namespace tav {
namespace {

/// Whether only the details have a node.
bool isOfDetails(const LineageGraph& graph, NodeId id) {
  return !graph.node(id).object && !graph.database(id);
}

/// Whether a relation is told by no facet of the standard.
bool isTold(EdgeKind kind) {
  return !givesValue(kind) && kind != EdgeKind::condition && kind != EdgeKind::member;
}

template <class Items, class Write>
void writeList(JsonWriter& json, std::string_view name, const Items& items, Write write) {
  if (items.empty()) return;
  json.open(name, '[');
  for (const auto& item : items) write(item);
  json.close(']');
}

void writeObject(JsonWriter& json, const LineageGraph& graph, NodeId id) {
  json.open('{');
  json.member("kind", nodeKindName(graph.node(id).kind));
  json.member("name", graph.qualifiedName(id));
  json.optional("language", graph.language(id));
  json.optional("text", graph.expression(id));
  json.close('}');
}

void writeRelation(JsonWriter& json, const LineageGraph& graph, const LineageEdge& edge) {
  json.open('{');
  json.member("kind", edgeKindName(edge.kind));
  json.member("from", graph.qualifiedName(edge.from));
  json.member("to", graph.qualifiedName(edge.to));
  json.optional("text", graph.edgeText(edge));
  json.close('}');
}

void writeSettings(JsonWriter& json, const LineageGraph& graph, NodeId id) {
  for (const auto& [name, value] : graph.settings(id)) {
    json.open('{');
    json.member("of", graph.qualifiedName(id));
    json.member("name", name);
    json.member("value", value);
    json.close('}');
  }
}

}  // namespace

DatasetDefinition definitionOf(const LineageGraph& graph, const CatalogDatasets& datasets, DatasetId id) {
  DatasetDefinition definition;
  const NodeId node = datasets.get(id).node;
  std::vector<NodeId> told{node};
  for (std::size_t next = 0; next < told.size(); ++next)
    for (const NodeId part : graph.partsOf(told[next]))
      if (isOfDetails(graph, part) || datasets.datasetOf(part) == id) told.push_back(part);
  for (const NodeId one : told) {
    if (isOfDetails(graph, one)) definition.objects.push_back(one);
    for (const LineageEdge& edge : graph.into(one))
      if (isTold(edge.kind)) definition.relations.push_back(edge);
    if (!graph.settings(one).empty()) definition.settings.push_back(one);
  }
  return definition;
}

void writeDefinition(JsonWriter& json, const LineageGraph& graph, const DatasetDefinition& definition) {
  writeList(json, "objects", definition.objects, [&](NodeId id) { writeObject(json, graph, id); });
  writeList(json, "relations", definition.relations,
            [&](const LineageEdge& edge) { writeRelation(json, graph, edge); });
  writeList(json, "settings", definition.settings, [&](NodeId id) { writeSettings(json, graph, id); });
}

}  // namespace tav
