#include <gtest/gtest.h>

#include "tests/host/shell.h"

namespace {

constexpr std::string_view kDefinition = R"(<Database>
  <ID>sales</ID>
  <Name>Sales</Name>
  <DataSources><DataSource><ID>ds</ID><Name>Warehouse</Name>
    <ConnectionString>Provider=SQLNCLI;Password=secret;Data Source=w</ConnectionString>
  </DataSource></DataSources>
  <DataSourceViews><DataSourceView><ID>view</ID><Name>View</Name><DataSourceID>ds</DataSourceID>
    <Schema><xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="View"><xs:complexType>
      <xs:choice><xs:element name="Customer"><xs:complexType><xs:sequence>
        <xs:element name="Key" type="xs:int"/><xs:element name="City" type="xs:int"/>
      </xs:sequence></xs:complexType></xs:element></xs:choice>
    </xs:complexType></xs:element></xs:schema></Schema>
  </DataSourceView></DataSourceViews>
  <Dimensions><Dimension><ID>c</ID><Name>Customer</Name>
    <Source><DataSourceViewID>view</DataSourceViewID></Source>
    <Attributes><Attribute><ID>k</ID><Name>Key</Name><KeyColumns><KeyColumn><DataType>Integer</DataType>
      <Source><TableID>Customer</TableID><ColumnID>Key</ColumnID></Source></KeyColumn></KeyColumns>
    </Attribute></Attributes>
  </Dimension></Dimensions>
</Database>
)";

void writeDefinitions(const tav::test::TemporaryFolder& folder) {
  static_cast<void>(folder.write("sales.xmla", kDefinition));
  static_cast<void>(folder.write("nothing.xmla", "<Create/>"));
  static_cast<void>(folder.write("broken.xmla", "<Database>\n</Databas>"));
  static_cast<void>(folder.write("tabular.bim", "{\"model\": {}}"));
}

TEST(Program, Corpus) {
  tav::test::checkCorpus("host/program.txt", [](const std::string& commands) {
    return tav::test::runCommands(commands, writeDefinitions);
  });
}

}  // namespace
