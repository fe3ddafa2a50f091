#include "benchmarks/estate.h"

#include <algorithm>
#include <array>

#include "benchmarks/words.h"

namespace tav::bench {
namespace {

constexpr std::size_t kDimensions = 21;
constexpr std::size_t kGroups = 13;
constexpr std::size_t kAttributes = 14;
constexpr std::size_t kMeasures = 7;
constexpr std::size_t kUsages = 9;
// Below this scale an area cannot be of the usual width: its few objects get narrower.
constexpr Scale kSmall = 100;

constexpr std::array<std::string_view, 8> kKeyTypes{"int",    "short",   "unsignedByte", "decimal",
                                                    "double", "boolean", "long",         "dateTime"};
constexpr std::array<unsigned, 8> kLengths{50, 50, 50, 10, 100, 20, 255, 15};
constexpr std::array<std::string_view, 8> kAggregations{
    "Count", "DistinctCount", "AverageOfChildren", "Max", "LastNonEmpty", "Min", "None", "FirstNonEmpty"};

std::string withoutBlanks(std::string text) {
  std::erase(text, ' ');
  return text;
}

std::string encodeBlanks(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    if (c == ' ')
      encoded += "_x0020_";
    else
      encoded += c;
  }
  return encoded;
}

/// A column of text, or in three of ten cases of another type.
Column planColumn(Random& random, std::string name) {
  Column column{std::move(name), "", 0, ""};
  if (random.chance(30))
    column.type = random.pick(kKeyTypes);
  else
    column.length = random.pick(kLengths);
  return column;
}

void planTable(Table& table, const std::string& name, Random& random) {
  // One name in ten keeps its blanks and is then written in its encoded form.
  table.databaseName = random.chance(10) ? name : withoutBlanks(name);
  table.id = encodeBlanks("dbo_" + table.databaseName);
  table.friendlyName = name;
}

/// The key attribute and the two columns behind it.
void planKey(Dimension& dimension, Table& table, const std::string& thing) {
  table.columns.push_back({withoutBlanks(thing) + "Key", "int", 0, ""});
  table.columns.push_back({withoutBlanks(thing) + "Name", "", 50, ""});
  dimension.attributes.push_back({dimension.id + " Key", thing, {0}, 1, Attribute::kNone});
}

void planAttribute(Dimension& dimension, Table& table, const std::string& name, Random& random) {
  Attribute attribute;
  attribute.name = name;
  attribute.id = random.chance(19) ? dimension.id + " - " + name : name;
  attribute.keys.push_back(table.columns.size());
  table.columns.push_back(planColumn(random, withoutBlanks(name)));
  if (random.chance(4)) attribute.keys.push_back(0);
  if (random.chance(32)) {
    attribute.nameColumn = table.columns.size();
    table.columns.push_back({withoutBlanks(name) + "Name", "", random.pick(kLengths), ""});
    if (random.chance(9))
      table.columns.back().expression = "UPPER(" + withoutBlanks(name) + ") + ' ' +\r\nN''";
  }
  if (table.columns[attribute.keys[0]].type == "dateTime") attribute.valueColumn = attribute.keys[0];
  dimension.attributes.push_back(std::move(attribute));
}

void planHierarchies(Dimension& dimension, Random& random) {
  const std::size_t count = dimension.attributes.size() < 3 ? 0 : 1 + random.below(2);
  for (std::size_t i = 0; i < count; ++i) {
    Hierarchy hierarchy{i == 0 ? "Hierarchy" : "Hierarchy " + std::to_string(i),
                        i == 0 ? dimension.name + " Tree" : dimension.name + " by Group",
                        {}};
    const std::size_t first = 1 + random.below(dimension.attributes.size() - 2);
    hierarchy.levels.push_back(first);
    if (first + 1 < dimension.attributes.size()) hierarchy.levels.push_back(first + 1);
    hierarchy.levels.push_back(0);
    dimension.hierarchies.push_back(std::move(hierarchy));
  }
}

void planDimensions(Area& area, Random& random, Scale scale) {
  const std::size_t count = scaled(kDimensions, scale, 1);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string thing = i == 0 ? "Date" : numbered(kThings, i - 1);
    Dimension dimension;
    dimension.name = area.name + " " + thing;
    dimension.id = random.chance(11) ? "Dim " + dimension.name : dimension.name;
    dimension.isTime = i == 0;
    dimension.table = area.tables.size();
    Table table;
    planTable(table, "Dim " + thing, random);
    planKey(dimension, table, thing);
    // Around the mean, so that some dimensions are wide and some narrow.
    const std::size_t attributes =
        scale < kSmall ? scale * kAttributes / kSmall : kAttributes / 2 + random.below(kAttributes + 1);
    for (std::size_t a = 0; a < attributes; ++a)
      planAttribute(dimension, table, thing + " " + numbered(kQualities, a), random);
    planHierarchies(dimension, random);
    area.tables.push_back(std::move(table));
    area.dimensions.push_back(std::move(dimension));
  }
}

Measure planMeasure(MeasureGroup& group, Table& table, std::string name, Random& random) {
  Measure measure;
  measure.id = random.chance(36) ? withoutBlanks(name) : name;
  measure.hidden = random.chance(6);
  if (random.chance(23)) measure.aggregation = random.pick(kAggregations);
  // Most counts count rows and are bound to the table alone.
  if (measure.aggregation != "Count" || random.chance(10)) {
    measure.column = table.columns.size();
    table.columns.push_back({withoutBlanks(name), random.chance(60) ? "decimal" : "int", 0, ""});
  }
  if (measure.aggregation.empty() && !group.measures.empty() && random.chance(3))
    measure.expression = "[" + name + "] / [" + group.measures.front().name + "]";
  measure.name = std::move(name);
  return measure;
}

void planGroups(Area& area, Random& random, Scale scale) {
  const std::size_t count = scaled(kGroups, scale, 1);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string thing = numbered(kThings, i * 5 + 3);
    MeasureGroup group;
    group.name = thing + " Facts";
    group.id = random.chance(23) ? "Fact " + thing : group.name;
    group.table = area.tables.size();
    Table table;
    planTable(table, "Fact " + thing, random);
    const std::size_t usages = std::min(area.dimensions.size(), kUsages);
    const std::size_t first = random.below(area.dimensions.size());
    for (std::size_t u = 0; u < usages; ++u) {
      const std::size_t d = u == 0 ? 0 : 1 + (first + u) % (area.dimensions.size() - 1);
      group.usages.push_back({d, table.columns.size()});
      table.columns.push_back({"K" + std::to_string(u) + area.tables[d].columns[0].name, "int", 0, ""});
    }
    const std::size_t measures =
        scale < kSmall ? 1 + scale * kMeasures / kSmall : kMeasures / 2 + random.below(kMeasures + 1);
    for (std::size_t m = 0; m < measures; ++m)
      group.measures.push_back(planMeasure(group, table, thing + " " + numbered(kFigures, m), random));
    if (random.chance(15)) {
      table.query = "SELECT *\r\nFROM   dbo." + table.databaseName + "\r\nWHERE  K0 > 0";
      table.id = encodeBlanks(table.friendlyName);
    }
    area.tables.push_back(std::move(table));
    area.groups.push_back(std::move(group));
  }
}

}  // namespace

std::size_t scaled(std::size_t count, Scale scale, std::size_t least) {
  return std::max(least, (count * scale + 500) / 1000);
}

Area planArea(std::uint64_t seed, unsigned number, Scale scale) {
  Random random(seed * 1000003u + number);
  Area area;
  area.name = numbered(kAreas, number);
  area.viewId = area.name + " View";
  area.sourceId = area.name + " DW";
  area.cubeId = area.name + " Cube";
  planDimensions(area, random, scale);
  planGroups(area, random, scale);
  return area;
}

}  // namespace tav::bench
