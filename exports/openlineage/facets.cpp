#include "exports/openlineage/facets.h"

#include <algorithm>
#include <array>

#include "exports/openlineage/dataset_inputs.h"
#include "exports/openlineage/definition_facet.h"
#include "exports/openlineage/uri.h"
#include "framework/std/text.h"

namespace tav {

/// A schema of the standard: the name under which a facet stands, and where its form is defined.
struct FacetWriter::Schema {
  std::string_view key;
  std::string_view version;
  std::string_view name;
};

namespace {

constexpr std::string_view kProducer = "urn:xmla-bridge:" XMLA_VERSION;

/// An expression is the description of each of its operands. Beyond this many bytes only the first of them
/// has it whole, so that a long text with many operands is not written as often as it has operands.
constexpr std::size_t kDescriptionSize = 1000;

constexpr DatasetType kUnknownTable{"TABLE", "UNKNOWN_TABLE"};

DatasetType typeOf(NodeKind kind) {
  switch (kind) {
    case NodeKind::viewTable:
      return {"VIEW", "DATA_SOURCE_VIEW_TABLE"};
    case NodeKind::namedQuery:
      return {"VIEW", "NAMED_QUERY"};
    case NodeKind::dimension:
      return {"MODEL", "DIMENSION"};
    case NodeKind::cubeDimension:
      return {"MODEL", "CUBE_DIMENSION"};
    case NodeKind::measureGroup:
      return {"MODEL", "MEASURE_GROUP"};
    case NodeKind::linkedMeasureGroup:
      return {"MODEL", "LINKED_MEASURE_GROUP"};
    case NodeKind::calculations:
      return {"MODEL", "CALCULATED_MEASURES"};
    case NodeKind::kpi:
      return {"MODEL", "KPI"};
    case NodeKind::cube:
      return {"MODEL", "CUBE"};
    case NodeKind::perspective:
      return {"VIEW", "PERSPECTIVE"};
    default:
      return {"TABLE", ""};
  }
}

struct Transformation {
  std::string_view type;
  std::string_view subtype;
};

Transformation transformationOf(EdgeKind kind) {
  switch (kind) {
    case EdgeKind::computed:
      return {"DIRECT", "TRANSFORMATION"};
    case EdgeKind::aggregated:
      return {"DIRECT", "AGGREGATION"};
    case EdgeKind::condition:
      return {"INDIRECT", "FILTER"};
    default:
      return {"DIRECT", "IDENTITY"};
  }
}

std::string shortened(std::string_view text) {
  const std::string_view beginning = beginningOf(text, kDescriptionSize);
  return beginning.size() == text.size() ? std::string(text) : std::string(beginning).append(" ...");
}

std::string_view languageName(std::string_view language) {
  if (language == "mdx") return "MDX";
  if (language == "dax") return "DAX";
  return language == "sql" ? "SQL" : "M";
}

std::string connectionKey(const DatabaseAddress& address) {
  return address.server + '\0' + address.database;
}

}  // namespace

std::string_view lineageProducer() noexcept {
  return kProducer;
}

FacetWriter::FacetWriter(const LineageGraph& graph, const CatalogDatasets& datasets, JsonWriter& json)
    : graph_(graph), datasets_(datasets), json_(json) {
  for (const CatalogDataset& dataset : datasets.all()) {
    std::string& text = references_.emplace_back();
    JsonWriter reference(text);
    reference.member("namespace", dataset.space);
    reference.member("name", dataset.name);
  }
  for (const LineageConnection& connection : graph.connections())
    connections_.try_emplace(connectionKey(connection.address), connection.name);
}

void FacetWriter::writeReference(DatasetId id) {
  json_.raw(references_[id]);
}

void FacetWriter::open(const Schema& schema) {
  json_.open(schema.key, '{');
  json_.member("_producer", kProducer);
  std::string url("https://openlineage.io/spec/facets/");
  url.append(schema.version).append("/").append(schema.name).append(".json#/$defs/").append(schema.name);
  json_.member("_schemaURL", url);
}

void FacetWriter::writeDatasetFacets(DatasetId id) {
  const CatalogDataset& dataset = datasets_.get(id);
  const bool isNode = datasets_.datasetOf(dataset.node) == id;
  json_.open("facets", '{');
  writeType(isNode ? typeOf(graph_.node(dataset.node).kind) : kUnknownTable);
  writeOrigin(dataset);
  if (isNode) writeDescription(dataset.node);
  writeColumns(id);
  if (dataset.made) writeColumnLineage(id);
  if (dataset.made && graph_.details()) writeOwnFacet(id);
  json_.close('}');
}

void FacetWriter::writeType(const DatasetType& type) {
  open({"datasetType", "1-0-1", "DatasetTypeDatasetFacet"});
  json_.member("datasetType", type.type);
  if (!type.subtype.empty()) json_.member("subType", type.subtype);
  json_.close('}');
}

void FacetWriter::writeOrigin(const CatalogDataset& dataset) {
  std::string name = graph_.modelName();
  if (const DatabaseAddress* address = graph_.database(dataset.node)) {
    const auto connection = connections_.find(connectionKey(*address));
    name = connection == connections_.end() ? address->database : connection->second;
  }
  open({"dataSource", "1-0-1", "DatasourceDatasetFacet"});
  json_.member("name", name.empty() ? dataset.space : name);
  if (isUri(dataset.space)) json_.member("uri", dataset.space);
  json_.close('}');
}

void FacetWriter::writeDescription(NodeId node) {
  const std::string description = graph_.description(datasets_.describing(node));
  if (description.empty()) return;
  open({"documentation", "1-1-0", "DocumentationDatasetFacet"});
  json_.member("description", description);
  json_.close('}');
}

void FacetWriter::writeColumns(DatasetId id) {
  const CatalogDataset& dataset = datasets_.get(id);
  if (dataset.fields.empty()) return;
  open({"schema", "1-2-0", "SchemaDatasetFacet"});
  json_.open("fields", '[');
  for (const NodeId field : dataset.fields) {
    json_.open('{');
    json_.member("name", datasets_.fieldName(id, field));
    const NodeId described = datasets_.describing(field);
    const std::string type = graph_.typeName(described);
    if (!type.empty()) json_.member("type", type);
    const std::string description = graph_.description(described);
    if (!description.empty()) json_.member("description", description);
    json_.close('}');
  }
  json_.close(']');
  json_.close('}');
}

/// A perspective takes over what it shows.
void FacetWriter::writeColumnLineage(DatasetId id) {
  const CatalogDataset& dataset = datasets_.get(id);
  open({"columnLineage", "1-2-0", "ColumnLineageDatasetFacet"});
  json_.open("fields", '{');
  for (const NodeId field : dataset.fields) {
    const bool isOwn = datasets_.datasetOf(field) == id;
    const std::vector<FieldSource> sources =
        isOwn ? feedingFields(graph_, datasets_, field) : std::vector<FieldSource>{{field, EdgeKind::direct}};
    if (!sources.empty()) writeInputFields(datasets_.fieldName(id, field), field, sources);
  }
  json_.close('}');
  writeConditions(dataset);
  json_.close('}');
}

void FacetWriter::writeInputFields(const std::string& name, NodeId field,
                                   const std::vector<FieldSource>& sources) {
  std::string expression = graph_.expression(field);
  json_.open(name, '{');
  json_.open("inputFields", '[');
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (i == 1) expression = shortened(expression);
    writeInputField(sources[i], field, expression);
  }
  json_.close(']');
  json_.close('}');
}

void FacetWriter::writeInputField(const FieldSource& source, NodeId to, std::string_view expression) {
  json_.open('{');
  const DatasetId dataset = datasets_.datasetOf(source.node);
  writeReference(dataset);
  json_.member("field", datasets_.fieldName(dataset, source.node));
  json_.open("transformations", '[');
  json_.open('{');
  const Transformation transformation = transformationOf(source.kind);
  json_.member("type", transformation.type);
  json_.member("subtype", transformation.subtype);
  const std::string_view aggregation =
      source.kind == EdgeKind::aggregated ? graph_.aggregation(to) : std::string_view();
  const std::string_view description = aggregation.empty() ? expression : aggregation;
  if (source.kind != EdgeKind::direct && !description.empty()) json_.member("description", description);
  json_.close('}');
  json_.close(']');
  json_.close('}');
}

/// What decides which rows a named query takes concerns all of its columns alike.
void FacetWriter::writeConditions(const CatalogDataset& dataset) {
  bool isOpen = false;
  for (const NodeId part : graph_.partsOf(dataset.node)) {
    if (graph_.node(part).kind != NodeKind::condition) continue;
    std::string expression = graph_.expression(part);
    const std::vector<FieldSource> sources = feedingFields(graph_, datasets_, part);
    if (!sources.empty() && !isOpen) json_.open("dataset", '[');
    isOpen = isOpen || !sources.empty();
    for (std::size_t i = 0; i < sources.size(); ++i) {
      if (i == 1) expression = shortened(expression);
      writeInputField(sources[i], part, expression);
    }
  }
  if (isOpen) json_.close(']');
}

void FacetWriter::writeOwnFacet(DatasetId id) {
  const DatasetDefinition definition = definitionOf(graph_, datasets_, id);
  if (definition.empty()) return;
  json_.open(kDefinitionFacet, '{');
  json_.member("_producer", kProducer);
  json_.member("_schemaURL", kDefinitionFacetSchema);
  writeDefinition(json_, graph_, definition);
  json_.close('}');
}

void FacetWriter::writeJobFacets(DatasetId id) {
  const CatalogDataset& dataset = datasets_.get(id);
  const NodeKind kind = graph_.node(dataset.node).kind;
  json_.open("facets", '{');
  open({"jobType", "2-0-4", "JobTypeJobFacet"});
  json_.member("processingType", "BATCH");
  json_.member("integration", "SSAS");
  json_.member("jobType", kind == NodeKind::namedQuery ? "QUERY" : "MODEL");
  json_.close('}');
  if (kind == NodeKind::namedQuery)
    writeQuery(dataset.node);
  else
    writeExpressions(id);
  json_.close('}');
}

void FacetWriter::writeQuery(NodeId query) {
  const std::string text = graph_.expression(query);
  if (text.empty()) return;
  const std::string_view language = graph_.language(query);
  if (language == "sql") {
    open({"sql", "1-1-0", "SQLJobFacet"});
    json_.member("query", text);
  } else {
    open({"sourceCode", "1-0-1", "SourceCodeJobFacet"});
    json_.member("language", languageName(language));
    json_.member("sourceCode", text);
  }
  json_.close('}');
}

/// The expressions of a dataset's fields one below the other, each behind the name of what it computes.
void FacetWriter::writeExpressions(DatasetId id) {
  std::string text;
  std::string_view language;
  for (const NodeId field : datasets_.get(id).fields) {
    if (datasets_.datasetOf(field) != id) continue;
    const std::string expression = graph_.expression(field);
    if (expression.empty()) continue;
    language = graph_.language(field);
    if (!text.empty()) text += "\n\n";
    text.append(graph_.qualifiedName(field)).append(" = ").append(expression);
    if (language == "mdx" && text.back() != ';') text += ';';
  }
  if (text.empty()) return;
  open({"sourceCode", "1-0-1", "SourceCodeJobFacet"});
  json_.member("language", languageName(language));
  json_.member("sourceCode", text);
  json_.close('}');
}

}  // namespace tav
