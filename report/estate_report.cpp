#include "report/estate_report.h"

#include <algorithm>

#include "framework/std/json_writer.h"
#include "framework/std/mask.h"
#include "framework/std/text.h"
#include "report/report.h"

namespace tav {
namespace {

/// More names make a page that browsers take seconds to open.
constexpr std::size_t kMostNames = 200'000;
constexpr std::size_t kSeveral = static_cast<std::size_t>(-1);

/// What people look for across models.
bool isLookedFor(NodeKind kind) {
  switch (kind) {
    case NodeKind::cube:
    case NodeKind::dimension:
    case NodeKind::attribute:
    case NodeKind::measure:
    case NodeKind::calculatedMeasure:
    case NodeKind::kpi:
    case NodeKind::namedSet:
      return true;
    default:
      return false;
  }
}

void writeFigures(JsonWriter& json, std::string_view key, const CoverageCount& counted) {
  json.open(key, '[');
  json.value(counted.count);
  json.value(counted.reached);
  json.value(counted.rowCounts);
  json.close(']');
}

void writeKinds(JsonWriter& json) {
  json.open("kinds", '[');
  for (std::size_t kind = 0; kind < kNodeKindCount; ++kind) {
    json.open('{');
    json.member("name", nodeKindName(static_cast<NodeKind>(kind)));
    json.member("label", nodeKindLabel(static_cast<NodeKind>(kind)));
    json.close('}');
  }
  json.close(']');
}

}  // namespace

void EstateReport::add(const LineageGraph& graph, const std::string& input, const std::string& page) {
  const Coverage coverage = measureCoverage(graph);
  const std::size_t place = models_.size();
  Model& model = models_.emplace_back();
  model.name = graph.modelName();
  model.input = maskPasswords(input);
  model.page = page;
  model.attributes = coverage.attributes;
  model.measures = coverage.measures;
  model.openNames = coverage.namesThat(OpenNameState::mistake);
  for (NodeId id = 0; id < graph.nodes().size(); ++id) {
    const NodeKind kind = graph.node(id).kind;
    if (kind == NodeKind::cube) ++model.cubes;
    if (kind == NodeKind::databaseTable) addTable(graph, id);
    addRead(graph, id);
    if (!isLookedFor(kind) || !hasAllNames_) continue;
    names_.push_back({kind, graph.name(id), place, graph.path(id)});
    if (names_.size() <= kMostNames) continue;
    hasAllNames_ = false;
    names_ = {};
  }
  std::sort(model.read.begin(), model.read.end());
  model.read.erase(std::unique(model.read.begin(), model.read.end()), model.read.end());
}

/// Notes the model that a table or column of a database is a part of.
void EstateReport::addRead(const LineageGraph& graph, NodeId id) {
  std::string name = foldedName(graph.readModel(id));
  if (name.empty()) return;
  const std::string server = foldedName(graph.database(id)->server);
  const auto [known, isNew] = servers_.try_emplace(name, server);
  if (known->second != server) known->second.clear();
  models_.back().read.push_back(std::move(name));
}

void EstateReport::addTable(const LineageGraph& graph, NodeId id) {
  if (!graph.isShared(id)) return;
  Table& table = tables_[graph.sharedKey(id)];
  if (table.path.empty()) table.path = graph.path(id);
  const std::size_t place = models_.size() - 1;
  if (table.models.empty() || table.models.back() != place) table.models.push_back(place);
}

void EstateReport::addFailure(const std::string& input, const std::string& cause) {
  failures_.emplace_back(maskPasswords(input), maskPasswords(cause));
}

/// Those of the most models first.
std::vector<const EstateReport::Table*> EstateReport::sharedTables() const {
  std::vector<const Table*> shared;
  for (const auto& [key, table] : tables_)
    if (table.models.size() > 1) shared.push_back(&table);
  std::sort(shared.begin(), shared.end(), [](const Table* a, const Table* b) {
    return a->models.size() != b->models.size() ? a->models.size() > b->models.size() : a->path < b->path;
  });
  return shared;
}

/// Letter case folded; kSeveral for a name that several models have, or that is read from several servers:
/// nobody can tell which is meant.
std::unordered_map<std::string, std::size_t> EstateReport::placesByName() const {
  std::unordered_map<std::string, std::size_t> places;
  for (std::size_t place = 0; place < models_.size(); ++place) {
    const auto [known, isNew] = places.try_emplace(foldedName(models_[place].name), place);
    if (!isNew) known->second = kSeveral;
  }
  for (const auto& [name, server] : servers_)
    if (server.empty()) places[name] = kSeveral;
  return places;
}

void EstateReport::writeModels(JsonWriter& json, const std::vector<std::string>& names) const {
  const auto places = placesByName();
  json.open("models", '[');
  for (std::size_t place = 0; place < models_.size(); ++place) {
    const Model& model = models_[place];
    json.open('{');
    json.member("n", names[place]);
    json.member("f", model.page);
    json.member("i", model.input);
    json.member("cubes", model.cubes);
    writeFigures(json, "a", model.attributes);
    writeFigures(json, "m", model.measures);
    json.member("open", model.openNames);
    json.open("over", '[');
    for (const std::string& read : model.read) {
      if (const auto found = places.find(read);
          found != places.end() && found->second != kSeveral && found->second != place)
        json.value(found->second);
    }
    json.close(']');
    json.close('}');
  }
  json.close(']');
}

void EstateReport::writeTables(JsonWriter& json) const {
  json.open("tables", '[');
  for (const Table* table : sharedTables()) {
    json.open('[');
    json.value(table->path);
    json.open('[');
    for (const std::size_t model : table->models) json.value(model);
    json.close(']');
    json.close(']');
  }
  json.close(']');
}

void EstateReport::writeNames(JsonWriter& json) const {
  if (!hasAllNames_) return json.raw("names", "null");
  json.open("names", '[');
  for (const Name& name : names_) {
    json.open('[');
    json.value(static_cast<std::size_t>(name.kind));
    json.value(name.text);
    json.value(name.model);
    json.value(name.path);
    json.close(']');
  }
  json.close(']');
}

/// The types in page/src/estate.ts say what the members are.
std::string EstateReport::data(const std::vector<std::string>& names, std::string_view program) const {
  std::string text;
  JsonWriter json(text, true);
  json.begin('{');
  json.member("format", "xmla-estate-report/1");
  json.member("program", program);
  writeKinds(json);
  writeModels(json, names);
  json.open("failed", '[');
  for (const auto& [input, cause] : failures_) {
    json.open('[');
    json.value(input);
    json.value(cause);
    json.close(']');
  }
  json.close(']');
  writeTables(json);
  writeNames(json);
  json.close('}');
  return text += '\n';
}

void EstateReport::write(const std::vector<std::string>& names, std::string_view program,
                         std::ostream& out) const {
  const std::string_view page = estatePage();
  const std::size_t place = page.find(reportPlaceholder());
  out << page.substr(0, place) << data(names, program) << page.substr(place + reportPlaceholder().size());
}

}  // namespace tav
