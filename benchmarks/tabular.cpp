#include <array>
#include <string>

#include "benchmarks/definition.h"
#include "benchmarks/json_writer.h"
#include "benchmarks/random.h"
#include "benchmarks/words.h"

namespace tav::bench {
namespace {

// Of the bytes the tables take so many in a hundred; relationships and translations grow with them.
constexpr std::uint64_t kShareOfTables = 73;
constexpr std::uint64_t kTablesOfArea = 6;  // the first of them holds facts
constexpr std::size_t kYears = 4;
constexpr std::size_t kFactMeasures = 30;
constexpr std::size_t kFactFigures = 12;
constexpr std::size_t kQualitiesOfTable = 14;
constexpr std::array<std::string_view, 2> kCultures{"de-DE", "fr-FR"};
constexpr std::array<std::string_view, 4> kPeriods{"DATESYTD", "DATESQTD", "DATESMTD", "PREVIOUSMONTH"};

struct TableName {
  std::string area;
  std::string name;
};

bool isFact(std::uint64_t table) {
  return table % kTablesOfArea == 0;
}

TableName nameOf(std::uint64_t table) {
  std::string area = numbered(kAreas, table / kTablesOfArea);
  std::string name = area + " " + (isFact(table) ? "Sales" : numbered(kThings, table % kTablesOfArea));
  return {std::move(area), std::move(name)};
}

std::string figure(std::size_t number) {
  return std::string(kFigures[number]);
}

/// A GUID, as editors put one on each object.
std::string tag(Random& random) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "00000000-0000-4000-8000-000000000000";
  for (char& c : text)
    if (c == '0') c = kDigits[random.below(kDigits.size())];
  return text;
}

void writeAnnotation(JsonWriter& to, std::string_view name, std::string_view value) {
  const JsonArray annotations(to, "annotations");
  const JsonObject annotation(to);
  to.text("name", name);
  to.text("value", value);
}

void writeColumn(JsonWriter& to, std::string_view name, std::string_view type, bool hidden, Random& random) {
  const JsonObject column(to);
  to.text("name", name);
  to.text("dataType", type);
  if (hidden) to.plain("isHidden", "true");
  if (type == "decimal") to.text("formatString", "#,0.00;(#,0.00)");
  to.text("sourceColumn", name);
  to.text("lineageTag", tag(random));
  to.text("summarizeBy", type == "decimal" ? "sum" : "none");
  if (random.chance(20)) to.text("description", sentence(random, 8));
  writeAnnotation(to, "SummarizationSetBy", "Automatic");
}

void writeCalculatedColumn(JsonWriter& to, const std::string& table, std::string_view name,
                           std::string_view from, Random& random) {
  const JsonObject column(to);
  to.text("type", "calculated");
  to.text("name", name);
  to.text("dataType", "string");
  to.lines("expression", "IF (\n    '" + table + "'[" + std::string(from) + "] <> BLANK (),\n    UPPER ( '" +
                             table + "'[" + std::string(from) + "] ),\n    \"none\" // nothing is known\n)");
  to.text("lineageTag", tag(random));
}

void writeColumns(JsonWriter& to, std::uint64_t table, Random& random) {
  const std::string name = nameOf(table).name;
  const JsonArray columns(to, "columns");
  writeColumn(to, "Key", "int64", true, random);
  if (isFact(table)) {
    for (std::uint64_t i = 1; i < kTablesOfArea; ++i)
      writeColumn(to, numbered(kThings, i) + " Key", "int64", true, random);
    for (std::size_t i = 0; i < kFactFigures; ++i) writeColumn(to, figure(i), "decimal", false, random);
    return;
  }
  for (std::size_t i = 0; i < kQualitiesOfTable; ++i) writeColumn(to, kQualities[i], "string", false, random);
  writeCalculatedColumn(to, name, "Shown Name", kQualities[0], random);
  writeCalculatedColumn(to, name, "Shown City", kQualities[5], random);
}

void writeHierarchy(JsonWriter& to, Random& random) {
  const JsonArray hierarchies(to, "hierarchies");
  const JsonObject hierarchy(to);
  to.text("name", "Geography");
  to.text("lineageTag", tag(random));
  const JsonArray levels(to, "levels");
  for (const std::size_t i : {6u, 5u, 10u}) {
    const JsonObject level(to);
    to.text("name", kQualities[i]);
    to.text("column", kQualities[i]);
    to.text("lineageTag", tag(random));
  }
}

std::string measureName(const TableName& table, std::size_t number) {
  return table.area + " " + figure(number % kFactFigures) + " " + std::to_string(number / kFactFigures + 1);
}

/// A base measure, or one over base measures: a share, or a total of a period.
std::string measureExpression(std::uint64_t table, std::size_t number, Random& random) {
  const TableName name = nameOf(table);
  const std::string column = "'" + name.name + "'[" + figure(number % kFactFigures) + "]";
  if (number < kFactFigures) return "SUM ( " + column + " )";
  const std::string base = "[" + measureName(name, number % kFactFigures) + "]";
  // One after the other: compilers differ in which part of a sum they take first.
  const std::string quality(kQualities[random.below(kQualitiesOfTable)]);
  const std::string other =
      "'" + nameOf(table + 1 + random.below(kTablesOfArea - 1)).name + "'[" + quality + "]";
  if (random.chance(50))
    return "VAR whole =\n    CALCULATE ( " + base + ", ALL ( " + other + " ) )\nRETURN\n    DIVIDE ( " +
           base + ", whole )";
  const std::string period(random.pick(kPeriods));
  return "-- " + sentence(random, 6) + "\nCALCULATE (\n    SUMX (\n        FILTER ( '" + name.name + "', " +
         column + " > 0 ),\n        " + column + " * '" + name.name + "'[Price]\n    ),\n    " + period +
         " ( " + other + " )\n)";
}

void writeMeasures(JsonWriter& to, std::uint64_t table, Random& random) {
  const TableName name = nameOf(table);
  const JsonArray measures(to, "measures");
  for (std::size_t i = 0; i < kFactMeasures; ++i) {
    const JsonObject measure(to);
    to.text("name", measureName(name, i));
    if (i < kFactFigures)
      to.text("expression", measureExpression(table, i, random));
    else
      to.lines("expression", measureExpression(table, i, random));
    if (random.chance(30)) to.text("description", sentence(random, 10));
    to.text("formatString", "#,0.00");
    to.text("displayFolder", figure(i % kFactFigures));
    to.text("lineageTag", tag(random));
    writeAnnotation(to, "PBI_FormatHint", R"({"isGeneralNumber":true})");
  }
}

/// A step by step query, or one that is handed to the database, by the area.
void writeSource(JsonWriter& to, std::uint64_t table, std::size_t year) {
  const TableName name = nameOf(table);
  const JsonObject source(to, "source");
  std::string item = name.name;
  if (table / kTablesOfArea % 2 == 0) {
    to.text("type", "m");
    std::string query = "let\n    Source = Sql.Database(\"warehouse.example\", \"" + name.area +
                        " DW\"),\n    Data = Source{[Schema=\"dbo\",Item=\"" + item +
                        "\"]}[Data],\n    Narrowed = Table.RemoveColumns(Data, {\"RowVersion\", \"LoadId\"}),"
                        "\n    Rows = Table.SelectRows(Narrowed, each [Key] > " +
                        std::to_string(year) +
                        "),\n    Typed = Table.TransformColumnTypes(Rows, {{\"Key\", "
                        "Int64.Type}})\nin\n    Typed";
    to.lines("expression", query);
    return;
  }
  to.text("type", "query");
  std::string query = "SELECT t.[Key]";
  if (isFact(table)) {
    for (std::uint64_t i = 1; i < kTablesOfArea; ++i) query += ", t.[" + numbered(kThings, i) + " Key]";
    for (std::size_t i = 0; i < kFactFigures; ++i) query += ", t.[" + figure(i) + "]";
  } else {
    for (std::size_t i = 0; i < kQualitiesOfTable; ++i) query += ", u.[" + std::string(kQualities[i]) + "]";
  }
  query += "\nFROM dbo.[" + item + "] t\nJOIN dbo.[" + item +
           " Details] u ON u.[Key] = t.[Key]\nWHERE t.[Year] = " + std::to_string(year);
  to.text("query", query);
  to.text("dataSource", kAreas[table / kTablesOfArea % kAreas.size()]);
}

void writePartitions(JsonWriter& to, std::uint64_t table) {
  const JsonArray partitions(to, "partitions");
  const std::size_t count = isFact(table) ? kYears : 1;
  for (std::size_t i = 0; i < count; ++i) {
    const JsonObject partition(to);
    to.text("name", nameOf(table).name + (count > 1 ? " " + std::to_string(2020 + i) : ""));
    to.text("mode", "import");
    writeSource(to, table, 2020 + i);
  }
}

void writeTable(JsonWriter& to, std::uint64_t table, Random& random) {
  const JsonObject object(to);
  to.text("name", nameOf(table).name);
  to.text("description", sentence(random, 12));
  to.text("lineageTag", tag(random));
  writeColumns(to, table, random);
  writePartitions(to, table);
  if (isFact(table))
    writeMeasures(to, table, random);
  else
    writeHierarchy(to, random);
  writeAnnotation(to, "PBI_ResultType", "Table");
}

void writeRelationships(JsonWriter& to, std::uint64_t tables) {
  const JsonArray relationships(to, "relationships");
  for (std::uint64_t i = 0; i < tables; ++i) {
    if (isFact(i)) continue;
    const JsonObject relationship(to);
    to.text("name", "relationship " + std::to_string(i));
    to.text("fromTable", nameOf(i - i % kTablesOfArea).name);
    to.text("fromColumn", numbered(kThings, i % kTablesOfArea) + " Key");
    to.text("toTable", nameOf(i).name);
    to.text("toColumn", "Key");
  }
}

void writeTranslations(JsonWriter& to, std::uint64_t tables, Random& random) {
  const JsonObject translations(to, "translations");
  const JsonObject model(to, "model");
  to.text("name", "Model");
  const JsonArray array(to, "tables");
  for (std::uint64_t i = 0; i < tables; ++i) {
    const JsonObject table(to);
    to.text("name", nameOf(i).name);
    to.text("translatedCaption", foreignCaption(random));
    const JsonArray columns(to, "columns");
    for (std::size_t j = 0; j < kFactFigures; ++j) {
      const JsonObject column(to);
      to.text("name", isFact(i) ? figure(j) : std::string(kQualities[j]));
      to.text("translatedCaption", foreignCaption(random));
    }
  }
}

void writeDataSources(JsonWriter& to) {
  const JsonArray sources(to, "dataSources");
  for (std::size_t i = 1; i < kAreas.size(); i += 2) {
    const JsonObject source(to);
    to.text("name", kAreas[i]);
    to.text("connectionString", "Provider=SQLNCLI11;Data Source=warehouse.example;Initial Catalog=" +
                                    std::string(kAreas[i]) + " DW;Integrated Security=SSPI");
  }
}

}  // namespace

void writeTabular(std::ostream& out, std::uint64_t bytes, std::uint64_t seed) {
  Random random(seed);
  JsonWriter to(out);
  const JsonObject database(to);
  to.text("name", "Estate");
  to.plain("compatibilityLevel", "1567");
  const JsonObject model(to, "model");
  to.text("culture", "en-GB");
  writeDataSources(to);
  std::uint64_t tables = 0;
  {
    const JsonArray array(to, "tables");
    while (to.size() < bytes * kShareOfTables / 100 || tables % kTablesOfArea > 0)
      writeTable(to, tables++, random);
  }
  writeRelationships(to, tables);
  const JsonArray cultures(to, "cultures");
  for (const std::string_view name : kCultures) {
    const JsonObject culture(to);
    to.text("name", name);
    writeTranslations(to, tables, random);
  }
}

}  // namespace tav::bench
