#include <gtest/gtest.h>

#include <random>

#include "tests/support/checked_import.h"
#include "tests/support/lineage_text.h"

// Definitions that no designer writes. Every import is held to the laws of all imports: in time, and to a
// model that can be saved, loaded and exported.

namespace {

using tav::test::DocumentImporter;
using tav::test::Imported;

std::string repeated(std::string_view part, std::size_t times) {
  std::string text;
  text.reserve(part.size() * times);
  for (std::size_t i = 0; i < times; ++i) text += part;
  return text;
}

std::string cube(const std::string& content) {
  return "<Database><Cubes><Cube><Name>Cube</Name>" + content + "</Cube></Cubes></Database>";
}

std::string measureGroup(const std::string& measures) {
  return "<MeasureGroups><MeasureGroup><Name>Group</Name><Measures>" + measures +
         "</Measures></MeasureGroup></MeasureGroups>";
}

const std::string kMeasure = "<Measure><Name>m</Name><Source><Source/></Source></Measure>";

std::string withScript(const std::string& script) {
  return cube(measureGroup(kMeasure) + "<MdxScripts><MdxScript><Commands><Command><Text><![CDATA[" + script +
              "]]></Text></Command></Commands></MdxScript></MdxScripts>");
}

std::string withExpression(const std::string& expression) {
  return withScript("CREATE MEMBER CURRENTCUBE.[Measures].[x] AS " + expression + ";\nCALCULATE;");
}

/// The features of the cube's calculated measures.
const tav::Parts<TAVFeature>& calculatedMeasures(const Imported& imported) {
  const TAVPackage* folder =
      tav::test::cubePackages(*imported.model).front()->getChildPackage("Calculated Measures");
  return static_cast<const TAVClassifier*>(folder->namespaceElements.first())->features;
}

/// How many sources the first calculated measure has; -1 when there is none.
std::int32_t sourcesOfFirst(const Imported& imported) {
  const TAVFeature* measure = calculatedMeasures(imported).first();
  if (!measure) return -1;
  const TAVFeatureMap* map = measure->getDestinationOfFeatureMap();
  return map ? map->sourceFeatures.getCount() : 0;
}

TEST(HostileCubes, QuotesAndBracketsThatNothingCloses) {
  DocumentImporter importer;
  for (const char* open : {"\"", "'", "[", "(", "{", "/*", "CASE ", "f(", "&[", "[m].", "("}) {
    for (const char* close : {"", ")", "}", "]", "\"", " END", "*/", "]]", "''"}) {
      const std::string expression = "[m] + " + std::string(open) + " [m] " + close + " + [m]";
      EXPECT_EQ(sourcesOfFirst(importer.import(withExpression(expression))), 1) << expression;
    }
  }
}

TEST(HostileCubes, NestingOfAnyDepth) {
  constexpr std::size_t kDepth = 100000;
  DocumentImporter importer;
  for (const char* open :
       {"(", "{", "f(", "KpiValue(", "CASE ", "NOT ", "-", "[a].[b].f(", "{(", "CASE WHEN "}) {
    const std::string expression = "[m] + " + repeated(open, kDepth);
    EXPECT_EQ(sourcesOfFirst(importer.import(withExpression(expression))), 1) << open;
    EXPECT_EQ(sourcesOfFirst(importer.import(withExpression(expression + "1" + repeated(")", kDepth)))), 1)
        << open;
  }
}

TEST(HostileCubes, CallsOfKpisInEachOther) {
  constexpr std::size_t kDepth = 500000;
  const std::string kpi =
      "<Kpis><Kpi><Name>k</Name><Value>" + repeated("KpiValue(", kDepth) + "[m]</Value></Kpi></Kpis>";
  DocumentImporter importer;
  const Imported imported = importer.import(cube(measureGroup(kMeasure) + kpi));
  const TAVPackage* folder = tav::test::cubePackages(*imported.model).front()->getChildPackage("KPIs");
  EXPECT_EQ(tav::test::lineageText(*folder),
            "k/Value\n  <- /Cubes/Cube/Measure Groups/Group/m\nk/Goal\nk/Status\nk/Trend\n");
}

TEST(HostileCubes, ScriptsOfAnyCharacters) {
  std::mt19937 random(4);
  const std::vector<std::string> pieces{"CREATE",
                                        "MEMBER",
                                        " ",
                                        "\n",
                                        "\t",
                                        "c.[Measures].",
                                        "[x]",
                                        " AS ",
                                        ";",
                                        "\x7F",
                                        "\xC2\x85",
                                        "\xEF\xBF\xBD",
                                        "\xF0\x9F\x8E\xB2",
                                        "\xEF\xBB\xBF",
                                        "&",
                                        "<",
                                        "\\",
                                        "%",
                                        "'",
                                        "\"",
                                        "[",
                                        "]",
                                        ".",
                                        ",",
                                        "/*",
                                        "*/",
                                        "--",
                                        "//",
                                        "FORMAT_STRING",
                                        "=",
                                        "m"};
  DocumentImporter importer;
  for (int i = 0; i < 200; ++i) {
    std::string script = "CREATE MEMBER c.[Measures].[x] AS [m] ";
    for (int j = 0; j < 60; ++j) script += pieces[random() % pieces.size()];
    EXPECT_TRUE(importer.import(withScript(script)).model) << script;
  }
}

TEST(HostileCubes, ScriptOfTenMegabytesWithManyMembers) {
  constexpr int kMembers = 100000;
  std::string script;
  for (int i = 0; i < kMembers; ++i) {
    const std::string number = std::to_string(i);
    script.append("CREATE MEMBER CURRENTCUBE.[Measures].[Calculated ").append(number);
    script.append("]\n AS [m] + [Calculated ").append(std::to_string(i / 2)).append("] - [Gone ");
    script.append(number).append("], VISIBLE = 1;\n");
  }
  ASSERT_GT(script.size(), 10000000U);
  DocumentImporter importer;
  const Imported imported = importer.import(withScript(script));
  EXPECT_EQ(calculatedMeasures(imported).getCount(), kMembers);
  EXPECT_EQ(sourcesOfFirst(imported), 2);
}

TEST(HostileCubes, MeasuresOfOneName) {
  constexpr int kMeasures = 10000;
  DocumentImporter importer;
  const Imported plain = importer.import(cube(measureGroup(repeated(kMeasure, kMeasures))));
  const auto* package = tav::test::cubePackages(*plain.model).front();
  const auto* made = static_cast<const TAVCube*>(package->namespaceElements.first());
  EXPECT_TRUE(made->features.get("m/10000"));
  EXPECT_EQ(made->features.getCount(), kMeasures);

  const std::string member = "CREATE MEMBER CURRENTCUBE.[Measures].[m] AS [m];\n";
  const Imported calculated = importer.import(withScript(repeated(member, kMeasures)));
  EXPECT_EQ(calculatedMeasures(calculated).getCount(), kMeasures);
}

TEST(HostileCubes, ReferencesInOneExpression) {
  constexpr int kReferences = 100000;
  std::string measures;
  std::string sum;
  std::string unknown;
  for (int i = 0; i < kReferences; ++i) {
    const std::string name = "m" + std::to_string(i);
    measures += "<Measure><Name>" + name + "</Name><Source><Source/></Source></Measure>";
    sum += (i > 0 ? " + [" : "[") + name + "]";
    unknown += (i > 0 ? " + [u" : "[u") + name + "]";
  }
  DocumentImporter importer;
  const std::string groups = measureGroup(measures);
  const auto script = [&](const std::string& expression) {
    return cube(groups + "<MdxScripts><MdxScript><Commands><Command><Text>CREATE MEMBER c.Measures.[x] AS " +
                expression + ";</Text></Command></Commands></MdxScript></MdxScripts>");
  };
  EXPECT_EQ(sourcesOfFirst(importer.import(script(sum))), kReferences);
  EXPECT_EQ(sourcesOfFirst(importer.import(withExpression(unknown))), 0);
  EXPECT_EQ(sourcesOfFirst(importer.import(withExpression("[m]" + repeated(" + [m]", kReferences)))), 1);
}

TEST(HostileCubes, LinkedGroupsWithManyListings) {
  constexpr int kListings = 10000;
  std::string measures;
  std::string listings;
  for (int i = 0; i < kListings; ++i) {
    const std::string id = "m" + std::to_string(i);
    measures += "<Measure><ID>" + id + "</ID><Name>m</Name><Source><Source/></Source></Measure>";
    listings += "<Measure><Source><Source><MeasureID>" + id + "</MeasureID></Source></Source></Measure>";
  }
  const std::string group =
      "<MeasureGroup><ID>g</ID><Name>Group</Name><Measures>" + measures + "</Measures></MeasureGroup>";
  const std::string linked =
      "<MeasureGroup><ID>l</ID><Source><CubeID>a</CubeID><MeasureGroupID>g</MeasureGroupID></"
      "Source><Measures>" +
      listings + "</Measures></MeasureGroup>";
  DocumentImporter importer;
  const Imported imported =
      importer.import("<Database><Cubes><Cube><ID>b</ID><Name>B</Name><MeasureGroups>" + linked +
                      "</MeasureGroups></Cube><Cube><ID>a</ID><Name>A</Name><MeasureGroups>" + group +
                      "</MeasureGroups></Cube></Cubes></Database>");
  const auto* package = tav::test::cubePackages(*imported.model).front();
  EXPECT_EQ(static_cast<const TAVCube*>(package->namespaceElements.first())->features.getCount(), kListings);
}

}  // namespace
