#include <array>
#include <filesystem>

#include "exports/csv_text.h"
#include "exports/formats.h"
#include "exports/node_rows.h"
#include "framework/serialization/replacing_file.h"
#include "framework/std/mask.h"
#include "framework/std/sha256.h"
#include "messages/message.h"

namespace tav {
namespace {

constexpr std::string_view kExtension = ".csv";
constexpr std::size_t kFlushSize = std::size_t{1} << 16;

/// A table that becomes a file.
class CsvFile {
 public:
  explicit CsvFile(const std::string& path)
      : name_(std::filesystem::path(path).filename().string()), file_(TAVString(path)) {}

  void cell(std::string_view value) { csv_.cell(value); }

  void flag(bool value) { cell(value ? "1" : "0"); }
  void number(NodeId value) { cell(value == kNoNode ? std::string() : std::to_string(value)); }

  void endRow() {
    csv_.endRow();
    if (text_.size() >= kFlushSize) flush();
  }

  /// The line by which sha256sum knows the whole file.
  std::string finish() {
    flush();
    return sum_.finish() + "  " + name_ + "\n";
  }
  ReplacingFile& file() { return file_; }

 private:
  void flush() {
    file_.stream().write(text_.data(), static_cast<std::streamsize>(text_.size()));
    sum_.add(text_);
    text_.clear();
  }

  std::string name_;
  ReplacingFile file_;
  Sha256 sum_;
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

std::string besides(const std::string& path, std::string_view ending, const std::string& input) {
  std::string name = path;
  if (name.ends_with(kExtension)) name.resize(name.size() - kExtension.size());
  name.append(ending);
  std::error_code error;
  if (std::filesystem::equivalent(name, input, error)) fail(Message::inputWouldBeReplaced, {name});
  return name;
}

/// The tables are replaced together. Nothing can do that in one step: the sums, which come last, tell whether
/// a process that was killed in between has left tables of two exports.
void exportCsv(const DetailedModel& model, const ExportOptions& options, const std::string& path) {
  CsvFile nodes(besides(path, ".nodes.csv", options.input));
  CsvFile edges(besides(path, ".edges.csv", options.input));
  CsvFile settings(besides(path, ".settings.csv", options.input));
  CsvFile openNames(besides(path, ".open_names.csv", options.input));
  ReplacingFile sums(TAVString(besides(path, ".sha256", options.input)));
  const LineageGraph graph(model, options.map);
  CsvExport tables(graph, options.input);
  tables.writeNodes(nodes);
  tables.writeEdges(edges);
  tables.writeSettings(settings);
  tables.writeOpenNames(openNames);
  for (CsvFile* file : {&nodes, &edges, &settings, &openNames}) sums.stream() << file->finish();
  const std::array files{&nodes.file(), &edges.file(), &settings.file(), &openNames.file(), &sums};
  ReplacingFile::commitAll(files);
}

}  // namespace

extern const ExportFormat kCsvFormat{.name = "csv",
                                     .description =
                                         "the lineage as tables: OUT.nodes.csv, OUT.edges.csv, "
                                         "OUT.settings.csv, OUT.open_names.csv, and their sums OUT.sha256",
                                     .writeFiles = exportCsv,
                                     .extension = ".csv"};

}  // namespace tav
