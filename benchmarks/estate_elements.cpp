#include <array>
#include <utility>

#include "benchmarks/estate_parts.h"
#include "benchmarks/words.h"

namespace tav::bench {
namespace {

constexpr std::string_view kDesigner = "http://schemas.microsoft.com/DataWarehouse/Designer/1.0:";
constexpr std::array<std::string_view, 2> kLanguages{"3082", "1036"};
constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kDataTypes{
    {{"int", "Integer"},
     {"short", "SmallInt"},
     {"unsignedByte", "UnsignedTinyInt"},
     {"decimal", "Double"},
     {"double", "Double"},
     {"boolean", "Boolean"},
     {"long", "BigInt"},
     {"dateTime", "Date"},
     {"", "WChar"}}};

}  // namespace

void writeStamps(XmlWriter& to) {
  to.leaf("CreatedTimestamp", "2014-02-09T22:06:34.983333Z");
  to.leaf("LastSchemaUpdate", "2014-02-09T22:16:31.366667Z");
}

void writeTranslations(XmlWriter& to, Random& random) {
  const Element translations(to, "Translations");
  for (const std::string_view language : kLanguages) {
    const Element translation(to, "Translation");
    to.leaf("Language", language);
    to.leaf("Caption", foreignCaption(random));
  }
}

void writeAnnotation(XmlWriter& to, std::string_view name, std::string_view value) {
  const Element annotation(to, "Annotation");
  to.leaf("Name", std::string(kDesigner).append(name));
  to.leaf("Value", value);
}

void writeDiagram(XmlWriter& to, const Area& area, std::size_t firstTable, std::size_t tables,
                  Random& random) {
  const Element annotation(to, "Annotation");
  to.leaf("Name", std::string(kDesigner).append("DiagramLayout"));
  const Element value(to, "Value");
  const Element dds(to, "dds", R"( xmlns="")");
  to.empty("diagram", R"( defaultlayout="MSDDS.Rectilinear" defaultlineroute="MSDDS.Rectilinear" version="7")"
                      R"( scale="100" gridsize="150" snap="1" backcolor="15334399" documentviewtype="0")");
  for (std::size_t i = firstTable; i < firstTable + tables; ++i) {
    const std::string left = std::to_string(random.below(60000)), top = std::to_string(random.below(60000));
    const std::string number = std::to_string(i + 1);
    const Element control(
        to, "ddscontrol",
        R"( controlprogid="DdsShapes.DdsObjectManagedBridge")" +
            attribute("tooltip", area.tables[i].friendlyName) + attribute("left", left) +
            attribute("top", top) + attribute("logicalid", number) + attribute("controlid", number) +
            R"( masterid="0" hint1="0" hint2="0" width="5296" height="4002" noresize="0" nomove="0")"
            R"( autodrag="1" usedefaultiddshape="1" selectable="1" visible="1" zorder="7")");
    {
      const Element inner(to, "control");
      to.empty("ddsxmlobjectstreaminitwrapper", R"( binary="000e0000b0140000a20f0000")");
    }
    const Element layout(to, "layoutobject");
    const Element object(to, "ddsxmlobj");
    to.empty("property",
             R"( name="LogicalObject")" + attribute("value", area.tables[i].id) + R"( vartype="8")");
  }
}

std::string_view dataType(const Column& column) {
  for (const auto& [schemaType, name] : kDataTypes)
    if (schemaType == column.type) return name;
  return "WChar";
}

void writeBinding(XmlWriter& to, std::string_view tag, const Table& table, std::size_t column) {
  const Column& bound = table.columns[column];
  const Element binding(to, tag);
  to.leaf("DataType", dataType(bound));
  if (bound.length) to.leaf("DataSize", std::to_string(bound.length));
  const Element source(to, "Source", R"( xsi:type="ColumnBinding")");
  to.leaf("TableID", table.id);
  to.leaf("ColumnID", bound.name);
}

std::string rootNamespaces() {
  return R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
         R"( xmlns:ddl200="http://schemas.microsoft.com/analysisservices/2010/engine/200")"
         R"( xmlns:ddl300="http://schemas.microsoft.com/analysisservices/2011/engine/300")"
         R"( xmlns="http://schemas.microsoft.com/analysisservices/2003/engine")";
}

}  // namespace tav::bench
