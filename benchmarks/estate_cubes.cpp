#include <algorithm>

#include "benchmarks/estate_parts.h"
#include "benchmarks/words.h"

namespace tav::bench {
namespace {

constexpr std::size_t kPerspectives = 4;
constexpr std::size_t kAggregations = 9;
constexpr std::size_t kPartitions = 3;
constexpr std::size_t kUsedAttributes = 9;
constexpr std::size_t kMembers = 110;

void writeCubeDimensions(XmlWriter& to, const Area& area, Random& random) {
  const Element dimensions(to, "Dimensions");
  for (const Dimension& dimension : area.dimensions) {
    const Element element(to, "Dimension");
    to.leaf("ID", dimension.id);
    to.leaf("Name", dimension.name);
    writeTranslations(to, random);
    to.leaf("DimensionID", dimension.id);
    const Element attributes(to, "Attributes");
    for (const Attribute& attribute : dimension.attributes) {
      const Element one(to, "Attribute");
      to.leaf("AttributeID", attribute.id);
      if (random.chance(20)) to.leaf("AttributeHierarchyVisible", "false");
    }
  }
}

void writePerspective(XmlWriter& to, const Area& area, std::size_t number, Random& random) {
  const Element perspective(to, "Perspective");
  to.leaf("ID", number == 0 ? "Perspective" : "Perspective " + std::to_string(number));
  to.leaf("Name", area.name + " " + std::string(kThings[number]));
  writeStamps(to);
  {
    const Element dimensions(to, "Dimensions");
    for (std::size_t i = number; i < area.dimensions.size(); i += 2) {
      const Element dimension(to, "Dimension");
      to.leaf("CubeDimensionID", area.dimensions[i].id);
      const Element attributes(to, "Attributes");
      for (const Attribute& attribute : area.dimensions[i].attributes) {
        if (random.chance(30)) continue;
        const Element one(to, "Attribute");
        to.leaf("AttributeID", attribute.id);
      }
    }
  }
  const Element groups(to, "MeasureGroups");
  for (const MeasureGroup& group : area.groups) {
    const Element one(to, "MeasureGroup");
    to.leaf("MeasureGroupID", group.id);
  }
}

void writeMeasure(XmlWriter& to, const Table& table, const Measure& measure, bool linked, Random& random) {
  const Element element(to, "Measure");
  to.leaf("ID", measure.id);
  to.leaf("Name", measure.name);
  if (!measure.aggregation.empty()) to.leaf("AggregateFunction", measure.aggregation);
  if (random.chance(18)) to.leaf("DataType", "Double");
  {
    const Element item(to, "Source");
    const bool counts = measure.column == Attribute::kNone;
    to.leaf("DataType", counts ? "Integer" : dataType(table.columns[measure.column]));
    const Element source(to, "Source",
                         linked   ? R"( xsi:type="MeasureBinding")"
                         : counts ? R"( xsi:type="RowBinding")"
                                  : R"( xsi:type="ColumnBinding")");
    if (linked) {
      to.leaf("MeasureID", measure.id);
    } else {
      to.leaf("TableID", table.id);
      if (!counts) to.leaf("ColumnID", table.columns[measure.column].name);
    }
  }
  if (measure.hidden) to.leaf("Visible", "false");
  to.leaf("FormatString", random.chance(50) ? "#,#" : "Currency");
  if (!measure.expression.empty()) to.leaf("MeasureExpression", measure.expression);
  if (random.chance(80)) writeTranslations(to, random);
}

void writeUsages(XmlWriter& to, const Area& area, const MeasureGroup& group) {
  const Table& table = area.tables[group.table];
  const Element dimensions(to, "Dimensions");
  for (const Usage& usage : group.usages) {
    const Dimension& dimension = area.dimensions[usage.dimension];
    const Element element(to, "Dimension", R"( xsi:type="RegularMeasureGroupDimension")");
    to.leaf("CubeDimensionID", dimension.id);
    const Element attributes(to, "Attributes");
    for (std::size_t i = 0; i < std::min<std::size_t>(dimension.attributes.size(), kUsedAttributes); ++i) {
      const Attribute& attribute = dimension.attributes[i];
      const Element one(to, "Attribute");
      to.leaf("AttributeID", attribute.id);
      {
        const Element keys(to, "KeyColumns");
        if (i == 0)
          writeBinding(to, "KeyColumn", table, usage.column);
        else
          writeBinding(to, "KeyColumn", area.tables[dimension.table], attribute.keys[0]);
      }
      if (i == 0) to.leaf("Type", "Granularity");
    }
  }
}

void writePartition(XmlWriter& to, const Area& area, const MeasureGroup& group, std::size_t year,
                    Random& random) {
  const Table& table = area.tables[group.table];
  const Element partition(to, "Partition");
  const std::string name = group.name + " " + std::to_string(year);
  to.leaf("ID", name);
  to.leaf("Name", name);
  writeStamps(to);
  if (random.chance(24)) {
    const Element source(to, "Source", R"( xsi:type="QueryBinding")");
    to.leaf("DataSourceID", area.sourceId);
    std::string columns;
    for (const Column& column : table.columns) columns += (columns.empty() ? "" : ", ") + column.name;
    to.leaf("QueryDefinition", "SELECT " + columns + "\n\t\tFROM [dbo].[" + table.databaseName +
                                   "]\n\t\tWHERE K0 < '" + std::to_string(year + 1) + "0101'");
  } else {
    const Element source(to, "Source", R"( xsi:type="DsvTableBinding")");
    to.leaf("DataSourceViewID", area.viewId);
    to.leaf("TableID", table.id);
  }
  to.leaf("StorageMode", "Molap");
  to.leaf("ProcessingMode", "Regular");
  const Element caching(to, "ProactiveCaching");
  for (const std::string_view interval :
       {"SilenceInterval", "Latency", "SilenceOverrideInterval", "ForceRebuildInterval"})
    to.leaf(interval, "-PT1S");
}

/// The attributes of one dimension that an aggregation or its design lists.
void writeAggregated(XmlWriter& to, const Dimension& dimension, std::size_t first, std::size_t count) {
  const Element element(to, "Dimension");
  to.leaf("CubeDimensionID", dimension.id);
  if (first >= count) return;
  const Element attributes(to, "Attributes");
  for (std::size_t i = first; i < count; ++i) {
    const Element one(to, "Attribute");
    to.leaf("AttributeID", dimension.attributes[i].id);
    to.leaf("EstimatedCount", std::to_string(17 * (i + 1)));
  }
}

void writeAggregationDesign(XmlWriter& to, const Area& area, const MeasureGroup& group, Random& random) {
  const Element designs(to, "AggregationDesigns");
  const Element design(to, "AggregationDesign");
  to.leaf("ID", group.id);
  to.leaf("Name", group.name);
  writeStamps(to);
  to.leaf("EstimatedRows", std::to_string(random.below(5000000)));
  {
    const Element dimensions(to, "Dimensions");
    for (const Usage& usage : group.usages) {
      const Dimension& dimension = area.dimensions[usage.dimension];
      writeAggregated(to, dimension, 0, dimension.attributes.size());
    }
  }
  const Element aggregations(to, "Aggregations");
  for (std::size_t i = 0; i < kAggregations; ++i) {
    const Element aggregation(to, "Aggregation");
    to.leaf("ID", "Aggregation " + std::to_string(i));
    to.leaf("Name", "Aggregation " + std::to_string(i));
    const Element dimensions(to, "Dimensions");
    for (const Usage& usage : group.usages) {
      const Dimension& dimension = area.dimensions[usage.dimension];
      const std::size_t first = random.below(dimension.attributes.size());
      writeAggregated(to, dimension, first, random.chance(30) ? first + 1 : 0);
    }
  }
}

void writeGroup(XmlWriter& to, const Area& area, const MeasureGroup& group, Random& random) {
  const Element element(to, "MeasureGroup");
  to.leaf("ID", group.id);
  to.leaf("Name", group.name);
  writeStamps(to);
  to.leaf("State", "Unprocessed");
  writeTranslations(to, random);
  {
    const Element measures(to, "Measures");
    for (const Measure& measure : group.measures)
      writeMeasure(to, area.tables[group.table], measure, false, random);
  }
  to.leaf("StorageMode", "Molap");
  to.leaf("ProcessingMode", "Regular");
  writeUsages(to, area, group);
  const bool large = group.usages.size() > 2;
  {
    const Element partitions(to, "Partitions");
    for (std::size_t i = 0; i < (large ? kPartitions : 1); ++i)
      writePartition(to, area, group, 2011 + i, random);
  }
  if (large && random.chance(60)) writeAggregationDesign(to, area, group, random);
}

void writeLinkedGroup(XmlWriter& to, const Area& source, Random& random) {
  const MeasureGroup& group = source.groups.front();
  const Element element(to, "MeasureGroup");
  to.leaf("ID", "Linked " + group.id);
  to.leaf("Name", source.name + " " + group.name);
  writeStamps(to);
  {
    const Element measures(to, "Measures");
    for (const Measure& measure : group.measures)
      writeMeasure(to, source.tables[group.table], measure, true, random);
  }
  const Element link(to, "Source");
  to.leaf("DataSourceID", ".");
  to.leaf("CubeID", source.cubeId);
  to.leaf("MeasureGroupID", group.id);
  to.leaf("Persistence", "Metadata");
}

void writeScript(XmlWriter& to, const Area& area, Random& random, Scale scale) {
  const Element scripts(to, "MdxScripts");
  const Element script(to, "MdxScript");
  to.leaf("ID", "MdxScript");
  to.leaf("Name", "MdxScript");
  writeStamps(to);
  const Element commands(to, "Commands");
  const Element command(to, "Command");
  to.leaf("Text", scriptText(area, random, scaled(kMembers, scale, 1)));
}

}  // namespace

void writeCube(XmlWriter& to, const Area& area, const Area* linked, Random& random, Scale scale) {
  const Element cube(to, "Cube");
  to.leaf("ID", area.cubeId);
  to.leaf("Name", area.name);
  writeStamps(to);
  {
    const Element annotations(to, "Annotations");
    writeAnnotation(to, "UseDiagramDefaultLayout", "true");
    for (std::size_t diagrams = area.groups.size() / 3; diagrams > 0; --diagrams)
      writeDiagram(to, area, 0, area.tables.size(), random);
  }
  to.leaf("Language", "1033");
  to.leaf("Collation", "Latin1_General_CI_AS");
  writeTranslations(to, random);
  writeCubeDimensions(to, area, random);
  if (const std::size_t count = scaled(kPerspectives, scale, 0)) {
    const Element perspectives(to, "Perspectives");
    for (std::size_t i = 0; i < count; ++i) writePerspective(to, area, i, random);
  }
  {
    const Element groups(to, "MeasureGroups");
    for (const MeasureGroup& group : area.groups) writeGroup(to, area, group, random);
    if (linked) writeLinkedGroup(to, *linked, random);
  }
  {
    const Element source(to, "Source");
    to.leaf("DataSourceViewID", area.viewId);
  }
  writeScript(to, area, random, scale);
  writeKpis(to, area, random, scale);
}

}  // namespace tav::bench
