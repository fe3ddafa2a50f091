#include <algorithm>
#include <stdexcept>
#include <string>

#include "benchmarks/definition.h"
#include "benchmarks/estate_parts.h"

namespace tav::bench {
namespace {

constexpr std::uint64_t kReferencesOfMember = 10;
constexpr std::size_t kLevels = 3;

std::string label(std::string_view prefix, std::uint64_t number) {
  std::string text(prefix);
  return text += std::to_string(number);
}

Area plainArea() {
  Area area;
  area.name = "Many";
  area.viewId = "Many View";
  area.sourceId = "Many DW";
  area.cubeId = "Many Cube";
  return area;
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

void addHierarchy(Dimension& dimension) {
  Hierarchy hierarchy{"Hierarchy", "Tree", {}};
  const std::size_t count = std::min(kLevels, dimension.attributes.size());
  for (std::size_t i = count; i > 0; --i) hierarchy.levels.push_back(i - 1);
  dimension.hierarchies.push_back(std::move(hierarchy));
}

Area equalNames(std::uint64_t count) {
  Area area = plainArea();
  for (std::uint64_t i = 0; i < count; ++i) {
    area.tables.push_back(plainTable(i));
    area.tables.back().friendlyName = "Customer";
    Dimension dimension;
    dimension.id = label("D", i);
    dimension.name = "Customer";
    dimension.table = i;
    addAttribute(dimension, addColumn(area.tables.back()));
    area.dimensions.push_back(std::move(dimension));
  }
  return area;
}

Area manyAttributes(std::uint64_t count) {
  Area area = plainArea();
  area.tables.push_back(plainTable(0));
  Dimension dimension;
  dimension.id = dimension.name = "Wide";
  for (std::uint64_t i = 0; i < count; ++i) addAttribute(dimension, addColumn(area.tables.front()));
  addHierarchy(dimension);
  area.dimensions.push_back(std::move(dimension));
  return area;
}

Area manyTables(std::uint64_t count) {
  Area area = plainArea();
  Dimension dimension;
  dimension.id = dimension.name = "Spread";
  for (std::uint64_t i = 0; i < count; ++i) {
    area.tables.push_back(plainTable(i));
    addAttribute(dimension, addColumn(area.tables.back()));
  }
  area.dimensions.push_back(std::move(dimension));
  return area;
}

Area manyMeasures(std::uint64_t count) {
  Area area = plainArea();
  area.tables.push_back(plainTable(0));
  MeasureGroup group;
  group.id = group.name = "Facts";
  for (std::uint64_t i = 0; i < count; ++i) {
    Measure measure;
    measure.id = measure.name = label("M", i);
    measure.column = addColumn(area.tables.front());
    group.measures.push_back(std::move(measure));
  }
  area.groups.push_back(std::move(group));
  return area;
}

void writePlainAttribute(XmlWriter& to, const Dimension& dimension, std::size_t number, const Table& table) {
  const Attribute& attribute = dimension.attributes[number];
  const Element element(to, "Attribute");
  to.leaf("ID", attribute.id);
  to.leaf("Name", attribute.name);
  {
    const Element keys(to, "KeyColumns");
    writeBinding(to, "KeyColumn", table, attribute.keys[0]);
  }
  if (number > 0 || dimension.attributes.size() == 1) return;
  const Element relationships(to, "AttributeRelationships");
  for (std::size_t i = 1; i < dimension.attributes.size(); ++i) {
    const Element relationship(to, "AttributeRelationship");
    to.leaf("AttributeID", dimension.attributes[i].id);
  }
}

/// A dimension without anything that nobody reads. When `spread`, each attribute is over a table of its own.
void writePlainDimension(XmlWriter& to, const Area& area, const Dimension& dimension, bool spread) {
  const Element element(to, "Dimension");
  to.leaf("ID", dimension.id);
  to.leaf("Name", dimension.name);
  {
    const Element source(to, "Source", R"( xsi:type="DataSourceViewBinding")");
    to.leaf("DataSourceViewID", area.viewId);
  }
  {
    const Element attributes(to, "Attributes");
    for (std::size_t i = 0; i < dimension.attributes.size(); ++i)
      writePlainAttribute(to, dimension, i, area.tables[spread ? i : dimension.table]);
  }
  if (dimension.hierarchies.empty()) return;
  const Element hierarchies(to, "Hierarchies");
  const Element hierarchy(to, "Hierarchy");
  to.leaf("Name", dimension.hierarchies[0].name);
  const Element levels(to, "Levels");
  for (const std::size_t level : dimension.hierarchies[0].levels) {
    const Element one(to, "Level");
    to.leaf("Name", dimension.attributes[level].name);
    to.leaf("SourceAttributeID", dimension.attributes[level].id);
  }
}

/// The cube of `references`: a few measures and members that each name ten of them.
void writeReferences(XmlWriter& to, const Area& area, std::uint64_t count) {
  Random random(1);
  std::string script = "CALCULATE;\n\n";
  for (std::uint64_t i = 0; i < count; i += kReferencesOfMember) {
    script += "CREATE MEMBER CURRENTCUBE.[Measures].[R" + std::to_string(i / kReferencesOfMember) + "]\n AS ";
    for (std::uint64_t j = i; j < std::min(i + kReferencesOfMember, count); ++j)
      script +=
          (j > i ? " + [Measures].[" : "[Measures].[") + random.pick(area.groups[0].measures).name + "]";
    script += ",\nFORMAT_STRING = \"0\" ;\n\n";
  }
  const Element scripts(to, "MdxScripts");
  const Element one(to, "MdxScript");
  const Element commands(to, "Commands");
  const Element command(to, "Command");
  to.leaf("Text", script);
}

void writeGroups(XmlWriter& to, const Area& area) {
  const Element groups(to, "MeasureGroups");
  for (const MeasureGroup& group : area.groups) {
    const Table& table = area.tables[group.table];
    const Element element(to, "MeasureGroup");
    to.leaf("ID", group.id);
    to.leaf("Name", group.name);
    const Element measures(to, "Measures");
    for (const Measure& measure : group.measures) {
      const Element one(to, "Measure");
      to.leaf("ID", measure.id);
      to.leaf("Name", measure.name);
      writeBinding(to, "Source", table, measure.column);
    }
  }
}

void writeManyCube(XmlWriter& to, const Area& area, std::uint64_t references) {
  const Element cubes(to, "Cubes");
  const Element cube(to, "Cube");
  to.leaf("ID", area.cubeId);
  to.leaf("Name", area.name);
  writeGroups(to, area);
  {
    const Element source(to, "Source");
    to.leaf("DataSourceViewID", area.viewId);
  }
  if (references) writeReferences(to, area, references);
}

Area planMany(std::string_view kind, std::uint64_t count) {
  if (kind == "equal-names") return equalNames(count);
  if (kind == "attributes") return manyAttributes(count);
  if (kind == "tables") return manyTables(count);
  if (kind == "measures") return manyMeasures(count);
  if (kind == "references") return manyMeasures(std::max<std::uint64_t>(1, count / kReferencesOfMember));
  throw std::invalid_argument("no kind of definition is called " + std::string(kind));
}

}  // namespace

void writeMany(std::ostream& out, std::string_view kind, std::uint64_t count) {
  const Area area = planMany(kind, count);
  Random random(1);
  XmlWriter to(&out);
  const Element database(to, "Database", rootNamespaces());
  to.leaf("ID", "Many");
  to.leaf("Name", "Many");
  {
    const Element dimensions(to, "Dimensions");
    for (const Dimension& dimension : area.dimensions)
      writePlainDimension(to, area, dimension, kind == "tables");
  }
  if (!area.groups.empty()) writeManyCube(to, area, kind == "references" ? count : 0);
  {
    const Element sources(to, "DataSources");
    writeDataSource(to, area);
  }
  const Element views(to, "DataSourceViews");
  writeView(to, area, random);
}

}  // namespace tav::bench
