#include "report/report.h"

#include <array>

#include "framework/std/json_writer.h"
#include "framework/std/mask.h"
#include "lineage/coverage.h"
#include "lineage/gap_reason.h"

namespace tav {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 16;

/// What the page makes of "r".
constexpr int kNoColumn = 0;
constexpr int kColumn = 1;

bool leadsSomewhere(NodeKind kind) {
  switch (kind) {
    case NodeKind::attribute:
    case NodeKind::measure:
    case NodeKind::linkedMeasure:
    case NodeKind::calculatedMeasure:
    case NodeKind::kpiValue:
    case NodeKind::cubeAttribute:
    case NodeKind::cubeMeasure:
      return true;
    default:
      return false;
  }
}

std::string_view fileName(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == path.npos ? path : path.substr(slash + 1);
}

class DataWriter {
 public:
  DataWriter(const LineageGraph& graph, std::string_view program, std::ostream& out)
      : graph_(graph),
        program_(program),
        coverage_(measureCoverage(graph)),
        reached_(graph.tracedBack()),
        out_(out) {}

  void write() {
    json_.begin('{');
    head();
    counts();
    vocabulary();
    nodes();
    edges();
    hierarchies();
    dataSources();
    coverage();
    json_.close('}');
    text_ += '\n';
    flush();
  }

 private:
  void head() {
    json_.member("format", "xmla-report/1");
    json_.member("program", program_);
    json_.member("database", graph_.modelName());
    const TAVMetadataOrigin* origin = graph_.model().metadataOrigins.first();
    json_.member("source", origin ? maskPasswords(fileName(origin->path)) : std::string());
    json_.member("dialect", graph_.isTabular() ? "tabular" : "multidimensional");
  }

  void counts() {
    std::array<std::size_t, kNodeKindCount> kinds{};
    for (const LineageNode& node : graph_.nodes()) ++kinds[static_cast<std::size_t>(node.kind)];
    const auto of = [&](NodeKind kind) { return kinds[static_cast<std::size_t>(kind)]; };
    json_.open("counts", '[');
    count("Data sources", static_cast<std::size_t>(graph_.model().storeConnections.getCount()));
    count("Tables", of(NodeKind::viewTable) + of(NodeKind::namedQuery));
    count("Columns", of(NodeKind::viewColumn) + of(NodeKind::computedColumn));
    count("Dimensions", of(NodeKind::dimension));
    count("Attributes", of(NodeKind::attribute));
    count("Cubes", of(NodeKind::cube));
    count("Perspectives", of(NodeKind::perspective));
    count("Measures", of(NodeKind::measure));
    count("Calculated measures", of(NodeKind::calculatedMeasure));
    count("KPIs", of(NodeKind::kpi));
    count("Unresolved references", coverage_.namesThat(OpenNameState::mistake));
    json_.close(']');
  }
  void count(std::string_view label, std::size_t number) {
    json_.open('[');
    json_.value(label);
    json_.value(number);
    json_.close(']');
  }

  void vocabulary() {
    json_.open("kinds", '[');
    for (std::size_t i = 0; i < kNodeKindCount; ++i) json_.value(nodeKindName(static_cast<NodeKind>(i)));
    json_.close(']');
    json_.open("edgeKinds", '[');
    for (std::size_t i = 0; i < kEdgeKindCount; ++i) json_.value(edgeKindName(static_cast<EdgeKind>(i)));
    json_.close(']');
  }

  void nodes() {
    json_.open("nodes", '[');
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      json_.line();
      node(id);
      if (text_.size() >= kFlushSize) flush();
    }
    json_.close(']');
  }

  void node(NodeId id) {
    const LineageNode& at = graph_.node(id);
    json_.open('{');
    json_.member("k", static_cast<unsigned>(at.kind));
    json_.member("n", graph_.name(id));
    if (at.owner != kNoNode) json_.member("o", at.owner);
    json_.optional("q", graph_.qualifiedName(id));
    json_.optional("p", graph_.path(id));
    json_.optional("e", graph_.expression(id));
    json_.optional("l", graph_.language(id));
    json_.optional("a", graph_.aggregation(id));
    if (at.object) object(id);
    unresolved(id);
    if (leadsSomewhere(at.kind)) reach(id);
    json_.close('}');
  }

  void object(NodeId id) {
    json_.optional("d", graph_.description(id));
    json_.optional("t", graph_.typeName(id));
    const auto* measure = as<TAVMeasure>(graph_.node(id).object);
    if (measure && measure->hidden) json_.member("h", 1);
    if (is<TAVTable>(*graph_.node(id).object)) json_.optional("v", graph_.packageName(id));
    properties(id);
  }

  void properties(NodeId id) {
    const auto properties = graph_.properties(id);
    if (properties.empty()) return;
    json_.open("x", '{');
    for (const auto& [name, value] : properties) json_.member(name, value);
    json_.close('}');
  }

  void unresolved(NodeId id) {
    const std::vector<std::string> names = graph_.unresolved(id);
    if (names.empty()) return;
    json_.open("u", '[');
    for (const std::string& name : names) json_.value(name);
    json_.close(']');
  }

  void reach(NodeId id) {
    json_.member("r", reached_[id] ? kColumn : kNoColumn);
    if (!reached_[id]) json_.optional("w", gapReason(graph_, id));
  }

  /// Four numbers each, without a list around them: there are many.
  void edges() {
    json_.open("edges", '[');
    for (const LineageEdge& edge : graph_.edges()) {
      json_.value(edge.from);
      json_.value(edge.to);
      json_.value(static_cast<unsigned>(edge.kind));
      json_.value(edge.foundByGraph ? 1 : 0);
      if (text_.size() >= kFlushSize) flush();
    }
    json_.close(']');
  }

  void hierarchies() {
    json_.open("hierarchies", '[');
    for (NodeId id = 0; id < graph_.nodes().size(); ++id)
      for (const LineageHierarchy& one : graph_.hierarchies(id)) hierarchy(id, one);
    json_.close(']');
  }
  void hierarchy(NodeId dimension, const LineageHierarchy& hierarchy) {
    json_.open('{');
    json_.member("o", dimension);
    json_.member("n", hierarchy.name);
    json_.open("l", '[');
    for (const LineageHierarchy::Level& level : hierarchy.levels) {
      json_.open('[');
      json_.value(level.name);
      json_.value(level.attribute == kNoNode ? -1 : static_cast<std::int64_t>(level.attribute));
      json_.close(']');
    }
    json_.close(']');
    json_.close('}');
  }

  void dataSources() {
    json_.open("dataSources", '[');
    for (const LineageConnection& connection : graph_.connections()) {
      json_.open('{');
      json_.member("n", connection.name);
      json_.optional("s", connection.address.server);
      json_.optional("d", connection.address.database);
      json_.optional("c", connection.connectionString);
      json_.close('}');
    }
    json_.close(']');
  }

  /// The database as a whole has the attributes of its dimensions, and the measures of all its cubes.
  void coverage() {
    json_.open("coverage", '[');
    CoverageCount attributes;
    CoverageCount measures;
    for (const CubeCoverage& cube : coverage_.cubes) {
      if (cube.cube == kNoNode) attributes = cube.attributes;
      measures.count += cube.measures.count;
      measures.reached += cube.measures.reached;
      measures.rowCounts += cube.measures.rowCounts;
    }
    covered(-1, attributes, measures);
    for (const CubeCoverage& cube : coverage_.cubes)
      if (cube.cube != kNoNode) covered(cube.cube, cube.attributes, cube.measures);
    json_.close(']');
  }
  void covered(std::int64_t cube, const CoverageCount& attributes, const CoverageCount& measures) {
    json_.open('{');
    json_.member("n", cube);
    json_.open("a", '[');
    figures(attributes);
    json_.close(']');
    json_.open("m", '[');
    figures(measures);
    json_.value(measures.rowCounts);
    json_.close(']');
    json_.close('}');
  }
  void figures(const CoverageCount& count) {
    for (const std::size_t figure : {count.count, count.reached, count.reached}) json_.value(figure);
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  const LineageGraph& graph_;
  std::string_view program_;
  Coverage coverage_;
  std::vector<bool> reached_;
  std::ostream& out_;
  std::string text_;  // what is not yet handed to the stream
  JsonWriter json_{text_, true};
};

}  // namespace

void writeReportData(const LineageGraph& graph, std::string_view program, std::ostream& out) {
  DataWriter(graph, program, out).write();
}

void writeReport(const LineageGraph& graph, std::string_view program, std::ostream& out) {
  const std::string_view page = reportPage();
  const std::size_t place = page.find(reportPlaceholder());
  out << page.substr(0, place);
  writeReportData(graph, program, out);
  out << page.substr(place + reportPlaceholder().size());
}

}  // namespace tav
