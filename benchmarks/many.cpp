#include <algorithm>
#include <stdexcept>
#include <string>

#include "benchmarks/definition.h"
#include "benchmarks/estate_parts.h"
#include "benchmarks/plain.h"

namespace tav::bench {
namespace {

constexpr std::uint64_t kReferencesOfMember = 10;
constexpr std::size_t kLevels = 3;
constexpr std::size_t kMeasuresOfCube = 100;
constexpr std::size_t kMembersOfCube = 100;
// What scripts are about: an area of a few dimensions and measure groups.
constexpr Scale kScriptScale = 250;

struct Plan {
  Area area;
  std::vector<PlainCube> cubes;
  bool spread = false;  // the attributes of a dimension over as many tables
};

std::string label(std::string_view prefix, std::uint64_t number) {
  std::string text(prefix);
  return text += std::to_string(number);
}

Plan plainPlan() {
  Plan plan;
  plan.area.name = "Many";
  plan.area.viewId = "Many View";
  plan.area.sourceId = "Many DW";
  return plan;
}

Table plainTable(std::uint64_t number) {
  const std::string name = label("T", number);
  return {"dbo_" + name, name, name, "", {}};
}

std::size_t addColumn(Table& table) {
  table.columns.push_back({label("C", table.columns.size()), "int", 0, ""});
  return table.columns.size() - 1;
}

void addAttribute(Dimension& dimension, std::size_t column) {
  const std::string name = label("A", dimension.attributes.size());
  dimension.attributes.push_back({name, name, {column}, Attribute::kNone, Attribute::kNone});
}

void addHierarchy(Dimension& dimension, std::size_t levels) {
  Hierarchy hierarchy{"Hierarchy", "Tree", {}};
  const std::size_t count = std::min(levels, dimension.attributes.size());
  for (std::size_t i = count; i > 0; --i) hierarchy.levels.push_back(i - 1);
  dimension.hierarchies.push_back(std::move(hierarchy));
}

Plan equalNames(std::uint64_t count) {
  Plan plan = plainPlan();
  for (std::uint64_t i = 0; i < count; ++i) {
    plan.area.tables.push_back(plainTable(i));
    plan.area.tables.back().friendlyName = "Customer";
    Dimension dimension;
    dimension.id = label("D", i);
    dimension.name = "Customer";
    dimension.table = i;
    addAttribute(dimension, addColumn(plan.area.tables.back()));
    plan.area.dimensions.push_back(std::move(dimension));
  }
  return plan;
}

Plan manyAttributes(std::uint64_t count, std::size_t levels = kLevels) {
  Plan plan = plainPlan();
  plan.area.tables.push_back(plainTable(0));
  Dimension dimension;
  dimension.id = dimension.name = "Wide";
  for (std::uint64_t i = 0; i < count; ++i) addAttribute(dimension, addColumn(plan.area.tables.front()));
  addHierarchy(dimension, levels);
  plan.area.dimensions.push_back(std::move(dimension));
  return plan;
}

/// What the first dimension took must cost those behind it nothing.
Plan unevenDimensions(std::uint64_t count) {
  Plan plan = manyAttributes(count);
  for (std::uint64_t i = 0; i < count; ++i) {
    Dimension dimension;
    dimension.id = dimension.name = label("D", i);
    addAttribute(dimension, 0);
    plan.area.dimensions.push_back(std::move(dimension));
  }
  return plan;
}

Plan manyColumns(std::uint64_t count) {
  Plan plan = manyAttributes(1);
  while (plan.area.tables.front().columns.size() < count) addColumn(plan.area.tables.front());
  return plan;
}

Plan manyTables(std::uint64_t count) {
  Plan plan = plainPlan();
  plan.spread = true;
  Dimension dimension;
  dimension.id = dimension.name = "Spread";
  for (std::uint64_t i = 0; i < count; ++i) {
    plan.area.tables.push_back(plainTable(i));
    addAttribute(dimension, addColumn(plan.area.tables.back()));
  }
  plan.area.dimensions.push_back(std::move(dimension));
  return plan;
}

/// A measure group over a new table. Its measures are called by their IDs, or all by `name`.
MeasureGroup addGroup(Area& area, std::uint64_t measures, const std::string& name = {}) {
  MeasureGroup group;
  group.id = group.name = "Facts";
  group.table = area.tables.size();
  area.tables.push_back(plainTable(area.tables.size()));
  for (std::uint64_t i = 0; i < measures; ++i) {
    Measure measure;
    measure.id = label("M", i);
    measure.name = name.empty() ? measure.id : name;
    measure.column = addColumn(area.tables.back());
    group.measures.push_back(std::move(measure));
  }
  return group;
}

Plan manyMeasures(std::uint64_t count, const std::string& name = {}) {
  Plan plan = plainPlan();
  plan.cubes.push_back({"Many Cube", "Many", {addGroup(plan.area, count, name)}, false, ""});
  return plan;
}

/// A few measures and members that each name ten of them.
Plan manyReferences(std::uint64_t count) {
  Plan plan = manyMeasures(std::max<std::uint64_t>(1, count / kReferencesOfMember));
  PlainCube& cube = plan.cubes.front();
  Random random(1);
  cube.script = "CALCULATE;\n\n";
  for (std::uint64_t i = 0; i < count; i += kReferencesOfMember) {
    cube.script += label("CREATE MEMBER CURRENTCUBE.[Measures].[R", i / kReferencesOfMember) + "]\n AS ";
    for (std::uint64_t j = i; j < std::min(i + kReferencesOfMember, count); ++j)
      cube.script +=
          (j > i ? " + [Measures].[" : "[Measures].[") + random.pick(cube.groups[0].measures).name + "]";
    cube.script += ",\nFORMAT_STRING = \"0\" ;\n\n";
  }
  return plan;
}

Plan manyCubes(std::uint64_t count) {
  Plan plan{planArea(1, 0, kScriptScale), {}, false};
  Area seen = plan.area;  // what the script of one cube may name
  for (std::uint64_t i = 0; i < count; ++i) {
    Random random(i);
    seen.groups = {addGroup(plan.area, kMeasuresOfCube)};
    plan.cubes.push_back(
        {label("C", i), label("Cube ", i), seen.groups, true, scriptText(seen, random, kMembersOfCube)});
  }
  return plan;
}

Plan longScript(std::uint64_t bytes) {
  Plan plan{planArea(1, 0, kScriptScale), {}, false};
  for (MeasureGroup& group : plan.area.groups)
    for (Measure& measure : group.measures)
      if (measure.column == Attribute::kNone) measure.column = 0;
  Random random(1);
  plan.cubes.push_back({"Many Cube", "Many", plan.area.groups, true, scriptOfSize(plan.area, random, bytes)});
  return plan;
}

Plan planMany(std::string_view kind, std::uint64_t count) {
  if (kind == "equal-names") return equalNames(count);
  if (kind == "attributes") return manyAttributes(count);
  if (kind == "levels") return manyAttributes(count, count);
  if (kind == "columns") return manyColumns(count);
  if (kind == "uneven") return unevenDimensions(count);
  if (kind == "tables") return manyTables(count);
  if (kind == "measures") return manyMeasures(count);
  if (kind == "equal-measures") return manyMeasures(count, "Sales");
  if (kind == "references") return manyReferences(count);
  if (kind == "cubes") return manyCubes(count);
  if (kind == "script") return longScript(count);
  throw std::invalid_argument("no kind of definition is called " + std::string(kind));
}

}  // namespace

void writeMany(std::ostream& out, std::string_view kind, std::uint64_t count) {
  const Plan plan = planMany(kind, count);
  const Area& area = plan.area;
  Random random(1);
  XmlWriter to(&out);
  const Element database(to, "Database", rootNamespaces());
  to.leaf("ID", "Many");
  to.leaf("Name", "Many");
  {
    const Element dimensions(to, "Dimensions");
    for (const Dimension& dimension : area.dimensions) writePlainDimension(to, area, dimension, plan.spread);
  }
  if (!plan.cubes.empty()) {
    const Element cubes(to, "Cubes");
    for (const PlainCube& cube : plan.cubes) writePlainCube(to, area, cube);
  }
  {
    const Element sources(to, "DataSources");
    writeDataSource(to, area);
  }
  const Element views(to, "DataSourceViews");
  writeView(to, area, random);
}

}  // namespace tav::bench
