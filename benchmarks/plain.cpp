#include "benchmarks/plain.h"

#include "benchmarks/estate_parts.h"

namespace tav::bench {
namespace {

void writeAttribute(XmlWriter& to, const Dimension& dimension, std::size_t number, const Table& table) {
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

void writeHierarchies(XmlWriter& to, const Dimension& dimension) {
  const Element hierarchies(to, "Hierarchies");
  for (const Hierarchy& planned : dimension.hierarchies) {
    const Element hierarchy(to, "Hierarchy");
    to.leaf("Name", planned.name);
    const Element levels(to, "Levels");
    for (const std::size_t level : planned.levels) {
      const Element one(to, "Level");
      to.leaf("Name", dimension.attributes[level].name);
      to.leaf("SourceAttributeID", dimension.attributes[level].id);
    }
  }
}

void writeCubeDimensions(XmlWriter& to, const Area& area) {
  const Element dimensions(to, "Dimensions");
  for (const Dimension& dimension : area.dimensions) {
    const Element element(to, "Dimension");
    to.leaf("ID", dimension.id);
    to.leaf("Name", dimension.name);
    to.leaf("DimensionID", dimension.id);
  }
}

void writeGroups(XmlWriter& to, const Area& area, const std::vector<MeasureGroup>& groups) {
  const Element element(to, "MeasureGroups");
  for (const MeasureGroup& group : groups) {
    const Element one(to, "MeasureGroup");
    to.leaf("ID", group.id);
    to.leaf("Name", group.name);
    const Element measures(to, "Measures");
    for (const Measure& planned : group.measures) {
      const Element measure(to, "Measure");
      to.leaf("ID", planned.id);
      to.leaf("Name", planned.name);
      writeBinding(to, "Source", area.tables[group.table], planned.column);
    }
  }
}

void writeScript(XmlWriter& to, const std::string& text) {
  const Element scripts(to, "MdxScripts");
  const Element script(to, "MdxScript");
  const Element commands(to, "Commands");
  const Element command(to, "Command");
  to.leaf("Text", text);
}

}  // namespace

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
      writeAttribute(to, dimension, i, area.tables[spread ? i : dimension.table]);
  }
  if (!dimension.hierarchies.empty()) writeHierarchies(to, dimension);
}

void writePlainCube(XmlWriter& to, const Area& area, const PlainCube& cube) {
  const Element element(to, "Cube");
  to.leaf("ID", cube.id);
  to.leaf("Name", cube.name);
  if (cube.hasDimensions) writeCubeDimensions(to, area);
  writeGroups(to, area, cube.groups);
  {
    const Element source(to, "Source");
    to.leaf("DataSourceViewID", area.viewId);
  }
  if (!cube.script.empty()) writeScript(to, cube.script);
}

}  // namespace tav::bench
