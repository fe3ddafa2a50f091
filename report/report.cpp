#include "report/report.h"

#include <array>

#include "framework/std/json_text.h"
#include "framework/std/mask.h"
#include "lineage/coverage.h"

namespace tav {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 16;

/// What the page makes of "r".
constexpr char kNoColumn = '0';
constexpr char kColumn = '1';
constexpr char kColumnByGraph = '2';

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
        reached_(graph.tracedBack(true)),
        byModel_(graph.tracedBack(false)),
        out_(out) {}

  void write() {
    head();
    counts();
    vocabulary();
    nodes();
    edges();
    hierarchies();
    dataSources();
    coverage();
    text_ += "}\n";
    flush();
  }

 private:
  void head() {
    text_ = R"({"format":"xmla-report/1")";
    given("program", program_);
    given("database", graph_.modelName());
    const TAVMetadataOrigin* origin = graph_.model().metadataOrigins.first();
    given("source", origin ? maskPasswords(fileName(origin->path)) : std::string());
    given("dialect", graph_.isTabular() ? "tabular" : "multidimensional");
  }

  void counts() {
    std::array<std::size_t, kNodeKindCount> kinds{};
    for (const LineageNode& node : graph_.nodes()) ++kinds[static_cast<std::size_t>(node.kind)];
    const auto of = [&](NodeKind kind) { return kinds[static_cast<std::size_t>(kind)]; };
    open("counts", '[');
    count("Data sources", graph_.model().storeConnections.getCount());
    count("Tables", of(NodeKind::viewTable) + of(NodeKind::namedQuery));
    count("Columns", of(NodeKind::viewColumn) + of(NodeKind::computedColumn));
    count("Dimensions", of(NodeKind::dimension));
    count("Attributes", of(NodeKind::attribute));
    count("Cubes", of(NodeKind::cube));
    count("Perspectives", of(NodeKind::perspective));
    count("Measures", of(NodeKind::measure));
    count("Calculated measures", of(NodeKind::calculatedMeasure));
    count("KPIs", of(NodeKind::kpi));
    count("Unresolved references", coverage_.unresolved);
    text_ += ']';
  }
  template <class Number> void count(std::string_view label, Number number) {
    next('[');
    string(label);
    text_.append(",").append(std::to_string(number)).append("]");
  }

  void vocabulary() {
    open("kinds", '[');
    for (std::size_t i = 0; i < kNodeKindCount; ++i) {
      next();
      string(nodeKindName(static_cast<NodeKind>(i)));
    }
    text_ += ']';
    open("edgeKinds", '[');
    for (std::size_t i = 0; i < kEdgeKindCount; ++i) {
      next();
      string(edgeKindName(static_cast<EdgeKind>(i)));
    }
    text_ += ']';
  }

  void nodes() {
    open("nodes", '[');
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      next();
      node(id);
      if (text_.size() >= kFlushSize) flush();
    }
    text_ += ']';
  }

  void node(NodeId id) {
    const LineageNode& at = graph_.node(id);
    text_.append("\n{\"k\":").append(std::to_string(static_cast<unsigned>(at.kind)));
    given("n", graph_.name(id));
    if (at.owner != kNoNode) number("o", at.owner);
    text("q", graph_.qualifiedName(id));
    text("p", graph_.path(id));
    text("e", graph_.expression(id));
    text("l", graph_.language(id));
    text("a", graph_.aggregation(id));
    if (at.object) object(id);
    unresolved(id);
    if (leadsSomewhere(at.kind)) reach(id);
    text_ += '}';
  }

  void object(NodeId id) {
    text("d", graph_.description(id));
    text("t", graph_.typeName(id));
    const auto* measure = as<TAVMeasure>(graph_.node(id).object);
    if (measure && measure->hidden) text_ += ",\"h\":1";
    if (is<TAVTable>(*graph_.node(id).object)) text("v", graph_.packageName(id));
    properties(id);
  }

  void properties(NodeId id) {
    const auto properties = graph_.properties(id);
    if (properties.empty()) return;
    open("x", '{');
    for (const auto& [name, value] : properties) {
      next();
      string(name);
      text_ += ':';
      string(value);
    }
    text_ += '}';
  }

  void unresolved(NodeId id) {
    const std::vector<std::string> names = graph_.unresolved(id);
    if (names.empty()) return;
    open("u", '[');
    for (const std::string& name : names) {
      next();
      string(name);
    }
    text_ += ']';
  }

  void reach(NodeId id) {
    const char found = byModel_[id] ? kColumn : kColumnByGraph;
    text_.append(",\"r\":").append(1, reached_[id] ? found : kNoColumn);
    if (!reached_[id]) text("w", gapReason(graph_, id));
  }

  void edges() {
    open("edges", '[');
    for (const LineageEdge& edge : graph_.edges()) {
      next();
      text_.append(std::to_string(edge.from)).append(",").append(std::to_string(edge.to)).append(",");
      text_.append(std::to_string(static_cast<unsigned>(edge.kind))).append(edge.foundByGraph ? ",1" : ",0");
      if (text_.size() >= kFlushSize) flush();
    }
    text_ += ']';
  }

  void hierarchies() {
    open("hierarchies", '[');
    for (NodeId id = 0; id < graph_.nodes().size(); ++id)
      for (const LineageHierarchy& one : graph_.hierarchies(id)) hierarchy(id, one);
    text_ += ']';
  }
  void hierarchy(NodeId dimension, const LineageHierarchy& hierarchy) {
    next('{');
    text_.append("\"o\":").append(std::to_string(dimension));
    given("n", hierarchy.name);
    open("l", '[');
    for (const LineageHierarchy::Level& level : hierarchy.levels) {
      next('[');
      string(level.name);
      text_ += level.attribute == kNoNode ? ",-1]" : "," + std::to_string(level.attribute) + "]";
    }
    text_ += "]}";
  }

  void dataSources() {
    open("dataSources", '[');
    for (const LineageConnection& connection : graph_.connections()) {
      next('{');
      text_ += "\"n\":";
      string(connection.name);
      text("s", connection.address.server);
      text("d", connection.address.database);
      text("c", connection.connectionString);
      text_ += '}';
    }
    text_ += ']';
  }

  /// The database as a whole has the attributes of its dimensions, and the measures of all its cubes.
  void coverage() {
    open("coverage", '[');
    CoverageCount attributes;
    CoverageCount measures;
    for (const CubeCoverage& cube : coverage_.cubes) {
      if (cube.cube == kNoNode) attributes = cube.attributes;
      measures.count += cube.measures.count;
      measures.reached += cube.measures.reached;
      measures.reachedByModel += cube.measures.reachedByModel;
      measures.rowCounts += cube.measures.rowCounts;
    }
    covered("-1", attributes, measures);
    for (const CubeCoverage& cube : coverage_.cubes)
      if (cube.cube != kNoNode) covered(std::to_string(cube.cube), cube.attributes, cube.measures);
    text_ += ']';
  }
  void covered(std::string_view cube, const CoverageCount& attributes, const CoverageCount& measures) {
    next('{');
    text_.append("\"n\":").append(cube).append(",\"a\":[").append(figures(attributes));
    text_.append("],\"m\":[").append(figures(measures)).append(",");
    text_.append(std::to_string(measures.rowCounts)).append("]}");
  }
  static std::string figures(const CoverageCount& count) {
    return std::to_string(count.count) + "," + std::to_string(count.reached) + "," +
           std::to_string(count.reachedByModel);
  }

  void key(std::string_view name) { text_.append(",\"").append(name).append("\":"); }
  void open(std::string_view name, char bracket) {
    key(name);
    text_ += bracket;
  }
  /// Begins the next one of a list. No text ends with "[" or "{" but one whose list is still empty.
  void next() {
    if (text_.empty() || (text_.back() != '[' && text_.back() != '{')) text_ += ',';
  }
  void next(char bracket) {
    next();
    text_ += bracket;
  }
  void number(std::string_view name, std::size_t value) {
    key(name);
    text_ += std::to_string(value);
  }
  void given(std::string_view name, std::string_view value) {
    key(name);
    string(value);
  }
  /// A member that is left out when there is nothing to say.
  void text(std::string_view name, std::string_view value) {
    if (!value.empty()) given(name, value);
  }

  /// A "<" could end the element of the page that the document stands in.
  void string(std::string_view value) {
    const std::size_t place = text_.size();
    appendJsonText(text_, value);
    if (value.find('<') == value.npos) return;
    const std::string plain = text_.substr(place);
    text_.resize(place);
    for (const char c : plain) {
      if (c == '<')
        text_ += "\\u003c";
      else
        text_ += c;
    }
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  const LineageGraph& graph_;
  std::string_view program_;
  Coverage coverage_;
  std::vector<bool> reached_;
  std::vector<bool> byModel_;
  std::ostream& out_;
  std::string text_;  // what is not yet handed to the stream
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
