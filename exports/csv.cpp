#include <filesystem>

#include "exports/csv_text.h"
#include "exports/formats.h"
#include "exports/node_rows.h"
#include "framework/serialization/replacing_file.h"
#include "framework/std/mask.h"
#include "messages/message.h"

namespace tav {
namespace {

constexpr std::string_view kExtension = ".csv";
constexpr std::size_t kFlushSize = std::size_t{1} << 16;

/// A table that becomes a file.
class CsvFile {
 public:
  explicit CsvFile(const std::string& path) : file_(TAVString(path)) {}

  void cell(std::string_view value) { csv_.cell(value); }

  void flag(bool value) { cell(value ? "1" : "0"); }
  void number(NodeId value) { cell(value == kNoNode ? std::string() : std::to_string(value)); }

  void endRow() {
    csv_.endRow();
    if (text_.size() >= kFlushSize) flush();
  }

  /// Hands everything to the system, so that a full disk shows before any file is put in place.
  void finish() {
    flush();
    file_.stream().flush();
  }
  void commit() { file_.commit(); }

 private:
  void flush() {
    file_.stream().write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  ReplacingFile file_;
  std::string text_;
  CsvText csv_{text_};
};

class CsvExport {
 public:
  CsvExport(const LineageGraph& graph, const std::string& input)
      : graph_(graph), source_(maskPasswords(input)), model_(graph.modelName()) {}

  void writeNodes(CsvFile& file) {
    for (const std::string_view name : {"source", "model", "id", "owner", "cube"}) file.cell(name);
    for (const std::string_view name : kNodeColumns) file.cell(name);
    file.endRow();
    const NodeRows rows(graph_);
    paths_.reserve(graph_.nodes().size());
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      NodeRow row = rows.row(id);
      beginRow(file);
      file.number(id);
      file.number(graph_.node(id).owner);
      file.number(graph_.cubeOf(id));
      for (const std::string& text : row) file.cell(text);
      file.endRow();
      paths_.push_back(std::move(row[kPathColumn]));
    }
  }

  void writeEdges(CsvFile& file) const {
    for (const std::string_view name : {"source", "model", "from", "to", "kind", "words", "text",
                                        "gives_value", "found_by_graph", "replaces", "from_path", "to_path"})
      file.cell(name);
    file.endRow();
    for (const LineageEdge& edge : graph_.edges()) {
      beginRow(file);
      file.number(edge.from);
      file.number(edge.to);
      file.cell(edgeKindName(edge.kind));
      file.cell(rowOf(edge.kind).downstream);
      file.cell(graph_.edgeText(edge));
      file.flag(givesValue(edge.kind));
      file.flag(edge.foundByGraph);
      file.flag(edge.replaces);
      file.cell(paths_[edge.from]);
      file.cell(paths_[edge.to]);
      file.endRow();
    }
  }

  void writeSettings(CsvFile& file) const {
    for (const std::string_view name : {"source", "model", "node", "path", "name", "value"}) file.cell(name);
    file.endRow();
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      for (const auto& [name, value] : graph_.settings(id)) {
        beginRowOf(id, file);
        file.cell(name);
        file.cell(value);
        file.endRow();
      }
    }
  }

  void writeOpenNames(CsvFile& file) const {
    for (const std::string_view name : {"source", "model", "node", "path", "name", "state", "note"})
      file.cell(name);
    file.endRow();
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      for (const OpenNameText& name : graph_.openNames(id)) {
        beginRowOf(id, file);
        file.cell(name.name);
        file.cell(openNameStateText(name.state));
        file.cell(name.note);
        file.endRow();
      }
    }
  }

 private:
  void beginRow(CsvFile& file) const {
    file.cell(source_);
    file.cell(model_);
  }

  void beginRowOf(NodeId id, CsvFile& file) const {
    beginRow(file);
    file.number(id);
    file.cell(paths_[id]);
  }

  const LineageGraph& graph_;
  std::string source_;
  std::string model_;
  std::vector<std::string> paths_;  // by node
};

std::string besides(const std::string& path, std::string_view table, const std::string& input) {
  std::string name = path;
  if (name.ends_with(kExtension)) name.resize(name.size() - kExtension.size());
  name.append(".").append(table).append(kExtension);
  std::error_code error;
  if (std::filesystem::equivalent(name, input, error)) fail(Message::inputWouldBeReplaced, {name});
  return name;
}

void exportCsv(const DetailedModel& model, const ExportOptions& options, const std::string& path) {
  CsvFile nodes(besides(path, "nodes", options.input));
  CsvFile edges(besides(path, "edges", options.input));
  CsvFile settings(besides(path, "settings", options.input));
  CsvFile openNames(besides(path, "open_names", options.input));
  const LineageGraph graph(model);
  CsvExport tables(graph, options.input);
  tables.writeNodes(nodes);
  tables.writeEdges(edges);
  tables.writeSettings(settings);
  tables.writeOpenNames(openNames);
  for (CsvFile* file : {&nodes, &edges, &settings, &openNames}) file->finish();
  for (CsvFile* file : {&nodes, &edges, &settings, &openNames}) file->commit();
}

}  // namespace

extern const ExportFormat kCsvFormat{.name = "csv",
                                     .description =
                                         "the lineage as tables: OUT.nodes.csv, OUT.edges.csv, "
                                         "OUT.settings.csv, OUT.open_names.csv",
                                     .writeFiles = exportCsv};

}  // namespace tav
