#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

#include "framework/expression/query_resolver.h"
#include "framework/std/dotted_name.h"
#include "framework/std/string.h"
#include "tests/support/corpus.h"

namespace {

using tav::Query;
using tav::QueryResolver;
using tav::QuerySource;

std::string namesOf(const QueryResolver& resolver, const std::vector<QuerySource>& sources) {
  std::string text;
  for (const QuerySource& source : sources) {
    std::vector<std::string> parts;
    if (source.object != QuerySource::kUnknown) parts = resolver.objects()[source.object].parts;
    parts.push_back(source.column);
    text += " " + tav::joinDottedName(parts);
  }
  return text;
}

/// The statement's tables, and what its columns and conditions are fed from. `known` lists columns that are
/// known, as names with their table; `any` stands for whatever a `*` gives.
std::string show(const std::string& sql, const std::vector<std::string>& known) {
  const Query query = tav::parseQuery(sql);
  QueryResolver resolver(query);
  resolver.setHasColumn([&](std::uint32_t object, const std::string& column) {
    std::vector<std::string> parts = resolver.objects()[object].parts;
    parts.push_back(column);
    return std::find(known.begin(), known.end(), tav::foldCase(tav::joinDottedName(parts))) != known.end();
  });
  std::string text = "reads";
  for (const tav::QueryObject& object : resolver.objects()) text += " " + tav::joinDottedName(object.parts);
  if (query.main != tav::kNoQuery) {
    for (const tav::QueryColumn& column : query.blocks[query.queries[query.main].blocks.front()].columns) {
      if (column.star) {
        text +=
            "\n" + std::string(column.qualifier) + "* any:" + namesOf(resolver, resolver.sourcesOf("any"));
        continue;
      }
      const std::string name = tav::unquotedPart(column.name);
      text += "\n" + (name.empty() ? "?" : name) + ":" + namesOf(resolver, resolver.sourcesOf(name));
      if (!column.copy) text += " = " + tav::test::escape(query.textOf(column));
    }
  }
  for (const tav::QueryPart& part : query.conditions) text += "\nif " + tav::test::escape(query.textOf(part));
  if (!query.conditions.empty()) text += "\n  reads" + namesOf(resolver, resolver.conditionSources());
  if (!query.others.references.empty()) text += "\nalso";
  for (const tav::QueryReference& reference : query.others.references)
    text += " " + std::string(reference.name);
  if (query.fault)
    text +=
        "\n! " + tav::placeInText(sql, query.fault.offset).str() + ": " + std::string(query.fault.expected);
  if (!resolver.isComplete()) text += "\nincomplete";
  return text;
}

struct Statement {
  std::string sql;
  std::vector<std::string> known;
};

/// Lines "known NAME" stand in front of the statement.
Statement readCase(const std::string& input) {
  Statement read;
  std::istringstream lines(input);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("known "))
      read.known.push_back(tav::foldCase(line.substr(6)));
    else
      (read.sql += read.sql.empty() ? "" : "\n") += tav::test::unescape(line);
  }
  return read;
}

std::string showCase(const std::string& input) {
  const Statement read = readCase(input);
  return show(read.sql, read.known);
}

TEST(Query, Corpus) {
  tav::test::checkCorpus("expression/queries.txt", showCase);
}

TEST(Query, EveryPrefixAndEveryDamageIsRead) {
  std::mt19937 random(7);
  const std::string pieces = "()[].,;'\"*=-/ {}@";
  for (const tav::test::CorpusCase& given : tav::test::loadCorpus("expression/queries.txt")) {
    const std::string sql = readCase(given.input).sql;
    for (std::size_t size = 0; size <= sql.size(); ++size) show(sql.substr(0, size), {});
    for (int round = 0; round < 200; ++round) {
      std::string damaged = sql;
      damaged[random() % damaged.size()] = pieces[random() % pieces.size()];
      show(damaged.erase(random() % damaged.size(), random() % 8), {});
    }
  }
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(Query, DepthCostsHeapAlone) {
  constexpr int kDepth = 20'000;
  const std::string opens = repeated("(", kDepth);
  EXPECT_NE(show("SELECT a FROM t WHERE " + opens + "b", {}).find("\n  reads t.b\n"), std::string::npos);
  const std::string derived =
      "SELECT a FROM " + repeated("(SELECT a FROM ", 900) + "t" + repeated(") x", 900);
  EXPECT_EQ(show(derived, {}), "reads t\na: t.a");
  show(repeated("SELECT (", kDepth), {});
  show(repeated("SELECT a FROM (", kDepth), {});
  show(repeated("WITH x AS (", kDepth), {});
  show("SELECT a FROM t WHERE a IN " + repeated("(SELECT b FROM u WHERE EXISTS ", kDepth), {});
}

TEST(Query, LengthIsNoFaultAndWhatLeadsEverywhereIsLimited) {
  std::string columns = "c0";
  for (int i = 1; i < 1000; ++i) columns += ",c" + std::to_string(i);
  const std::string wide = show("SELECT " + columns + " FROM t", {});
  EXPECT_NE(wide.find("\nc999: t.c999"), std::string::npos);
  std::string sum = columns;
  std::replace(sum.begin(), sum.end(), ',', '+');
  std::string uses = "x AS a0";
  for (int i = 1; i < 1000; ++i) uses += ",x AS a" + std::to_string(i);
  EXPECT_TRUE(
      show("SELECT " + uses + " FROM (SELECT " + sum + " AS x FROM t) s", {}).ends_with("\nincomplete"));
}

}  // namespace
