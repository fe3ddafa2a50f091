#include <gtest/gtest.h>

#include <algorithm>

#include "bridge/import.h"
#include "tests/support/checked_import.h"
#include "tests/support/corpus.h"
#include "tests/support/lineage_text.h"
#include "tests/support/model_laws.h"
#include "tests/support/model_text.h"

namespace {

using Heads = std::vector<std::string_view>;

const Heads kNoCube{"OlapSchema \"\"", "DesignPackage \"Data Source Views\"", "DesignPackage \"Dimensions\"",
                    "PropertyType"};

/// Keeps the warnings as lines "WARNING identifier text".
class Warnings : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    if (event.getSeverity() == tav::kSeverityWarning)
      lines += "WARNING " + event.getMessageId().str() + " " + event.getText().str() + "\n";
  }
  std::string lines;
};

std::string replaced(std::string text, std::string_view place, std::string_view content) {
  return text.replace(text.find(place), place.size(), content);
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&' || c == '<' || c == '>')
      result += c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&gt;";
    else
      result += c;
  }
  return result;
}

/// Imports the database that all cases share with these cubes.
tav::Owned<TAVStoreModel> import(const std::string& cubes, Warnings& warnings) {
  static const std::string database = tav::test::readFile(tav::test::testFile("cubes/database.xmla"));
  const tav::test::TemporaryFolder folder;
  const TAVFile file{TAVString(folder.write("definition.xmla", replaced(database, "CUBES", cubes)))};
  tav::Owned<TAVStoreModel> model(execAsImport("test", file, &warnings));
  EXPECT_EQ(tav::test::brokenLaw(*model), "");
  return model;
}

/// The lines of the text without those whose head is listed and what is indented under them, and without the
/// outermost object's.
std::string without(const Heads& heads, const std::string& text) {
  std::string result;
  std::size_t hiddenUnder = std::string::npos;
  for (std::size_t begin = text.find('\n') + 1; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    const std::string_view line = std::string_view(text).substr(begin, end - begin);
    const std::size_t indent = line.find_first_not_of(' ');
    if (indent <= hiddenUnder) {
      const bool hidden = std::any_of(heads.begin(), heads.end(), [&](std::string_view head) {
        return line.substr(indent).starts_with(head);
      });
      hiddenUnder = hidden ? indent : std::string::npos;
    }
    if (hiddenUnder == std::string::npos) result.append(line.substr(2)).append("\n");
    begin = end + 1;
  }
  return result;
}

std::string showCubes(const std::string& cubes, Heads hidden) {
  Warnings warnings;
  const tav::Owned<TAVStoreModel> model = import(cubes, warnings);
  hidden.insert(hidden.end(), kNoCube.begin(), kNoCube.end());
  return warnings.lines + without(hidden, tav::test::modelText(*model));
}

TEST(Cubes, HaveSchemasPackagesDimensionsAndPerspectives) {
  tav::test::checkCorpus("cubes/cubes.txt", [](const std::string& cubes) { return showCubes(cubes, {}); });
}

std::string inMeasureGroups(const std::string& groups) {
  return "<Cube><ID>s</ID><Name>Sales</Name><Source><DataSourceViewID>v</DataSourceViewID></"
         "Source><MeasureGroups>" +
         groups + "</MeasureGroups></Cube>";
}

TEST(Cubes, MeasuresHaveTheirColumnsAsSources) {
  tav::test::checkCorpus("cubes/measure_groups.txt", [](const std::string& groups) {
    return showCubes(inMeasureGroups(groups), {"OlapSchema"});
  });
}

TEST(Cubes, MeasuresAreDescribed) {
  tav::test::checkCorpus("cubes/measures.txt", [](const std::string& measures) {
    return showCubes(
        inMeasureGroups("<MeasureGroup><Name>G</Name><Measures>" + measures + "</Measures></MeasureGroup>"),
        {"OlapSchema", "Cube \"", "ClassifierMap"});
  });
}

TEST(Cubes, LinkedMeasureGroupsShowTheirSource) {
  tav::test::checkCorpus("cubes/linked_groups.txt", [](const std::string& cubes) {
    return showCubes(cubes, {"OlapSchema", "DesignPackage \"Source\""});
  });
}

TEST(Cubes, KpisHaveFourMeasures) {
  tav::test::checkCorpus("cubes/kpis.txt", [](const std::string& kpis) {
    return showCubes(
        "<Cube><Name>Shop</Name><MeasureGroups><MeasureGroup><Name>Orders</"
        "Name><Measures><Measure><Name>Sales"
        "</Name><Source><Source/></Source></Measure></Measures></MeasureGroup></MeasureGroups><Kpis>" +
            kpis + "</Kpis></Cube>",
        {"OlapSchema", "DesignPackage \"Measure Groups\""});
  });
}

/// The cube that the scripts of the cases belong to.
std::string withScript(const std::string& script) {
  static const std::string cube = tav::test::readFile(tav::test::testFile("cubes/shop.xmla"));
  return replaced(cube, "SCRIPT", escaped(script));
}

/// The names that the calculated measures keep as not found, as the warnings of an import tell them.
std::string warningsOf(const TAVClassifier& calculatedMeasures) {
  std::string lines;
  for (const TAVFeature& feature : calculatedMeasures.features) {
    for (const std::string_view name : tav::test::unresolvedNames(feature)) {
      lines.append("WARNING QVT_SSXMLA_W0013 Could not find source feature '").append(name);
      lines.append("' used in calculated expression '").append(feature.getPath(true).view()).append("'\n");
    }
  }
  return lines;
}

std::string showLineage(const std::string& script) {
  Warnings warnings;
  const tav::Owned<TAVStoreModel> model = import(withScript(script), warnings);
  const TAVPackage* folder = tav::test::cubePackages(*model).front()->getChildPackage("Calculated Measures");
  // What was not found is shown with the measures; a warning of another kind stands before them.
  const std::string expected = warningsOf(static_cast<TAVClassifier&>(*folder->namespaceElements.first()));
  const std::size_t others = warnings.lines.size() - std::min(warnings.lines.size(), expected.size());
  EXPECT_EQ(warnings.lines.substr(others), expected);
  return warnings.lines.substr(0, others) + tav::test::lineageText(*folder);
}

TEST(Cubes, CalculatedMeasuresHaveTheNamesInTheirExpressionsAsSources) {
  tav::test::checkCorpus("cubes/expressions.txt", showLineage);
}

TEST(Cubes, OfTheExamplesCalculateFromTheirSources) {
  tav::test::checkCorpus("cubes/examples.txt", [](const std::string& name) {
    const auto imported = tav::test::importFile(tav::test::testFile("../examples/" + name));
    return imported.model ? tav::test::lineageText(*imported.model) : imported.error;
  });
}

}  // namespace
