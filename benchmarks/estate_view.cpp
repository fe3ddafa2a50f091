#include "benchmarks/estate_parts.h"

namespace tav::bench {
namespace {

/// A GUID as designers give one to everything they draw.
std::string designTimeName(Random& random) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  std::uint64_t bits = 0;
  for (unsigned i = 0; i < 32; ++i) {
    if (i % 16 == 0) bits = random.next();
    if (i == 8 || i == 12 || i == 16 || i == 20) text += '-';
    text += kDigits[bits & 15];
    bits >>= 4;
  }
  return attribute("msprop:design-time-name", text);
}

void writeColumn(XmlWriter& to, const Column& column, bool isKey, Random& random) {
  std::string attributes = attribute("name", column.name);
  if (!column.expression.empty()) attributes += R"( msdata:ReadOnly="true" msprop:IsLogical="True")";
  if (isKey) attributes += R"( msdata:ReadOnly="true" msdata:AutoIncrement="true")";
  attributes += designTimeName(random);
  if (column.expression.empty()) {
    attributes +=
        attribute("msprop:DbColumnName", column.name) + attribute("msprop:FriendlyName", column.name);
  } else {
    attributes += attribute("msprop:ComputedColumnExpression", column.expression);
  }
  if (!column.type.empty()) attributes += attribute("type", "xs:" + column.type);
  if (!isKey) attributes += R"( minOccurs="0")";
  if (!column.type.empty()) return to.empty("xs:element", attributes);
  const Element element(to, "xs:element", attributes);
  const Element simple(to, "xs:simpleType");
  const Element restriction(to, "xs:restriction", R"( base="xs:string")");
  to.empty("xs:maxLength", attribute("value", std::to_string(column.length)));
}

void writeTable(XmlWriter& to, const Table& table, Random& random) {
  std::string attributes = attribute("name", table.id) + designTimeName(random);
  if (table.query.empty()) {
    attributes += attribute("msprop:FriendlyName", table.friendlyName) + R"( msprop:DbSchemaName="dbo")" +
                  attribute("msprop:DbTableName", table.databaseName) + R"( msprop:TableType="Table")";
  } else {
    attributes += R"( msprop:IsLogical="True")" + attribute("msprop:FriendlyName", table.friendlyName) +
                  attribute("msprop:DbTableName", table.friendlyName) + R"( msprop:TableType="View")" +
                  attribute("msprop:QueryDefinition", table.query) +
                  R"( msprop:QueryBuilder="SpecificQueryBuilder")";
  }
  const Element element(to, "xs:element", attributes);
  const Element complex(to, "xs:complexType");
  const Element sequence(to, "xs:sequence");
  for (std::size_t i = 0; i < table.columns.size(); ++i) writeColumn(to, table.columns[i], i == 0, random);
}

std::string constraintName(const Area& area, std::size_t table) {
  return table == 0 ? "Constraint1" : area.tables[table].id + "_Constraint1";
}

void writeConstraints(XmlWriter& to, const Area& area) {
  for (const Dimension& dimension : area.dimensions) {
    const Table& table = area.tables[dimension.table];
    const Element unique(to, "xs:unique",
                         attribute("name", constraintName(area, dimension.table)) +
                             (dimension.table ? R"( msdata:ConstraintName="Constraint1")" : "") +
                             R"( msdata:PrimaryKey="true")");
    to.empty("xs:selector", attribute("xpath", ".//" + table.id));
    to.empty("xs:field", attribute("xpath", table.columns[0].name));
  }
  for (const MeasureGroup& group : area.groups) {
    for (const Usage& usage : group.usages) {
      const Table& table = area.tables[group.table];
      const std::size_t parent = area.dimensions[usage.dimension].table;
      const Element keyref(to, "xs:keyref",
                           attribute("name", "FK_" + table.id + "_" + std::to_string(usage.column)) +
                               attribute("refer", constraintName(area, parent)));
      to.empty("xs:selector", attribute("xpath", ".//" + table.id));
      to.empty("xs:field", attribute("xpath", table.columns[usage.column].name));
    }
  }
}

void writeSchema(XmlWriter& to, const Area& area, Random& random) {
  std::string set;
  for (const char c : area.viewId) {
    if (c == ' ')
      set += "_x0020_";
    else
      set += c;
  }
  const Element schema(to, "Schema");
  {
    const Element xs(to, "xs:schema",
                     attribute("id", set) + R"( xmlns="" xmlns:xs="http://www.w3.org/2001/XMLSchema")"
                                            R"( xmlns:msdata="urn:schemas-microsoft-com:xml-msdata")"
                                            R"( xmlns:msprop="urn:schemas-microsoft-com:xml-msprop")");
    const Element data(to, "xs:element",
                       attribute("name", set) + R"( msdata:IsDataSet="true" msdata:UseCurrentLocale="true")" +
                           designTimeName(random));
    {
      const Element complex(to, "xs:complexType");
      const Element choice(to, "xs:choice", R"( minOccurs="0" maxOccurs="unbounded")");
      for (const Table& table : area.tables) writeTable(to, table, random);
    }
    writeConstraints(to, area);
  }
  to.empty(set, R"( xmlns="")");
}

}  // namespace

void writeDataSource(XmlWriter& to, const Area& area) {
  const Element source(to, "DataSource", R"( xsi:type="RelationalDataSource")");
  to.leaf("ID", area.sourceId);
  to.leaf("Name", area.name + " Warehouse");
  writeStamps(to);
  to.leaf("ConnectionString",
          "Provider=SQLNCLI11.1;Data Source=warehouse.example;Integrated Security=SSPI;Initial Catalog=" +
              area.name);
  to.leaf("ConnectionStringSecurity", "Unchanged");
  to.leaf("Timeout", "PT0S");
}

void writeView(XmlWriter& to, const Area& area, Random& random) {
  const Element view(to, "DataSourceView");
  to.leaf("ID", area.viewId);
  to.leaf("Name", area.viewId);
  writeStamps(to);
  {
    const Element annotations(to, "Annotations");
    writeAnnotation(to, "CurrentLayout", "_ALL_TABLES_");
    // A designer keeps one diagram of everything and one of each subject.
    for (std::size_t diagrams = area.groups.size() / 2; diagrams > 0; --diagrams)
      writeDiagram(to, area, 0, area.tables.size(), random);
  }
  to.leaf("DataSourceID", area.sourceId);
  writeSchema(to, area, random);
}

}  // namespace tav::bench
