// Definitions in TMDL: each is the model that the same definition in JSON is, and what cannot be read is
// told.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "framework/std/text.h"
#include "tests/support/model_text.h"
#include "tests/support/timing.h"
#include "tests/tabular/details_text.h"
#include "tests/tabular/importer_run.h"

// The texts that tests put together are read by people, and few.
// NOLINTBEGIN(performance-inefficient-string-concatenation)
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using tav::test::ImporterRun;

constexpr std::string_view kFileMark = ">>> ";
constexpr std::string_view kEscaped = " escaped";
constexpr std::string_view kJsonFile = "FILE.bim";

bool isLines(const json& value) {
  return value.is_array() && !value.empty() &&
         std::all_of(value.begin(), value.end(), [](const json& line) { return line.is_string(); });
}

/// Texts as arrays of lines and as one text, line ends of either kind, and members in any order, are the
/// same.
json plain(json value) {
  for (std::vector<json*> open{&value}; !open.empty();) {
    json& part = *open.back();
    open.pop_back();
    if (isLines(part)) {
      std::string joined;
      for (const json& line : part) joined += (&line == &part.front() ? "" : "\n") + line.get<std::string>();
      part = joined;
    }
    if (part.is_string()) {
      auto& text = part.get_ref<std::string&>();
      for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at))
        text.erase(at, 1);
    } else if (part.is_structured()) {
      for (json& inner : part) open.push_back(&inner);
    }
  }
  return value;
}

std::string plainLine(const std::string& line) {
  const std::size_t begin = line.find("PropertyValue \"\" value=\"");
  const std::size_t end = line.rfind("\" propertyType->");
  if (begin == std::string::npos || end == std::string::npos) return line;
  const std::size_t open = line.find('"', line.find("value=")) + 1;
  const json value = json::parse(tav::test::unescape(line.substr(open, end - open)), nullptr, false);
  if (!value.is_structured()) return line;
  return line.substr(0, open) + plain(value).dump() + line.substr(end);
}

/// The model without the order of its properties.
std::string comparable(const TAVModel& model) {
  std::vector<std::string> lines;
  std::istringstream text(tav::test::modelText(model));
  const auto isProperty = [](const std::string& line) {
    return line.find_first_not_of(' ') == line.find("PropertyValue") || line.starts_with("  PropertyType");
  };
  for (std::string line; std::getline(text, line);) lines.push_back(plainLine(line));
  for (auto first = lines.begin(); first != lines.end();) {
    const auto last = std::find_if_not(first, lines.end(), isProperty);
    std::sort(first, last);
    first = last == lines.end() ? last : last + 1;
  }
  std::string joined;
  for (const std::string& line : lines) joined += line + "\n";
  return joined;
}

/// The first line in which two models differ, of both; empty when they are equal.
std::string difference(const TAVModel& a, const TAVModel& b) {
  std::istringstream left(comparable(a));
  std::istringstream right(comparable(b));
  for (;;) {
    std::string inLeft;
    std::string inRight;
    const bool more = static_cast<bool>(std::getline(left, inLeft));
    const bool moreRight = static_cast<bool>(std::getline(right, inRight));
    if (!more && !moreRight) return "";
    if (inLeft != inRight) return "TMDL: " + inLeft + "\nJSON: " + inRight;
  }
}

/// What the definition says beyond its model, whatever the order: a line each.
std::vector<std::string> linesOfDetails(const ImporterRun& run) {
  std::vector<std::string> lines;
  std::istringstream text(run.details ? tav::test::detailsText(*run.details) : "");
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

/// The details that only one of two definitions has; empty when they are equal.
std::string differenceOfDetails(const ImporterRun& a, const ImporterRun& b) {
  const std::vector<std::string> left = linesOfDetails(a);
  const std::vector<std::string> right = linesOfDetails(b);
  std::vector<std::string> other;
  std::set_symmetric_difference(left.begin(), left.end(), right.begin(), right.end(),
                                std::back_inserter(other));
  std::string joined;
  for (const std::string& line : other) joined += line + "\n";
  return joined;
}

std::string withoutFolder(std::string text, const fs::path& folder) {
  const std::string place = folder.string();
  for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place, at)) {
    text.erase(at, place.size());
    if (at < text.size() && text[at] == '/') text.erase(at, 1);
  }
  return text;
}

/// Features of tables and measures, a line each.
std::string featuresOf(const TAVModel& model) {
  std::string text;
  for (const auto& [path, sources] : tav::test::sourcesOf(model))
    for (const std::string_view folder : {"/Dimensions/", "/Cubes/Model/Calculated Measures/"})
      if (path.starts_with(folder)) text += path.substr(folder.size()) + "\n";
  return text;
}

/// Files of a case: the text behind each mark, or all of it as one.
std::vector<std::pair<std::string, std::string>> filesOf(const std::string& input) {
  std::vector<std::pair<std::string, std::string>> files;
  if (!input.starts_with(kFileMark)) files.emplace_back("FILE.tmdl", "");
  std::istringstream lines(input);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(kFileMark))
      files.emplace_back(line.substr(kFileMark.size()), "");
    else
      files.back().second += line + "\n";
  }
  for (auto& [name, text] : files) {
    if (!name.ends_with(kEscaped)) continue;
    name.resize(name.size() - kEscaped.size());
    text.pop_back();
    text = tav::test::unescape(text);
  }
  return files;
}

std::string show(const std::string& input) {
  const tav::test::TemporaryFolder folder;
  fs::create_directory(folder.path() / "FOLDER");
  std::string definition;
  std::size_t count = 0;
  for (const auto& [name, text] : filesOf(input)) {
    if (name == kJsonFile) {
      definition = folder.write(name, text);
      continue;
    }
    const fs::path place = folder.path() / "FOLDER" / name;
    fs::create_directories(place.parent_path());
    std::ofstream(place, std::ios::binary) << text;
    ++count;
  }
  const bool single = count == 1 && fs::exists(folder.path() / "FOLDER/FILE.tmdl");
  const ImporterRun run =
      tav::test::runImporter(folder.path() / (single ? "FOLDER/FILE.tmdl" : "FOLDER"), true);
  std::string shown = withoutFolder(withoutFolder(run.messages, folder.path() / "FOLDER"), folder.path());
  shown += run.errors;
  if (run.model && definition.empty()) shown += featuresOf(*run.model);
  if (run.model && !definition.empty()) {
    const ImporterRun other = tav::test::runImporter(definition, true);
    EXPECT_EQ(other.errors, "");
    if (other.model) shown += difference(*run.model, *other.model) + differenceOfDetails(run, other);
  }
  while (!shown.empty() && shown.back() == '\n') shown.pop_back();
  return shown;
}

TEST(Tmdl, IsTheModelOfItsJson) {
  tav::test::checkCorpus("tabular/tmdl.txt", show);
}

TEST(Tmdl, FaultsHaveAPlaceAndCostWhatTheyAreIn) {
  tav::test::checkCorpus("tabular/tmdl_faults.txt", show);
}

// Real definitions in both forms, where there are any.

json definitionOf(const std::string& name) {
  std::string text = tav::test::readFile(fs::path(TMDL_SAMPLES) / (name + ".bim"));
  if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  return plain(json::parse(text));
}

/// The model of a sample in JSON, changed where the two forms were saved at different times.
void expectPair(const std::string& name, const std::function<void(json& definition)>& change) {
  if (!fs::exists(TMDL_SAMPLES)) GTEST_SKIP() << "no samples here";
  json definition = definitionOf(name);
  change(definition);
  const ImporterRun tmdl = tav::test::runImporter(fs::path(TMDL_SAMPLES) / name, true);
  const ImporterRun other = tav::test::importText(definition.dump(), true);
  ASSERT_EQ(tmdl.errors + other.errors, "");
  EXPECT_EQ(tmdl.messages, other.messages);
  EXPECT_EQ(difference(*tmdl.model, *other.model), "");
  EXPECT_EQ(differenceOfDetails(tmdl, other), "");
}

TEST(TmdlSamples, InventoryIsTheSameInBothForms) {
  expectPair("inventory-1550", [](json& definition) {
    definition["name"] = "Example-rules-fails";
    for (json& annotation : definition["model"]["annotations"])
      if (annotation["name"] == "PBIDesktopVersion") annotation["value"] = "2.130.930.0 (24.06)";
  });
}

TEST(TmdlSamples, FinopsIsTheSameInBothForms) {
  expectPair("finops-2024", [](json& definition) {
    definition["name"] = "FinOpsToolkit";
    definition["model"]["dataAccessOptions"].erase("fastCombine");  // false, which is not written
  });
}

/// The two forms of this one are of different days, on which queries were rewritten; its measures are the
/// same.
TEST(TmdlSamples, SalesHasTheSameMeasuresInBothForms) {
  if (!fs::exists(TMDL_SAMPLES)) GTEST_SKIP() << "no samples here";
  const auto measuresOf = [](const ImporterRun& run) {
    std::istringstream text(tav::test::modelText(*run.model));
    std::string measures;
    for (std::string line; std::getline(text, line);)
      if (line.find("Measure \"") != std::string::npos) measures += line + "\n";
    return measures;
  };
  const ImporterRun tmdl = tav::test::runImporter(TMDL_SAMPLES "/sales-2024");
  const ImporterRun other = tav::test::importText(definitionOf("sales-2024").dump());
  ASSERT_EQ(tmdl.errors + other.errors, "");
  EXPECT_EQ(measuresOf(tmdl), measuresOf(other));
}

TEST(TmdlSamples, OnlyHandMadeOnesHaveFaults) {
  if (!fs::exists(TMDL_SAMPLES)) GTEST_SKIP() << "no samples here";
  for (const auto& entry : fs::directory_iterator(TMDL_SAMPLES)) {
    if (!entry.is_directory()) continue;
    const ImporterRun run = tav::test::runImporter(entry.path());
    EXPECT_EQ(run.errors, "") << entry.path();
    const std::size_t losses = run.messages.find("TAVTAB_E0001");
    EXPECT_EQ(losses != std::string::npos, entry.path().filename() == "spaces-fragment") << run.messages;
  }
}

// Damage, and folders that are not what they seem.

const std::vector<std::pair<std::string, std::string>> kShop = {
    {"cultures/en.tmdl",
     "cultureInfo en\n\n\ttranslations\n\t\tmodel Model\n\n\t\t\ttable T\n\t\t\t\tcaption: Tea\n"},
    {"database.tmdl", "database\n\tcompatibilityLevel: 1601\n"},
    {"expressions.tmdl", "expression P = \"abc\" meta [IsParameterQuery=true]\n\tlineageTag: 12\n"},
    {"model.tmdl",
     "model Model\n\tculture: en-GB\n\nref table T\nref table U\nref role R\nref cultureInfo en\n"},
    {"relationships.tmdl", "relationship r\n\tfromColumn: T.a\n\ttoColumn: U.a\n"},
    {"roles/R.tmdl", "role R\n\tmodelPermission: read\n\n\ttablePermission T = T[a] = 1\n"},
    {"tables/T.tmdl", "table T\n\n\tmeasure M =\n\t\t\tSUM(T[a])\n\n\tcolumn a\n\t\tdataType: int64\n"},
    {"tables/U.tmdl", "table U\n\n\tcolumn a\n\t\tdataType: int64\n\t\tsourceColumn: a\n"}};

/// Imports the shop with one file changed; what is said, without the folder.
std::string messagesOfShop(const std::string& changed,
                           const std::function<std::string(const std::string& text)>& change) {
  const tav::test::TemporaryFolder folder;
  for (const auto& [name, text] : kShop) {
    const fs::path place = folder.path() / name;
    fs::create_directories(place.parent_path());
    const std::string content = name == changed ? change(text) : text;
    if (!content.empty()) std::ofstream(place, std::ios::binary) << content;
  }
  const ImporterRun run = tav::test::runImporter(folder.path());
  EXPECT_EQ(run.errors, "") << changed;
  return withoutFolder(run.messages, folder.path());
}

TEST(TmdlDamage, AWholeFolderHasNothingToSay) {
  EXPECT_EQ(messagesOfShop("", nullptr), "");
}

TEST(TmdlDamage, AFileThatIsCutIsNamed) {
  for (const auto& [name, whole] : kShop) {
    EXPECT_NE(messagesOfShop(name, [](const std::string& text) { return text.substr(0, text.size() - 3); })
                  .find(name + ":"),
              std::string::npos)
        << name;
  }
}

TEST(TmdlDamage, AFileThatIsThereTwiceIsNamed) {
  for (const auto& [name, whole] : kShop) {
    EXPECT_NE(
        messagesOfShop(name, [](const std::string& text) { return text + "\n" + text; }).find(name + ":"),
        std::string::npos)
        << name;
  }
}

/// The list of the model's parts tells of those; other files are missed by what names them, if anything does.
TEST(TmdlDamage, AMissingPartOfTheModelIsNamed) {
  const auto without = [](const std::string& name) {
    return messagesOfShop(name, [](const std::string& /*text*/) { return std::string(); });
  };
  EXPECT_EQ(without("tables/U.tmdl"),
            "ERROR TAVTAB_E0001 model.tmdl:5:1: the table 'U' is not declared in any file\n");
  EXPECT_EQ(without("roles/R.tmdl"),
            "ERROR TAVTAB_E0001 model.tmdl:6:1: the role 'R' is not declared in any file\n");
  EXPECT_EQ(without("cultures/en.tmdl"),
            "WARNING TAVTAB_W0004 model.tmdl:7:1: the culture 'en' is not declared in any file\n");
  EXPECT_EQ(
      without("database.tmdl"),
      "ERROR TAVTAB_E0001 database.tmdl: no file declares the database; its compatibility level is lost\n");
  EXPECT_EQ(
      without("model.tmdl"),
      "ERROR TAVTAB_E0001 model.tmdl: no file declares the model; its settings and the order of its parts "
      "are lost\n");
}

TEST(TmdlDamage, EveryPrefixOfEveryFileEndsInAModel) {
  const tav::test::TemporaryFolder folder;
  std::string all;
  for (const auto& [name, text] : kShop) all += text + "\n";
  // Each prefix is a file; all are one definition, so that Java starts once.
  for (std::size_t n = 0; n < all.size(); n += 3)
    static_cast<void>(folder.write(std::to_string(n) + ".tmdl", std::string_view(all).substr(0, n)));
  const ImporterRun run = tav::test::runImporter(folder.path());
  EXPECT_EQ(run.exitCode, 0) << run.errors;
}

TEST(TmdlFolders, LinksPipesAndOddNamesDoNoHarm) {
  const tav::test::TemporaryFolder folder;
  fs::create_directory(folder.path() / "in");
  fs::create_directory_symlink(folder.path(), folder.path() / "in/circle");
  fs::create_symlink("self.tmdl", folder.path() / "self.tmdl");
  fs::create_symlink("gone", folder.path() / "broken.tmdl");
  ASSERT_EQ(mkfifo((folder.path() / "pipe.tmdl").c_str(), 0600), 0);
  static_cast<void>(folder.write("a\n\xFF\t'.tmdl", "table T\n\tcolumn a\n"));
  fs::create_symlink("a\n\xFF\t'.tmdl", folder.path() / "again.tmdl");
  const ImporterRun run = tav::test::runImporter(folder.path());
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  EXPECT_EQ(featuresOf(*run.model), "T/a\n");
  EXPECT_EQ(withoutFolder(run.messages, folder.path()),
            "ERROR TAVTAB_E0001 broken.tmdl: the link leads nowhere\n"
            "ERROR TAVTAB_E0001 pipe.tmdl: no regular file\n"
            "ERROR TAVTAB_E0001 self.tmdl: the link leads nowhere\n");
}

// Cost.

constexpr double kLargestGrowth = 12;

struct Many {
  const char* name;
  const char* head;
  std::string (*piece)(const std::string& number);
};

const std::vector<Many> kMany = {
    {"Tables", "",
     [](const std::string& n) { return "table T" + n + "\n\tcolumn a\n\t\tdataType: int64\n\n"; }},
    {"EqualTables", "", [](const std::string& /*n*/) { return std::string("table T\n\tisHidden\n"); }},
    {"Measures", "table T\n",
     [](const std::string& n) { return "\tmeasure M" + n + " =\n\t\t\t1 +\n\n\t\t\t2\n"; }},
    {"Properties", "table T\n", [](const std::string& n) { return "\tp" + n + ": 1\n"; }},
    {"OpenFences", "table T\n", [](const std::string& n) { return "\tmeasure M" + n + " = ```\n"; }},
    {"Descriptions", "", [](const std::string& n) { return "/// " + n + "\n"; }},
    {"References", "", [](const std::string& n) { return "ref table T" + n + "\n"; }},
    {"Depth", "table T\n",
     [](const std::string& n) { return std::string(std::stoul(n) % 2000, '\t') + "a\n"; }},
    {"BrokenLines", "", [](const std::string& /*n*/) { return std::string("'\n"); }}};

class ManyLines : public testing::TestWithParam<Many> {};

TEST_P(ManyLines, TakeTimeInProportion) {
  const tav::test::TemporaryFolder folder;
  const auto seconds = [&](int count) {
    std::string text = GetParam().head;
    for (int i = 0; i < count; ++i) text += GetParam().piece(std::to_string(i));
    text += "table Last\n";
    const tav::test::ImporterCost cost = tav::test::measureImporter(folder.write("FILE.tmdl", text), 512);
    EXPECT_EQ(cost.exitCode, 0) << cost.errors;
    return cost.seconds;
  };
  EXPECT_TRUE(
      tav::test::growsAtMost([&] { return seconds(3000); }, [&] { return seconds(30000); }, kLargestGrowth));
}

INSTANTIATE_TEST_SUITE_P(Tmdl, ManyLines, testing::ValuesIn(kMany),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
// NOLINTEND(performance-inefficient-string-concatenation)
