#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "tests/support/corpus.h"

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

/// Runs shell commands in a folder with some definitions; gives what they wrote and the last one's exit code.
std::string runCommands(const std::string& commands) {
  const tav::test::TemporaryFolder folder;
  static_cast<void>(folder.write("sales.xmla", kDefinition));
  static_cast<void>(folder.write("nothing.xmla", "<Create/>"));
  static_cast<void>(folder.write("broken.xmla", "<Database>\n</Databas>"));
  static_cast<void>(folder.write("tabular.bim", "{\"model\": {}}"));
  const tav::test::TemporaryFolder results;
  const std::string out = (results.path() / "out").string();
  const std::string err = (results.path() / "err").string();
  const std::string script = results.write("script", commands);
  const int status = std::system(("cd '" + folder.path().string() +
                                  "' && unset NO_COLOR && PATH='" PROGRAM_FOLDER
                                  ":'\"$PATH\" SOURCE_DATE_EPOCH=0 TERM=xterm sh '" +
                                  script + "' >'" + out + "' 2>'" + err + "' </dev/null")
                                     .c_str());
  std::string shown = tav::test::readFile(out);
  if (const std::string errors = tav::test::readFile(err); !errors.empty()) shown += "[stderr]\n" + errors;
  return shown + "[exit " + std::to_string(WEXITSTATUS(status)) + "]";
}

TEST(Program, Corpus) {
  tav::test::checkCorpus("host/program.txt", runCommands);
}

}  // namespace
