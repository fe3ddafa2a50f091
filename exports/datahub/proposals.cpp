#include "exports/datahub/names.h"
#include "exports/openlineage/dataset_inputs.h"
#include "exports/openlineage/event_time.h"
#include "exports/utc_time.h"
#include "framework/std/json_writer.h"
#include "framework/types/type_names.h"

namespace tav {
namespace {

constexpr std::string_view kActor = "urn:li:corpuser:unknown";
constexpr std::string_view kUnknownType = "unknown";

/// The class that DataHub has for a type of the model.
std::string_view typeClass(std::string_view dataType) {
  if (dataType == "BOOLEAN") return "BooleanType";
  if (dataType == "CHAR" || dataType == "VARCHAR") return "StringType";
  if (dataType == "BINARY" || dataType == "VARBINARY") return "BytesType";
  if (dataType == "DATE" || dataType == "TIMESTAMP") return "DateType";
  if (dataType == "TIME") return "TimeType";
  return dataType.empty() || !isTypeName(dataType) ? "NullType" : "NumberType";
}

/// How a data set comes from those that feed it.
std::string_view upstreamType(NodeKind kind) {
  if (kind == NodeKind::cubeDimension) return "COPY";
  const bool isView =
      kind == NodeKind::viewTable || kind == NodeKind::namedQuery || kind == NodeKind::perspective;
  return isView ? "VIEW" : "TRANSFORMED";
}

std::string_view languageName(std::string_view language) {
  if (language == "sql") return "SQL";
  return language == "m" ? "M" : "DAX";
}

/// Writes the proposals of a model as one list, a line each.
class ProposalWriter {
 public:
  ProposalWriter(const LineageGraph& graph, const CatalogDatasets& datasets, const ExportOptions& options,
                 std::int64_t time, std::ostream& out)
      : graph_(graph),
        datasets_(datasets),
        options_(options),
        names_(graph, datasets, options),
        inputs_(graph, datasets),
        time_(time),
        out_(out) {}

  void write() {
    out_ << '[';
    writePlatforms();
    writeContainers();
    for (DatasetId id = 0; id < datasets_.all().size(); ++id)
      if (isDescribed(datasets_.get(id))) writeDataset(id);
    out_ << "\n]\n";
  }

 private:
  /// Whether a data set is ours to describe: nobody else writes what the model makes, but a table of a
  /// database may be described by one who knows all of its columns.
  [[nodiscard]] bool isDescribed(const CatalogDataset& dataset) const {
    return dataset.made || dataset.space == options_.server || options_.datahub.describesTables;
  }
  /// Whether the node of a data set is the data set, and not the query that reads its columns.
  [[nodiscard]] bool isNode(DatasetId id) const { return datasets_.datasetOf(datasets_.get(id).node) == id; }

  template <class Fill>
  void propose(std::string_view type, const std::string& urn, std::string_view name, const Fill& fill) {
    aspect_.clear();
    json_.begin('{');
    fill();
    json_.close('}');
    line_.clear();
    line_ += isFirst_ ? "\n" : ",\n";
    isFirst_ = false;
    JsonWriter proposal(line_);
    proposal.begin('{');
    proposal.member("entityType", type);
    proposal.member("entityUrn", urn);
    proposal.member("changeType", "UPSERT");
    proposal.member("aspectName", name);
    proposal.open("aspect", '{');
    proposal.member("value", aspect_);
    proposal.member("contentType", "application/json");
    proposal.close('}');
    proposal.close('}');
    out_ << line_;
  }

  void writePlatforms() {
    std::unordered_set<std::string> told;
    writePlatform(names_.platform(options_.server), told);
    for (const CatalogDataset& dataset : datasets_.all()) writePlatform(names_.platform(dataset.space), told);
  }

  void writePlatform(const DatahubPlatform& platform, std::unordered_set<std::string>& told) {
    if (platform.title.empty() || !told.insert(platform.name).second) return;
    propose("dataPlatform", platformUrn(platform), "dataPlatformInfo", [&] {
      json_.member("name", platform.name);
      json_.member("displayName", platform.title);
      json_.member("type", "OTHERS");
      json_.member("datasetNameDelimiter", platform.delimiter);
    });
  }

  void writeContainers() {
    writeContainer(names_.container(), graph_.modelName(), "Database", {});
    for (NodeId id = 0; id < graph_.nodes().size(); ++id)
      if (graph_.node(id).kind == NodeKind::cube)
        writeContainer(names_.container(id), graph_.name(id), "Cube", names_.container());
  }

  void writeContainer(const std::string& urn, const std::string& name, std::string_view type,
                      const std::string& parent) {
    propose("container", urn, "containerProperties", [&] {
      json_.member("name", name.empty() ? "(unnamed)" : name);
      json_.open("customProperties", '{');
      json_.member("server", options_.server);
      json_.close('}');
    });
    writeSubType("container", urn, type);
    writeInstance("container", urn, options_.server);
    if (!parent.empty()) writeParent("container", urn, parent);
  }

  void writeSubType(std::string_view entity, const std::string& urn, std::string_view type) {
    propose(entity, urn, "subTypes", [&] {
      json_.open("typeNames", '[');
      json_.value(type);
      json_.close(']');
    });
  }

  void writeInstance(std::string_view entity, const std::string& urn, std::string_view space) {
    const DatahubPlatform& platform = names_.platform(space);
    const std::string_view instance = names_.instance(space);
    propose(entity, urn, "dataPlatformInstance", [&] {
      json_.member("platform", platformUrn(platform));
      if (!instance.empty()) json_.member("instance", instanceUrn(platform, instance));
    });
  }

  void writeParent(std::string_view entity, const std::string& urn, const std::string& parent) {
    propose(entity, urn, "container", [&] { json_.member("container", parent); });
  }

  void writeDataset(DatasetId id) {
    const CatalogDataset& dataset = datasets_.get(id);
    const std::string& urn = names_.dataset(id);
    writeProperties(id);
    writeSubType("dataset", urn, isNode(id) ? typeName(dataset.node) : "Unknown Table");
    propose("dataset", urn, "status", [&] { json_.member("removed", false); });
    writeInstance("dataset", urn, dataset.space);
    if (dataset.space == options_.server)
      writeParent("dataset", urn, names_.container(graph_.cubeOf(dataset.node)));
    if (!dataset.fields.empty()) writeSchema(id);
    if (isNode(id) && graph_.node(dataset.node).kind == NodeKind::namedQuery) writeView(id);
    if (dataset.made) writeLineage(id);
  }

  [[nodiscard]] std::string typeName(NodeId node) const {
    std::string text(nodeKindLabel(graph_.node(node).kind));
    for (std::size_t i = 0; i < text.size(); ++i)
      if ((i == 0 || text[i - 1] == ' ') && text[i] >= 'a' && text[i] <= 'z')
        text[i] = static_cast<char>(text[i] - 'a' + 'A');
    return text;
  }

  void writeProperties(DatasetId id) {
    const CatalogDataset& dataset = datasets_.get(id);
    propose("dataset", names_.dataset(id), "datasetProperties", [&] {
      const std::string name = isNode(id) ? graph_.name(dataset.node) : dataset.name;
      json_.member("name", name.empty() ? dataset.name : name);
      json_.member("qualifiedName", dataset.name);
      if (isNode(id)) json_.optional("description", graph_.description(datasets_.describing(dataset.node)));
      json_.open("customProperties", '{');
      json_.member("server", dataset.space);
      json_.close('}');
    });
  }

  void writeSchema(DatasetId id) {
    const CatalogDataset& dataset = datasets_.get(id);
    propose("dataset", names_.dataset(id), "schemaMetadata", [&] {
      json_.member("schemaName", dataset.name);
      json_.member("platform", platformUrn(names_.platform(dataset.space)));
      json_.member("version", 0);
      json_.member("hash", "");
      json_.raw("platformSchema", R"({"com.linkedin.schema.OtherSchema":{"rawSchema":""}})");
      json_.open("fields", '[');
      for (const NodeId field : dataset.fields) writeField(id, field);
      json_.close(']');
    });
  }

  void writeField(DatasetId id, NodeId field) {
    const NodeId described = datasets_.describing(field);
    const std::string native = graph_.typeName(described);
    json_.open('{');
    json_.member("fieldPath", datasets_.fieldName(id, field));
    json_.member("nativeDataType", native.empty() ? kUnknownType : std::string_view(native));
    json_.open("type", '{');
    json_.open("type", '{');
    json_.raw(std::string("com.linkedin.schema.").append(typeClass(graph_.dataType(described))), "{}");
    json_.close('}');
    json_.close('}');
    json_.member("nullable", true);
    json_.member("recursive", false);
    json_.optional("description", graph_.description(described));
    json_.optional("jsonProps", fieldProperties(field));
    json_.close('}');
  }

  /// What DataHub has no place for: the kind of a field, and what computes it.
  [[nodiscard]] std::string fieldProperties(NodeId field) const {
    std::string text;
    JsonWriter json(text);
    json.begin('{');
    json.member("kind", nodeKindName(graph_.node(field).kind));
    json.optional("aggregation", graph_.aggregation(field));
    json.optional("expression", graph_.expression(field));
    json.close('}');
    return text;
  }

  void writeView(DatasetId id) {
    const NodeId query = datasets_.get(id).node;
    const std::string text = graph_.expression(query);
    if (text.empty()) return;
    propose("dataset", names_.dataset(id), "viewProperties", [&] {
      json_.member("materialized", false);
      json_.member("viewLogic", text);
      json_.member("viewLanguage", languageName(graph_.language(query)));
    });
  }

  void writeLineage(DatasetId id) {
    const std::vector<DatasetId> inputs = inputs_.of(id);
    if (inputs.empty()) return;
    const CatalogDataset& dataset = datasets_.get(id);
    const std::string_view type = upstreamType(graph_.node(dataset.node).kind);
    propose("dataset", names_.dataset(id), "upstreamLineage", [&] {
      json_.open("upstreams", '[');
      for (const DatasetId input : inputs) writeUpstream(input, type);
      json_.close(']');
      json_.open("fineGrainedLineages", '[');
      for (const NodeId field : dataset.fields) writeFieldLineage(id, field);
      json_.close(']');
    });
  }

  void writeUpstream(DatasetId input, std::string_view type) {
    json_.open('{');
    json_.member("dataset", names_.dataset(input));
    json_.member("type", type);
    json_.open("auditStamp", '{');
    json_.member("time", time_);
    json_.member("actor", kActor);
    json_.close('}');
    json_.close('}');
  }

  /// A perspective takes over what it shows.
  void writeFieldLineage(DatasetId id, NodeId field) {
    const bool isOwn = datasets_.datasetOf(field) == id;
    const std::vector<FieldSource> sources =
        isOwn ? feedingFields(graph_, datasets_, field) : std::vector<FieldSource>{{field, EdgeKind::direct}};
    for (const EdgeKind kind : {EdgeKind::aggregated, EdgeKind::computed})
      writeOperation(id, field, sources, kind);
    writeOperation(id, field, sources, EdgeKind::direct);
  }

  /// The sources that feed a field in one way. What neither aggregates nor computes takes over.
  void writeOperation(DatasetId id, NodeId field, const std::vector<FieldSource>& sources, EdgeKind kind) {
    bool isOpen = false;
    for (const FieldSource& source : sources) {
      const bool isNamed = source.kind == EdgeKind::aggregated || source.kind == EdgeKind::computed;
      if (source.kind == EdgeKind::condition || (isNamed ? source.kind : EdgeKind::direct) != kind) continue;
      if (!isOpen) openOperation();
      isOpen = true;
      json_.value(names_.field(datasets_.datasetOf(source.node), source.node));
    }
    if (isOpen) closeOperation(id, field, kind);
  }

  void openOperation() {
    json_.open('{');
    json_.member("upstreamType", "FIELD_SET");
    json_.open("upstreams", '[');
  }

  void closeOperation(DatasetId id, NodeId field, EdgeKind kind) {
    json_.close(']');
    json_.member("downstreamType", "FIELD");
    json_.open("downstreams", '[');
    json_.value(names_.field(id, field));
    json_.close(']');
    json_.member("transformOperation", operationText(field, kind));
    json_.raw("confidenceScore", "1.0");
    json_.close('}');
  }

  [[nodiscard]] std::string operationText(NodeId field, EdgeKind kind) const {
    if (kind == EdgeKind::direct) return "IDENTITY";
    std::string text = kind == EdgeKind::aggregated ? "AGGREGATION" : "TRANSFORMATION";
    std::string said(kind == EdgeKind::aggregated ? graph_.aggregation(field) : std::string_view());
    if (said.empty()) said = graph_.expression(field);
    return said.empty() ? text : text.append(": ").append(said);
  }

  const LineageGraph& graph_;
  const CatalogDatasets& datasets_;
  const ExportOptions& options_;
  DatahubNames names_;
  DatasetInputs inputs_;
  std::int64_t time_;  // in milliseconds
  std::ostream& out_;
  std::string aspect_;
  JsonWriter json_{aspect_};
  std::string line_;
  bool isFirst_ = true;
};

}  // namespace

extern const ExportFormat kDatahubFormat{
    .name = "datahub",
    .description = "proposals for the file source of DataHub: data sets, fields, lineage",
    .write =
        [](const DetailedModel& model, const ExportOptions& options, std::ostream& out) {
          const LineageGraph graph(model, options.map);
          const CatalogDatasets datasets(graph, options.server);
          const std::string time = eventTime(model.model, options);
          ProposalWriter(graph, datasets, options, utcSeconds(time) * 1000, out).write();
        },
    .extension = ".datahub.json"};

}  // namespace tav
