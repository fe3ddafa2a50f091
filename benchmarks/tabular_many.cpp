#include <array>
#include <stdexcept>
#include <string>

#include "benchmarks/definition.h"
#include "benchmarks/json_writer.h"

namespace tav::bench {
namespace {

std::string label(std::string_view prefix, std::uint64_t number) {
  return std::string(prefix) + std::to_string(number);
}

void writeColumn(JsonWriter& to, const std::string& name) {
  const JsonObject column(to);
  to.text("name", name);
  to.text("dataType", "int64");
  to.text("sourceColumn", name);
}

void writePartition(JsonWriter& to, const std::string& name, const std::string& query) {
  const JsonObject partition(to);
  to.text("name", name);
  const JsonObject source(to, "source");
  to.text("type", "query");
  to.text("dataSource", "S");
  to.text("query", query);
}

/// Columns of one table that computes each of them, so that each has a source of its own.
void writeColumns(JsonWriter& to, std::uint64_t count, bool equal) {
  const JsonArray columns(to, "columns");
  for (std::uint64_t i = 0; i < count; ++i) writeColumn(to, equal ? "C" : label("C", i));
}

void writeMeasures(JsonWriter& to, std::uint64_t count, bool equal) {
  const JsonArray measures(to, "measures");
  for (std::uint64_t i = 0; i < count; ++i) {
    const JsonObject measure(to);
    to.text("name", equal ? "M" : label("M", i));
    to.text("expression", i == 0 || equal ? "SUM ( T[C0] )" : label("SUM ( T[C0] ) + [M", i - 1) + "]");
  }
}

void writeAnnotations(JsonWriter& to, std::uint64_t count) {
  const JsonArray annotations(to, "annotations");
  for (std::uint64_t i = 0; i < count; ++i) {
    const JsonObject annotation(to);
    to.text("name", label("A", i));
    to.text("value", "yes");
  }
}

void writePartitions(JsonWriter& to, std::uint64_t count) {
  const JsonArray partitions(to, "partitions");
  for (std::uint64_t i = 0; i < count; ++i)
    writePartition(to, label("P", i), label("SELECT C0 FROM dbo.T WHERE Part = ", i));
}

/// A table with one column, and of one thing as many as are wanted.
void writeTable(JsonWriter& to, std::string_view kind, std::uint64_t count) {
  const JsonObject table(to);
  to.text("name", "T");
  const bool columns = kind == "model-columns" || kind == "model-equal-columns";
  writeColumns(to, columns ? count : 1, kind == "model-equal-columns");
  writePartitions(to, kind == "model-partitions" ? count : 1);
  if (kind == "model-measures" || kind == "model-equal-measures")
    writeMeasures(to, count, kind == "model-equal-measures");
  if (kind == "model-annotations") writeAnnotations(to, count);
  if (kind == "model-members")
    for (std::uint64_t i = 0; i < count; ++i) to.text(label("member", i), "yes");
  if (kind == "model-equal-members")
    for (std::uint64_t i = 0; i < count; ++i) to.text("member", label("value", i));
}

void writeTables(JsonWriter& to, std::uint64_t count, bool equal) {
  for (std::uint64_t i = 1; i < count; ++i) {
    const JsonObject table(to);
    const std::string name = equal ? "T" : label("T", i);
    to.text("name", name);
    writeColumns(to, 1, true);
    const JsonArray partitions(to, "partitions");
    writePartition(to, name, "SELECT * FROM dbo." + label("T", i));
  }
}

/// Shared expressions, each of which hands on what the one before it gives.
void writeExpressions(JsonWriter& to, std::uint64_t count) {
  const JsonArray expressions(to, "expressions");
  for (std::uint64_t i = 0; i < count; ++i) {
    const JsonObject expression(to);
    to.text("name", label("E", i));
    to.text("kind", "m");
    to.text("expression", label("\"constant ", i) + "\" meta [IsParameterQuery=true]");
  }
}

constexpr std::array<std::string_view, 10> kKinds{
    "model-columns",    "model-equal-columns", "model-measures", "model-equal-measures",
    "model-partitions", "model-annotations",   "model-members",  "model-equal-members",
    "model-tables",     "model-equal-tables"};

}  // namespace

void writeTabularMany(std::ostream& out, std::string_view kind, std::uint64_t count) {
  bool known = kind == "model-expressions";
  for (const std::string_view one : kKinds) known |= one == kind;
  if (!known) throw std::invalid_argument("no kind of definition is called " + std::string(kind));
  JsonWriter to(out);
  const JsonObject database(to);
  to.text("name", "Many");
  to.plain("compatibilityLevel", "1567");
  const JsonObject model(to, "model");
  {
    const JsonArray sources(to, "dataSources");
    const JsonObject source(to);
    to.text("name", "S");
    to.text("connectionString", "Provider=SQLNCLI11;Data Source=warehouse.example;Initial Catalog=DW");
  }
  {
    const JsonArray tables(to, "tables");
    writeTable(to, kind, count);
    if (kind == "model-tables" || kind == "model-equal-tables")
      writeTables(to, count, kind == "model-equal-tables");
  }
  if (kind == "model-expressions") writeExpressions(to, count);
}

}  // namespace tav::bench
