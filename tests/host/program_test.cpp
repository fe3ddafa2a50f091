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

void writeHuts(const tav::test::TemporaryFolder& folder) {
  writeDefinitions(folder);
  std::filesystem::copy_file(tav::test::testFile("../examples/murmeltal-huts.asdatabase"),
                             folder.path() / "huts.asdatabase");
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

// project: makes a project of one file each in the folder p. zip_of: makes a zip archive of the named files.
// Process substitution is bash's.
constexpr const char* kInputsPrelude = R"SH(bash -s <<'END'
project() {
  local engine='xmlns="http://schemas.microsoft.com/analysisservices/2003/engine" xmlns:dwd="http://schemas.microsoft.com/DataWarehouse/Designer/1.0"'
  object() { printf '\357\273\277<%s %s dwd:design-time-name="x"><ID>%s</ID><Name>%s</Name>%s</%s>\n' "$1" "$engine" "$2" "$2" "$3" "$1"; }
  item() { printf '<ProjectItem><Name>%s</Name><FullPath>%s</FullPath>%s</ProjectItem>' "$1" "$1" "$2"; }
  mkdir -p p/bin; cd p
  object Database Shop '<Dimensions /><Language>1031</Language>' >Shop.database
  object DataSource ds '<ConnectionString>Provider=SQLNCLI;Data Source=w</ConnectionString>' >ds.ds
  object DataSourceView view "$(sed -n '/<DataSourceID>/p; /<Schema>/,/<\/Schema>/p' ../sales.xmla | sed 's/.*<DataSourceID>/<DataSourceID>/')" >view.dsv
  object Dimension c "$(sed -n '/<Source><DataSourceViewID>/,/<\/Attributes>/p' ../sales.xmla)" >Customer.dim
  object Cube Sales '<Dimensions><Dimension><ID>c</ID><Name>Customer</Name><DimensionID>c</DimensionID></Dimension></Dimensions><MeasureGroups><MeasureGroup><ID>g</ID><Name>Orders</Name><Measures><Measure><ID>n</ID><Name>City Sum</Name><Source><DataType>Integer</DataType><Source xsi:type="ColumnBinding"><TableID>Customer</TableID><ColumnID>City</ColumnID></Source></Source></Measure></Measures><Partitions /></MeasureGroup></MeasureGroups>' >Sales.cube
  printf '<Cube %s dwd:design-time-name="y"><ID>other</ID><MeasureGroups><MeasureGroup><ID>g</ID><Partitions><Partition dwd:design-time-name="z"><ID>t</ID><Name>This year</Name></Partition></Partitions></MeasureGroup></MeasureGroups></Cube>' "$engine" >Sales.partitions
  { printf '<Project xmlns:dwd="http://schemas.microsoft.com/DataWarehouse/Designer/1.0"><Database><FullPath>Shop.database</FullPath></Database>'
    echo "<Cubes>$(item SALES.cube "<Dependencies>$(item Sales.partitions)</Dependencies>")</Cubes><Dimensions>$(item Customer.dim)</Dimensions>"
    echo "<DataSources>$(item ds.ds)</DataSources><DataSourceViews>$(item view.dsv)</DataSourceViews></Project>"; } >Shop.dwproj
  echo "<DeploymentTarget><Database>Shop on A &amp; B</Database></DeploymentTarget>" >bin/Shop.deploymenttargets
  cd ..
}
zip_of() { python3 -c 'import sys, zipfile
with zipfile.ZipFile(sys.argv[1], "w", zipfile.ZIP_DEFLATED) as archive:
    for name in sys.argv[2:]: archive.write(name)' "$@"; }
utf16() { iconv -f UTF-8 -t UTF-16LE; }
)SH";
// asked: what queries of the estate e.db give. at: imports at a time in seconds, and shows the last line.
constexpr std::string_view kEstatesPrelude = R"SH(
asked() { sqlite3 e.db "$@"; }
at() { SOURCE_DATE_EPOCH=$1 xmla-bridge import "${@:2}" --estate e.db 2>/dev/null | tail -1 | sed -E 's/ in [0-9.]+ s/ in T s/'; }
)SH";

// on: runs a command on a terminal of so many columns, and of 100 rows or as many as are named; escapes are
// shown as \e.
constexpr std::string_view kTerminalPrelude = R"SH(
on() { script -qec "stty cols $1 rows ${3:-100}; $2" /dev/null | sed 's/\r$//; s/\x1b/\\e/g'; }
xmla-bridge import huts.asdatabase -o huts.xml --quiet >huts.txt
)SH";
// offered: what bash offers for the last of the words, each as it stands in the line.
constexpr std::string_view kCompletionPrelude = R"SH(
. "$COMPLETION"
compopt() { :; }
offered() { COMP_WORDS=(xmla-bridge "$@") COMP_CWORD=$# COMPREPLY=(); _xmla_bridge; printf '%s\n' "${COMPREPLY[@]:-nothing}" | LC_ALL=C sort; }
xmla-bridge import huts.asdatabase -o huts.xml --quiet >huts.txt
)SH";
constexpr const char* kInputsEnd = "\nEND\n";

TEST(Program, Corpus) {
  tav::test::checkCorpus("host/program.txt", [](const std::string& commands) {
    return tav::test::runCommands(commands, writeDefinitions);
  });
}

TEST(Program, Inputs) {
  tav::test::checkCorpus("host/inputs.txt", [](const std::string& commands) {
    return tav::test::runCommands(
        "export CHANGING='" CHANGING "'\n" + std::string(kInputsPrelude) + commands + kInputsEnd,
        writeDefinitions);
  });
}

TEST(Program, ManyFiles) {
  tav::test::checkCorpus("host/many_files.txt", [](const std::string& commands) {
    return tav::test::runCommands(std::string(kEstatePrelude) + commands, writeDefinitions);
  });
}

TEST(Program, Terminal) {
  tav::test::checkCorpus("host/terminal.txt", [](const std::string& commands) {
    return tav::test::runCommands(std::string(kTerminalPrelude) + commands, writeHuts);
  });
}

TEST(Program, Completion) {
  tav::test::checkCorpus("host/completion.txt", [](const std::string& commands) {
    std::string script = "export COMPLETION='" COMPLETION "'\n" + std::string(kInputsPrelude);
    script.append(kCompletionPrelude).append(commands).append(kInputsEnd);
    return tav::test::runCommands(script, writeHuts);
  });
}

TEST(Program, Estates) {
  tav::test::checkCorpus("host/estates.txt", [](const std::string& commands) {
    std::string script(kInputsPrelude);
    script.append(kEstatePrelude).append(kEstatesPrelude).append(commands).append(kInputsEnd);
    return tav::test::runCommands(script, writeDefinitions);
  });
}

// What uses a model beside it.
TEST(Program, Reports) {
  tav::test::checkCorpus("host/reports.txt", [](const std::string& commands) {
    return tav::test::runCommands(
        std::string(kInputsPrelude) + commands + kInputsEnd, [](const tav::test::TemporaryFolder& folder) {
          namespace fs = std::filesystem;
          const fs::path model = folder.path() / "Ferry Line.SemanticModel";
          fs::create_directory(model);
          fs::copy_file(fs::path(EXAMPLES) / "ferry-line.bim", model / "model.bim");
          fs::copy(tav::test::testFile("host/reports"), folder.path(), fs::copy_options::recursive);
        });
  });
}

// Definitions of very many small files, made for the test: all of them are read, in time in proportion.
TEST(Program, ManyParts) {
  tav::test::checkCorpus("host/many_parts.txt", [](const std::string& commands) {
    return tav::test::runCommands(std::string(kInputsPrelude) + commands + kInputsEnd,
                                  [](const tav::test::TemporaryFolder& folder) {
                                    std::filesystem::copy_file(tav::test::testFile("host/many_parts.py"),
                                                               folder.path() / "many_parts.py");
                                  });
  });
}

// damaged: breaks each file of a project of Power BI in turn by the command that follows, which is given the
// file, imports what is left, and tells the exit code and what was said. Nobody is who may not read all
// files.
constexpr std::string_view kBrokenPrelude = R"SH(
nobody() { if [ "$(id -u)" = 0 ]; then setpriv --reuid 65534 --regid 65534 --clear-groups "$@"; else "$@"; fi; }
read_project() { xmla-bridge import "$1" -o ../m.xml; }
damaged() {
  (cd whole; find . -type f | LC_ALL=C sort) | while IFS= read -r file; do
    rm -rf shop; cp -r whole shop; cd shop; "$@" "$file"
    case $file in *.pbip) input=$file ;; *) input=. ;; esac
    "${reader:-read_project}" $input >/dev/null 2>../said; code=$?; cd ..
    echo "$code ${file#./}"; grep -E '_[WEF][0-9]+\]' said | sed 's#\./##g; s/^/    /'
  done
}
)SH";

// Each run ends with a model or one error, and names the file where something is lost.
TEST(Program, BrokenProject) {
  tav::test::checkCorpus("host/broken_project.txt", [](const std::string& commands) {
    std::string script(kInputsPrelude);
    script.append(kBrokenPrelude).append(commands).append(kInputsEnd);
    return tav::test::runCommands(script, [](const tav::test::TemporaryFolder& folder) {
      namespace fs = std::filesystem;
      fs::copy(tav::test::testFile("host/pbip"), folder.path() / "whole", fs::copy_options::recursive);
    });
  });
}

}  // namespace
