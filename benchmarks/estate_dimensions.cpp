#include "benchmarks/estate_parts.h"
#include "benchmarks/words.h"

namespace tav::bench {
namespace {

void writeRelationships(XmlWriter& to, const Dimension& dimension, std::size_t number, Random& random) {
  // The key attribute leads to all others, each other one to its neighbour in every third case.
  const std::size_t first = number + 1;
  const std::size_t end = number == 0 ? dimension.attributes.size()
                          : number % 3 == 1 && first < dimension.attributes.size() ? first + 1
                                                                                   : first;
  if (first >= end) return;
  const Element relationships(to, "AttributeRelationships");
  for (std::size_t i = first; i < end; ++i) {
    const Element relationship(to, "AttributeRelationship");
    to.leaf("AttributeID", dimension.attributes[i].id);
    to.leaf("Name", dimension.attributes[i].name);
    if (random.chance(20)) writeTranslations(to, random);
  }
}

void writeAttribute(XmlWriter& to, const Area& area, const Dimension& dimension, std::size_t number,
                    Random& random) {
  const Attribute& attribute = dimension.attributes[number];
  const Table& table = area.tables[dimension.table];
  const Element element(to, "Attribute");
  to.leaf("ID", attribute.id);
  to.leaf("Name", attribute.name);
  if (random.chance(10)) to.leaf("Description", sentence(random, 9));
  if (number == 0) to.leaf("Usage", "Key");
  {
    const Element keys(to, "KeyColumns");
    for (const std::size_t key : attribute.keys) writeBinding(to, "KeyColumn", table, key);
  }
  if (attribute.nameColumn != Attribute::kNone) writeBinding(to, "NameColumn", table, attribute.nameColumn);
  if (attribute.valueColumn != Attribute::kNone)
    writeBinding(to, "ValueColumn", table, attribute.valueColumn);
  if (random.chance(60)) writeTranslations(to, random);
  writeRelationships(to, dimension, number, random);
  to.leaf("OrderBy", "Key");
  to.leaf("InstanceSelection", "DropDown");
  to.leaf("ddl200:ProcessingState", "Unprocessed");
  to.leaf("ddl300:AttributeHierarchyProcessingState", "Unprocessed");
}

void writeHierarchy(XmlWriter& to, const Dimension& dimension, const Hierarchy& hierarchy, Random& random) {
  const Element element(to, "Hierarchy");
  to.leaf("ID", hierarchy.id);
  to.leaf("Name", hierarchy.name);
  writeTranslations(to, random);
  to.leaf("AllMemberName", "All of " + dimension.name);
  const Element levels(to, "Levels");
  for (const std::size_t level : hierarchy.levels) {
    const Element one(to, "Level");
    to.leaf("ID", dimension.attributes[level].name);
    to.leaf("Name", dimension.attributes[level].name);
    to.leaf("SourceAttributeID", dimension.attributes[level].id);
    writeTranslations(to, random);
  }
}

}  // namespace

void writeDimension(XmlWriter& to, const Area& area, const Dimension& dimension, Random& random) {
  const Element element(to, "Dimension");
  to.leaf("ID", dimension.id);
  to.leaf("Name", dimension.name);
  writeStamps(to);
  if (random.chance(20)) to.leaf("Description", sentence(random, 12));
  {
    const Element annotations(to, "Annotations");
    writeAnnotation(to, "ShowFriendlyNames", "true");
    if (dimension.attributes.size() > 3) {
      writeDiagram(to, area, dimension.table, 1, random);
      writeAnnotation(to, "ShowRelationshipNames", "false");
      writeAnnotation(to, "UseDiagramDefaultLayout", "true");
      writeAnnotation(to, "DiagramViewPortLeft", std::to_string(random.below(9000)));
      writeAnnotation(to, "DiagramViewPortTop", std::to_string(random.below(9000)));
    }
  }
  to.leaf("State", "Unprocessed");
  {
    const Element source(to, "Source", R"( xsi:type="DataSourceViewBinding")");
    to.leaf("DataSourceViewID", area.viewId);
  }
  if (dimension.isTime) to.leaf("Type", "Time");
  to.leaf("Language", "1033");
  to.leaf("UnknownMemberName", "Unknown");
  {
    const Element attributes(to, "Attributes");
    for (std::size_t i = 0; i < dimension.attributes.size(); ++i)
      writeAttribute(to, area, dimension, i, random);
  }
  if (dimension.hierarchies.empty()) return;
  const Element hierarchies(to, "Hierarchies");
  for (const Hierarchy& hierarchy : dimension.hierarchies) writeHierarchy(to, dimension, hierarchy, random);
}

}  // namespace tav::bench
