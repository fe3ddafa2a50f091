// The same query has the same sources, whether it is a named query of a data source view or the partition of
// a tabular model. All statements that tests know go both roads, in one definition each.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "framework/expression/query.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"
#include "lineage/lineage_graph.h"
#include "tests/support/checked_import.h"
#include "tests/tabular/importer_run.h"
#include "views/name_encoding.h"

namespace {

using nlohmann::json;
using tav::LineageGraph;
using tav::NodeId;

constexpr const char* kConnection = "Provider=SQLNCLI11;Data Source=dw.example;Initial Catalog=DW";

struct Statement {
  std::string table;
  std::string sql;
  std::vector<std::string> columns;
};

/// The names of the result, and one more, which only a `*` can give.
std::vector<std::string> columnsOf(const std::string& sql) {
  const tav::Query query = tav::parseQuery(sql);
  std::vector<std::string> names;
  std::set<std::string> known;
  const auto add = [&](const std::string& name) {
    if (!name.empty() && known.insert(tav::foldedName(name)).second) names.push_back(name);
  };
  if (query.main != tav::kNoQuery)
    for (const auto& column : query.blocks[query.queries[query.main].blocks.front()].columns)
      if (!column.star) add(tav::unquotedPart(column.name));
  add("any column");
  return names;
}

/// What a definition in XML can hold.
bool isXmlText(const std::string& text) {
  return tav::mendedUtf8(text) == text && std::none_of(text.begin(), text.end(), [](char c) {
           return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t';
         });
}

/// Statements without the lines in front of them that tell about columns.
std::vector<Statement> statements() {
  std::vector<Statement> all;
  for (const char* file : {"expression/queries.txt", "expression/dialects.txt", "tabular/sql.txt"}) {
    if (!std::filesystem::exists(tav::test::testFile(file))) continue;
    const bool listed = std::string_view(file) == "tabular/sql.txt";
    for (const tav::test::CorpusCase& one : tav::test::loadCorpus(file)) {
      std::istringstream lines(one.input);
      std::string sql;
      bool first = listed;
      for (std::string line; std::getline(lines, line); first = false)
        if (!first && !line.starts_with("known ")) sql += tav::test::unescape(line) + "\n";
      if (isXmlText(sql) && !tav::trimmed(sql).empty())
        all.push_back({"Q" + std::to_string(all.size()), sql, columnsOf(sql)});
    }
  }
  return all;
}

std::string escaped(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    const std::size_t sign = std::string_view("&<>\"\n\t").find(c);
    constexpr const char* kEntities[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&#10;", "&#9;"};
    xml += sign == std::string_view::npos ? std::string(1, c) : kEntities[sign];
  }
  return xml;
}

std::string viewDefinition(const std::vector<Statement>& all) {
  std::string text =
      R"(<Database><ID>D</ID><Name>D</Name><DataSources><DataSource><ID>DW</ID><Name>DW</Name>)";
  text += std::string("<ConnectionString>") + kConnection + "</ConnectionString></DataSource></DataSources>";
  text += R"(<DataSourceViews><DataSourceView><ID>V</ID><Name>V</Name><DataSourceID>DW</DataSourceID><Schema>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:msprop="urn:schemas-microsoft-com:xml-msprop">
<xs:element name="V"><xs:complexType><xs:choice>)";
  for (const Statement& one : all) {
    text += "<xs:element name=\"" + one.table + "\" msprop:QueryDefinition=\"" + escaped(one.sql) +
            "\"><xs:complexType><xs:sequence>";
    for (const std::string& column : one.columns)
      text += "<xs:element name=\"" + tav::encodeName(column) + "\" msprop:DbColumnName=\"" +
              escaped(column) + "\" type=\"xs:string\"/>";
    text += "</xs:sequence></xs:complexType></xs:element>";
  }
  return text +
         "</xs:choice></xs:complexType></xs:element></xs:schema></Schema></DataSourceView>"
         "</DataSourceViews></Database>";
}

std::string tabularDefinition(const std::vector<Statement>& all) {
  json tables = json::array();
  for (const Statement& one : all) {
    json columns = json::array();
    for (const std::string& column : one.columns)
      columns.push_back({{"name", column}, {"dataType", "string"}, {"sourceColumn", column}});
    const json source = {{"type", "query"}, {"dataSource", "DW"}, {"query", one.sql}};
    tables.push_back({{"name", one.table},
                      {"columns", columns},
                      {"partitions", json::array({{{"name", one.table}, {"source", source}}})}});
  }
  const json dataSources = json::array({{{"name", "DW"}, {"connectionString", kConnection}}});
  const json model = {{"dataSources", dataSources}, {"tables", tables}};
  return json({{"name", "D"}, {"compatibilityLevel", 1400}, {"model", model}}).dump();
}

/// The columns of databases from which values, or else conditions, reach a node.
std::string sourcesOf(const LineageGraph& graph, NodeId start, bool values) {
  std::set<std::string> paths;
  std::set<std::pair<NodeId, bool>> seen{{start, values}};
  std::vector<std::pair<NodeId, bool>> waiting(seen.begin(), seen.end());
  while (!waiting.empty()) {
    const auto [node, onlyValues] = waiting.back();
    waiting.pop_back();
    if (graph.node(node).kind == tav::NodeKind::databaseColumn && onlyValues) paths.insert(graph.path(node));
    for (const tav::LineageEdge& edge : graph.into(node)) {
      const bool value = tav::givesValue(edge.kind);
      if (edge.kind == tav::EdgeKind::member || (onlyValues && !value && values)) continue;
      const std::pair<NodeId, bool> next{edge.from, onlyValues || !value};
      if (seen.insert(next).second) waiting.push_back(next);
    }
  }
  std::string text;
  for (const std::string& path : paths) text += path + "\n";
  return text;
}

using Answers = std::map<std::string, std::pair<std::string, std::string>>;

/// By table and column in small letters: what gives values to it, and what decides about its rows.
Answers answersOf(const TAVModel& model, tav::NodeKind owner) {
  const LineageGraph graph(model);
  Answers answers;
  for (NodeId id = 0; id < graph.nodes().size(); ++id) {
    const NodeId table = graph.node(id).owner;
    if (table == tav::kNoNode || graph.node(table).kind != owner || !graph.node(id).object) continue;
    const auto* feature = tav::as<TAVFeature>(graph.node(id).object);
    if (tav::is<TAVCondition>(*feature)) continue;
    answers[graph.node(table).object->getName().str() + "." + tav::foldedName(feature->physicalName)] = {
        sourcesOf(graph, id, true), sourcesOf(graph, id, false)};
  }
  return answers;
}

TEST(Roads, TheSameQueryHasTheSameSources) {
  const std::vector<Statement> all = statements();
  ASSERT_GT(all.size(), 50U);
  tav::test::DocumentImporter importer;
  const tav::test::Imported view = importer.import(viewDefinition(all));
  ASSERT_TRUE(view.model) << view.error;
  const tav::test::ImporterRun tabular = tav::test::importText(tabularDefinition(all));
  ASSERT_TRUE(tabular.model) << tabular.errors;

  const Answers ofView = answersOf(*view.model, tav::NodeKind::namedQuery);
  const Answers ofTable = answersOf(*tabular.model, tav::NodeKind::dimension);
  std::size_t withSources = 0;
  for (const Statement& one : all) {
    for (const std::string& column : one.columns) {
      const std::string key = one.table + "." + tav::foldedName(column);
      ASSERT_TRUE(ofView.contains(key)) << key << "\n" << one.sql;
      ASSERT_TRUE(ofTable.contains(key)) << key << "\n" << one.sql;
      EXPECT_EQ(ofView.at(key).first, ofTable.at(key).first) << column << " of\n" << one.sql;
      EXPECT_EQ(ofView.at(key).second, ofTable.at(key).second) << "conditions of\n" << one.sql;
      withSources += !ofView.at(key).first.empty();
    }
  }
  EXPECT_GT(withSources, all.size());
}

}  // namespace
