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

// estate: imports several files, with the times of the table as T. fake_java: makes a program that plays Java
// from a script on standard input.
constexpr std::string_view kEstatePrelude = R"SH(
estate() {
  xmla-bridge import "$@" >table; code=$?
  sed -E 's/ +[0-9]+\.[0-9]  /  T  /; s/ in [0-9.]+ s/ in T s/' table; rm table; return $code
}
fake_java() {
  mkdir -p java/bin; { echo '#!/bin/sh'; echo 'while [ $# -gt 1 ] && [ "$1" != -cp ]; do shift; done'; cat; } >java/bin/java; chmod +x java/bin/java
  echo 'JAVA_VERSION="17.0.1"' >java/release; export XMLA_BRIDGE_JAVA=$PWD/java/bin/java
}
)SH";

// Process substitution is bash's.
constexpr const char* kInputsPrelude = "bash -s <<'END'\n";
constexpr const char* kInputsEnd = "\nEND\n";

TEST(Program, Corpus) {
  tav::test::checkCorpus("host/program.txt", [](const std::string& commands) {
    return tav::test::runCommands(commands, writeDefinitions);
  });
}

TEST(Program, Inputs) {
  tav::test::checkCorpus("host/inputs.txt", [](const std::string& commands) {
    return tav::test::runCommands(std::string(kInputsPrelude) + commands + kInputsEnd, writeDefinitions);
  });
}

TEST(Program, ManyFiles) {
  tav::test::checkCorpus("host/many_files.txt", [](const std::string& commands) {
    return tav::test::runCommands(std::string(kEstatePrelude) + commands, writeDefinitions);
  });
}

}  // namespace
