// What each kind of source becomes: the connection, and the table and column as catalogues know them. All
// cases are one model, so that Java starts once.

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "exports/openlineage/datasets.h"
#include "lineage/gap_reason.h"
#include "lineage/lineage_graph.h"
#include "tests/tabular/importer_run.h"

namespace {

using nlohmann::json;
using tav::NodeId;
using tav::test::CorpusCase;

/// A case is the members of a table, of which the first may be "dataSources" and "expressions" of the model,
/// or an M query.
json tableOf(const CorpusCase& one, json& model) {
  const std::size_t line = one.input.find('\n');
  std::istringstream names(one.input.substr(0, line));
  const std::string text = one.input.substr(line + 1);
  json table = text.starts_with("{") ? json::parse(text) : json::object();
  for (const char* list : {"dataSources", "expressions"}) {
    if (!table.contains(list)) continue;
    for (const json& item : table[list]) model[list].push_back(item);
    table.erase(list);
  }
  if (!text.starts_with("{"))
    table["partitions"] = json::array({{{"name", "p"}, {"source", {{"type", "m"}, {"expression", text}}}}});
  table["name"] = one.name;
  table["columns"] = json::array();
  for (std::string name; names >> name;)
    table["columns"].push_back({{"name", name}, {"dataType", "string"}, {"sourceColumn", name}});
  return table;
}

json modelOf(const std::vector<CorpusCase>& cases) {
  json model = {{"tables", json::array()}, {"dataSources", json::array()}, {"expressions", json::array()}};
  model["expressions"].push_back(
      {{"name", "Server"}, {"expression", R"("db.example" meta [IsParameterQuery=true])"}});
  for (const CorpusCase& one : cases) model["tables"].push_back(tableOf(one, model));
  return {{"name", "Sources"}, {"model", model}};
}

std::string kindOf(const TAVStoreConnection& connection) {
  const tav::ConnectionFacts facts = tav::factsOf(connection);
  return std::string(facts.kind) + " | " + connection.dataStore.name.str();
}

class Answers {
 public:
  explicit Answers(const TAVModel& model)
      : graph_(model), datasets_(graph_, "ssas://localhost"), reached_(graph_.tracedBack()) {
    for (NodeId id = 0; id < graph_.nodes().size(); ++id) nodes_.emplace(graph_.path(id), id);
  }

  std::string of(const std::string& table) {
    std::string text;
    connections_.clear();
    for (const NodeId column : graph_.partsOf(nodes_.at("/Dimensions/" + table)))
      text += graph_.name(column) + " <- " + sources(column) + gap(column) + "\n";
    for (const std::string& connection : connections_) text += connection + "\n";
    return text;
  }

 private:
  std::string sources(NodeId column) {
    std::string text;
    std::set<NodeId> seen{column};
    for (std::vector<NodeId> waiting{column}; !waiting.empty();) {
      const NodeId at = waiting.back();
      waiting.pop_back();
      noteConnection(at);
      if (graph_.database(at) && datasets_.datasetOf(at) != tav::kNoDataset) {
        const tav::CatalogDataset& dataset = datasets_.get(datasets_.datasetOf(at));
        text += (text.empty() ? "" : ", ") + dataset.space + " " + dataset.name + " : " + graph_.name(at);
      }
      for (const tav::LineageEdge& edge : graph_.into(at))
        if (tav::givesValue(edge.kind) && seen.insert(edge.from).second) waiting.push_back(edge.from);
    }
    return text.empty() ? "nothing" : text;
  }

  std::string gap(NodeId column) const {
    return reached_[column] ? "" : " (" + tav::gapReason(graph_, column) + ")";
  }

  void noteConnection(NodeId column) {
    const NodeId owner = graph_.node(column).owner;
    const auto* table = owner == tav::kNoNode ? nullptr : tav::as<TAVTable>(graph_.node(owner).object);
    if (!table) return;
    const TAVStoreConnection* connection = table->storeConnections.first();
    connections_.insert(connection ? "connection " + connection->getName().str() + " | " +
                                         kindOf(*connection) + " | " + connection->connectionString.str()
                                   : "no connection");
  }

  tav::LineageGraph graph_;
  tav::CatalogDatasets datasets_;
  std::vector<bool> reached_;
  std::map<std::string, NodeId> nodes_;
  std::set<std::string> connections_;
};

/// The warnings about a table, without identifier and path.
std::string warningsOf(const std::string& messages, const std::string& table) {
  std::string text;
  std::istringstream lines(messages);
  const std::string about = "'/Dimensions/" + table + "' ";
  for (std::string line; std::getline(lines, line);)
    if (const std::size_t at = line.find(about); at != std::string::npos)
      text += "warning: " + line.substr(at + about.size()) + "\n";
  return text;
}

TEST(TabularLineage, SourcesAreNamedAsCataloguesNameThem) {
  constexpr const char* kFile = "tabular/sources.txt";
  const std::vector<CorpusCase> cases = tav::test::loadCorpus(kFile);
  const tav::test::ImporterRun run = tav::test::importText(modelOf(cases).dump());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  Answers answers(*run.model);
  std::map<std::string, std::string> results;
  for (const CorpusCase& one : cases) {
    std::string& text = results[one.input] = answers.of(one.name) + warningsOf(run.messages, one.name);
    text.pop_back();
  }
  tav::test::checkCorpus(kFile, [&](const std::string& input) { return results[input]; });
}

}  // namespace
