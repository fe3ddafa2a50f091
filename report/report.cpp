#include "report/report.h"

#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

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

/// The last number of an edge: these bits, and above them the place of its text, from 1 on.
constexpr unsigned kFound = 1;
constexpr unsigned kReplaces = 2;
constexpr unsigned kEdgeTextShift = 2;

/// Kinds from here on are those that no model has.
constexpr NodeKind kFirstInDetailsOnly = NodeKind::relationship;

/// In the order of RelationSense.
constexpr std::array<std::string_view, 8> kSenses{"gives",   "identifies", "joins",   "narrows",
                                                  "secures", "shows",      "formats", "other"};

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

/// A measure that a measure group or a script defines: each counts once, however many cubes list it.
bool isOriginalMeasure(NodeKind kind) {
  return kind == NodeKind::measure || kind == NodeKind::calculatedMeasure;
}

/// Texts that many have, each kept once and known by its place.
class Vocabulary {
 public:
  std::size_t placeOf(std::string text) {
    const auto [known, isNew] = places_.try_emplace(std::move(text), texts_.size());
    if (isNew) texts_.push_back(&known->first);
    return known->second;
  }
  void write(JsonWriter& json, std::string_view key) const {
    json.open(key, '[');
    for (const std::string* text : texts_) json.value(*text);
    json.close(']');
  }

 private:
  std::unordered_map<std::string, std::size_t> places_;
  std::vector<const std::string*> texts_;
};

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
    settingNames_.write(json_, "settingNames");
    edgeTexts_.write(json_, "edgeTexts");
    hierarchies();
    dataSources();
    coverage();
    passedOver();
    json_.close('}');
    text_ += '\n';
    flush();
  }

 private:
  void head() {
    json_.member("format", "xmla-report/2");
    json_.member("program", program_);
    json_.member("database", graph_.modelName());
    const TAVMetadataOrigin* origin = graph_.model().metadataOrigins.first();
    json_.member("source", origin ? maskPasswords(fileName(origin->path)) : std::string());
    json_.member("dialect", graph_.isTabular() ? "tabular" : "multidimensional");
  }

  /// Whether the definition has it, and the model should but does not: such an object does not count.
  [[nodiscard]] bool isLeftOut(NodeId id) const {
    const LineageNode& at = graph_.node(id);
    return !at.object && !graph_.database(id) && at.kind < kFirstInDetailsOnly;
  }

  void counts() {
    std::array<std::size_t, kNodeKindCount> kinds{};
    for (NodeId id = 0; id < graph_.nodes().size(); ++id)
      if (!isLeftOut(id)) ++kinds[static_cast<std::size_t>(graph_.node(id).kind)];
    const auto of = [&](NodeKind kind) { return kinds[static_cast<std::size_t>(kind)]; };
    json_.open("counts", '[');
    count("Data sources", static_cast<std::size_t>(graph_.model().storeConnections.getCount()));
    count("Tables", of(NodeKind::viewTable) + of(NodeKind::namedQuery));
    count("Columns", of(NodeKind::viewColumn) + of(NodeKind::computedColumn));
    count("Dimensions", of(NodeKind::dimension));
    count("Attributes", of(NodeKind::attribute));
    count("Cubes", of(NodeKind::cube));
    count("Perspectives", of(NodeKind::perspective));
    count("All measures", of(NodeKind::measure) + of(NodeKind::calculatedMeasure));
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
    for (std::size_t i = 0; i < kNodeKindCount; ++i) {
      const ObjectKindRow& row = rowOf(static_cast<NodeKind>(i));
      json_.open('[');
      for (const std::string_view text : {row.name, row.label, row.plural}) json_.value(text);
      json_.value(row.hasParts ? 1 : 0);
      json_.value(static_cast<NodeKind>(i) >= kFirstInDetailsOnly ? 1 : 0);
      json_.close(']');
    }
    json_.close(']');
    json_.open("edgeKinds", '[');
    for (std::size_t i = 0; i < kEdgeKindCount; ++i) {
      const RelationKindRow& row = rowOf(static_cast<EdgeKind>(i));
      json_.open('[');
      for (const std::string_view text : {row.name, row.upstream, row.downstream}) json_.value(text);
      json_.value(kSenses[static_cast<std::size_t>(row.sense)]);
      json_.close(']');
    }
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
    if (isLeftOut(id)) json_.member("b", 1);
    settings(id);
    openNames(id);
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

  /// Places of names, and values, by turns.
  void settings(NodeId id) {
    auto settings = graph_.settings(id);
    if (settings.empty()) return;
    json_.open("s", '[');
    for (auto& [name, value] : settings) {
      json_.value(settingNames_.placeOf(std::move(name)));
      json_.value(value);
    }
    json_.close(']');
  }

  /// What the model has not found and the details do not know counts as a mistake of the definition.
  void openNames(NodeId id) {
    std::vector<OpenNameText> names = graph_.openNames(id);
    std::unordered_set<std::string> known;
    for (const OpenNameText& name : names) known.insert(name.name);
    for (const std::string& name : graph_.unresolved(id))
      if (known.insert(name).second) names.push_back({name, OpenNameState::mistake, {}});
    if (names.empty()) return;
    json_.open("u", '[');
    for (const OpenNameText& name : names) {
      json_.open('[');
      for (const std::string_view text :
           {std::string_view(name.name), openNameStateText(name.state), std::string_view(name.note)})
        json_.value(text);
      json_.close(']');
    }
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
      json_.value(marksOf(edge));
      if (text_.size() >= kFlushSize) flush();
    }
    json_.close(']');
  }

  std::size_t marksOf(const LineageEdge& edge) {
    std::string text = graph_.edgeText(edge);
    const std::size_t place = text.empty() ? 0 : edgeTexts_.placeOf(std::move(text)) + 1;
    // What stands in the details was not found: the definition says it.
    const bool isFound = edge.foundByGraph && edge.relation == kNoRelation;
    return (place << kEdgeTextShift) | (isFound ? kFound : 0) | (edge.replaces ? kReplaces : 0);
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

  /// The database as a whole has the attributes of its dimensions, and each measure once; a cube has all that
  /// it lists. Values of KPIs are no measures, though a cube lists them as such.
  void coverage() {
    Listed whole;
    std::unordered_map<NodeId, Listed> cubes;
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) {
      const NodeKind kind = graph_.node(id).kind;
      if (isOriginalMeasure(kind) && !isLeftOut(id)) cover(whole.measures, id);
      if (kind == NodeKind::kpiValue) cover(whole.kpiValues, id);
      if (kind != NodeKind::cubeMeasure) continue;
      const bool ofKpi = graph_.node(graph_.originalOf(id)).kind == NodeKind::kpiValue;
      Listed& cube = cubes[graph_.cubeOf(id)];
      cover(ofKpi ? cube.kpiValues : cube.measures, id);
    }
    json_.open("coverage", '[');
    for (const CubeCoverage& cube : coverage_.cubes) {
      const bool isWhole = cube.cube == kNoNode;
      covered(isWhole ? -1 : static_cast<std::int64_t>(cube.cube), cube.attributes,
              isWhole ? whole : cubes[cube.cube]);
    }
    json_.close(']');
  }

  struct Listed {
    CoverageCount measures;
    CoverageCount kpiValues;
  };

  void cover(CoverageCount& count, NodeId id) const {
    ++count.count;
    count.reached += reached_[id] ? 1 : 0;
    count.rowCounts += graph_.countsRows(id) ? 1 : 0;
  }

  void covered(std::int64_t cube, const CoverageCount& attributes, const Listed& listed) {
    json_.open('{');
    json_.member("n", cube);
    figures("a", attributes);
    figures("m", listed.measures);
    figures("k", listed.kpiValues);
    json_.close('}');
  }
  void figures(std::string_view key, const CoverageCount& count) {
    json_.open(key, '[');
    for (const std::size_t figure : {count.count, count.reached, count.rowCounts}) json_.value(figure);
    json_.close(']');
  }

  /// Nothing at all stands for a document without details.
  void passedOver() {
    const Details* details = graph_.details();
    if (!details) return;
    json_.open("passedOver", '[');
    for (std::size_t i = 0; i < kPassedOverCount; ++i) {
      const auto what = static_cast<PassedOver>(i);
      if (details->passedOver(what) == 0) continue;
      json_.open('[');
      json_.value(rowOf(what).words);
      json_.value(details->passedOver(what));
      json_.value(rowOf(what).hasMeaning ? 1 : 0);
      json_.close(']');
    }
    json_.close(']');
  }

  void flush() {
    out_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  const LineageGraph& graph_;
  std::string_view program_;
  Coverage coverage_;
  std::vector<bool> reached_;
  Vocabulary settingNames_;
  Vocabulary edgeTexts_;
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
