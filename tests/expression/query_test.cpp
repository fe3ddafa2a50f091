#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <random>
#include <sstream>

#include "framework/expression/query_resolver.h"
#include "framework/std/dotted_name.h"
#include "framework/std/string.h"
#include "tests/support/corpus.h"
#include "tests/support/timing.h"

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

const std::vector<std::string> kCorpora{"expression/queries.txt", "expression/dialects.txt"};

TEST(Query, Corpus) {
  for (const std::string& corpus : kCorpora) tav::test::checkCorpus(corpus, showCase);
}

TEST(Query, EveryPrefixAndEveryDamageIsRead) {
  std::mt19937 random(7);
  const std::string pieces = "()[].,;'\"*=-/ {}@:?&$`";
  for (const std::string& corpus : kCorpora) {
    for (const tav::test::CorpusCase& given : tav::test::loadCorpus(corpus)) {
      const std::string sql = readCase(given.input).sql;
      for (std::size_t size = 0; size <= sql.size(); ++size) show(sql.substr(0, size), {});
      for (int round = 0; round < 200; ++round) {
        std::string damaged = sql;
        damaged[random() % damaged.size()] = pieces[random() % pieces.size()];
        show(damaged.erase(random() % damaged.size(), random() % 8), {});
      }
    }
  }
}

TEST(Query, LetterCaseAndAStatementInFrontChangeNothing) {
  const auto turned = [](std::string text, int (*turn)(int)) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [&](unsigned char c) { return static_cast<char>(c < 0x80 ? turn(c) : c); });
    return text;
  };
  for (const std::string& corpus : kCorpora) {
    for (const tav::test::CorpusCase& given : tav::test::loadCorpus(corpus)) {
      const Statement read = readCase(given.input);
      const std::string shown = show(read.sql, read.known);
      const std::string where = corpus + ":" + std::to_string(given.line);
      EXPECT_EQ(turned(shown, std::tolower),
                turned(show(turned(read.sql, std::toupper), read.known), std::tolower))
          << where;
      const std::string behind = show("SET NOCOUNT ON;" + read.sql, read.known);
      EXPECT_EQ(shown.substr(0, shown.find("\n! ")), behind.substr(0, behind.find("\n! "))) << where;
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

/// Reads a statement: what it says, what its columns and what its conditions are fed from.
void resolve(const std::string& sql) {
  const Query query = tav::parseQuery(sql);
  QueryResolver resolver(query);
  if (query.main != tav::kNoQuery) {
    for (const tav::QueryColumn& column : query.blocks[query.queries[query.main].blocks.front()].columns)
      [[maybe_unused]] const auto sources = resolver.sourcesOf(tav::unquotedPart(column.name));
  }
  [[maybe_unused]] const auto sources = resolver.conditionSources();
}

tav::test::Timed timeOf(const std::string& sql) {
  return [sql] { return tav::test::secondsOf([&] { resolve(sql); }); };
}

/// `count` common table expressions, each of which joins the one before it with itself.
std::string chain(int count) {
  std::string sql = "WITH e0 AS (SELECT a, b FROM t)";
  for (int i = 1; i <= count; ++i) {
    const std::string before = "e" + std::to_string(i - 1);
    sql += ", e" + std::to_string(i);
    sql += " AS (SELECT x.a + y.b AS a, y.a - x.b AS b FROM ";
    sql += before;
    sql += " x JOIN ";
    sql += before;
    sql += " y ON x.a = y.b)";
  }
  return sql + " SELECT a, b FROM e" + std::to_string(count);
}

TEST(Query, TimeGrowsAsTheTextDoes) {
  EXPECT_NE(show(chain(40), {}).find("\na: t.a t.b\n"), std::string::npos);
  // Short: measured a hundred at a time.
  const auto ofChain = [](int count) { return timeOf(repeated(chain(count) + ";", 100)); };
  EXPECT_TRUE(tav::test::growsAtMost(ofChain(20), ofChain(40), 3));

  struct Growing {
    const char* name;
    std::function<std::string(int)> sql;
  };
  const auto list = [](const std::string& front, const std::string& each, const std::string& back) {
    return [=](int count) {
      std::string sql = front;
      for (int i = 0; i < count; ++i) sql += (i > 0 ? "," : "") + each + std::to_string(i);
      return sql + back;
    };
  };
  const auto again = [](const std::string& front, const std::string& each) {
    return [=](int count) { return front + repeated(each, count); };
  };
  const std::vector<Growing> statements{
      {"columns", list("SELECT ", "c", " FROM t")},
      {"columns of a query", list("SELECT * FROM (SELECT ", "c", " FROM t) s")},
      {"tables", list("SELECT a FROM ", "t", "")},
      {"tables with USING", again("SELECT a FROM t", " JOIN u USING (k)")},
      {"new names", list("WITH e (", "c", ") AS (SELECT * FROM t) SELECT c1 FROM e")},
      {"rows", list("SELECT x FROM (VALUES (0)", ",(1),(2)--\n", ") v (x)")},
      {"statements", again("SELECT a INTO #t FROM s;", "INSERT INTO #t SELECT a FROM #t ")},
      {"open brackets", again("SELECT ", "(")},
      {"sub-queries", again("", "SELECT (")},
      {"tables in brackets", again("SELECT a FROM ", "(")},
      {"CASE", again("SELECT ", "CASE WHEN ")},
      {"comments in comments", again("SELECT a ", "/* ")},
      {"dollars", again("SELECT ", "$a")},
      {"dots", again("SELECT a", ".")},
      {"braces", again("SELECT ", "${")},
      {"MINUS", again("SELECT a", " MINUS")},
      {"WITH", again("", "WITH a AS (")},
  };
  for (const Growing& statement : statements) {
    EXPECT_TRUE(tav::test::growsAtMost(timeOf(statement.sql(5'000)), timeOf(statement.sql(40'000)), 24, 0.02))
        << statement.name;
  }
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
