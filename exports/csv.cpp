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
    for (const std::string_view name :
         {"source", "model", "from", "to", "kind", "found_by_graph", "from_path", "to_path"})
      file.cell(name);
    file.endRow();
    for (const LineageEdge& edge : graph_.edges()) {
      beginRow(file);
      file.number(edge.from);
      file.number(edge.to);
      file.cell(edgeKindName(edge.kind));
      file.cell(edge.foundByGraph ? "1" : "0");
      file.cell(paths_[edge.from]);
      file.cell(paths_[edge.to]);
      file.endRow();
    }
  }

 private:
  void beginRow(CsvFile& file) const {
    file.cell(source_);
    file.cell(model_);
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
  const LineageGraph graph(model);
  CsvExport tables(graph, options.input);
  tables.writeNodes(nodes);
  tables.writeEdges(edges);
  nodes.finish();
  edges.finish();
  nodes.commit();
  edges.commit();
}

}  // namespace

extern const ExportFormat kCsvFormat{.name = "csv",
                                     .description =
                                         "nodes and edges of the lineage as two tables, "
                                         "OUT.nodes.csv and OUT.edges.csv",
                                     .writeFiles = exportCsv};

}  // namespace tav
