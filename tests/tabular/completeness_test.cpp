// Real definitions, read a second time as plain JSON: whatever one says is in the model, in its details, or
// counted as passed over; and what it names is related.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "framework/model/reflection.h"
#include "framework/model/roles.h"
#include "framework/model/tree_walk.h"
#include "framework/std/text.h"
#include "tests/tabular/details_text.h"
#include "tests/tabular/importer_run.h"

// The texts that tests put together are read by people, and few.
// NOLINTBEGIN(performance-inefficient-string-concatenation)
namespace {

using nlohmann::json;
using tav::Details;
using tav::PassedOver;
using tav::test::ImporterRun;

/// Members that have a place of their own in the model or the details, which is not called like them.
const std::set<std::string> kPlaced{"name",
                                    "description",
                                    "expression",
                                    "query",
                                    "sourceExpression",
                                    "filterExpression",
                                    "dataType",
                                    "type",
                                    "connectionString",
                                    "sourceColumn",
                                    "fromTable",
                                    "fromColumn",
                                    "toTable",
                                    "toColumn",
                                    "sortByColumn",
                                    "column",
                                    "table",
                                    "hierarchy",
                                    "memberName",
                                    "dataSource",
                                    "expressionSource",
                                    "groupingColumn",
                                    "relationship",
                                    "baseTable",
                                    "ordinal",
                                    "isHidden",
                                    "targetExpression",
                                    "statusExpression",
                                    "trendExpression",
                                    "metadataPermission",
                                    "id"};
/// What the model calls them.
const std::map<std::string, std::string> kColumnTypes{{"calculated", "Calculated Column"},
                                                      {"calculatedTableColumn", "Calculated Table Column"}};
const std::set<std::string> kStamps{"modifiedTime", "structureModifiedTime", "refreshedTime",
                                    "lastUpdate",   "createdTimestamp",      "lastSchemaUpdate",
                                    "lastProcessed"};
const std::set<std::string> kStates{"state", "errorMessage"};

bool isLines(const json& value) {
  return value.is_array() &&
         std::all_of(value.begin(), value.end(), [](const json& line) { return line.is_string(); });
}

std::string textOf(const json& value) {
  if (value.is_string()) return value;
  if (!isLines(value)) return value.is_null() ? "" : value.dump();
  std::string text;
  for (const json& line : value) text += line.get<std::string>() + "\n";
  return text.substr(0, text.size() - (text.empty() ? 0 : 1));
}

/// All that a model and its details hold.
class Said {
 public:
  explicit Said(const ImporterRun& run) {
    tav::walkTree(*run.model, *this);
    const Details& details = *run.details;
    for (const tav::DetailItem& item : details.items()) {
      texts_.emplace(item.name);
      texts_.emplace(item.text);
    }
    for (const tav::DetailRelation& relation : details.relations()) {
      texts_.emplace(relation.text);
      const std::string to = tav::test::labelOf(details, relation.to);
      const std::string from = tav::test::labelOf(details, relation.from);
      relations_.insert(std::string(tav::rowOf(relation.kind).name) + ": " + from + " -> " + to);
      pairs_.insert(from + " -> " + to);
    }
    for (const tav::DetailSetting& setting : details.settings()) addSetting(setting);
    for (const tav::OpenName& name : details.openNames()) {
      texts_.emplace(name.name);
      open_.insert(tav::test::labelOf(details, name.item) + " " + std::string(name.name));
    }
  }

  void enter(const TAVObject& object) {
    const auto* element = tav::as<TAVModelObject>(&object);
    if (!element) return;
    for (const tav::AttributeRow* row : tav::classInfo(object.classId()).attributes) {
      const tav::Value value = row->get(*element);
      if (const auto* text = std::get_if<std::string_view>(&value)) texts_.emplace(*text);
      if (const auto* number = std::get_if<std::int64_t>(&value)) texts_.insert(std::to_string(*number));
    }
    texts_.emplace(element->getName());
    for (const TAVPropertyValue& property : element->propertyValues) {
      const std::string value = property.value.str();
      // What the model keeps as JSON is said once more, piece by piece, by the details.
      if (value.rfind("[{", 0) == 0 || value.rfind("{\"", 0) == 0) continue;
      values_.insert(property.propertyType->getName().str() + "=" + value);
      texts_.insert(value);
    }
  }
  void enterRole(const tav::LinkRow& /*row*/) {}
  void leaveRole(const tav::LinkRow& /*row*/) {}
  void leave(const TAVObject& /*object*/) {}

  [[nodiscard]] bool has(const std::string& member, const std::string& text) const {
    return values_.contains(member + "=" + text) || (kPlaced.contains(member) && texts_.contains(text));
  }
  [[nodiscard]] bool hasNote(const std::string& name, const std::string& text) const {
    return notes_.contains(name + "=" + text);
  }
  [[nodiscard]] bool isRelated(const std::string& relation) const { return relations_.contains(relation); }
  [[nodiscard]] bool isPair(const std::string& from, const std::string& to) const {
    return pairs_.contains(from + " -> " + to);
  }
  [[nodiscard]] bool isOpen(const std::string& subject, const std::string& name) const {
    return open_.contains(subject + " " + name);
  }

 private:
  /// Of the path of a setting, each part may be the member's name: "translatedCaption.de-DE".
  void addSetting(const tav::DetailSetting& setting) {
    const std::string name(setting.name);
    const std::string value(setting.value);
    texts_.insert(value);
    for (const std::string_view list : {"annotations.", "extendedProperties."})
      if (const std::size_t at = name.find(list); at != std::string::npos)
        notes_.insert(name.substr(at + list.size()) + "=" + value);
    for (std::size_t at = 0; at <= name.size();) {
      const std::size_t end = std::min(name.find('.', at), name.size());
      values_.insert(name.substr(at, end - at) + "=" + value);
      at = end + 1;
    }
  }

  std::set<std::string> texts_;
  std::set<std::string> values_;
  std::set<std::string> notes_;
  std::set<std::string> relations_;
  std::set<std::string> pairs_;
  std::set<std::string> open_;
};

struct Counts {
  std::size_t leaves = 0;
  std::size_t references = 0;
  std::size_t names = 0;
};

/// Holds every value of a definition against what was said.
class Walk {
 public:
  Walk(const Said& said, Counts& counts) : said_(said), counts_(counts) {}

  void run(const json& database) {
    struct Part {
      const json* value;
      std::string member;
      std::string path;
    };
    std::vector<Part> waiting{{&database, "", ""}};
    while (!waiting.empty()) {
      const Part part = waiting.back();
      waiting.pop_back();
      const json& value = *part.value;
      if (isPassed(part.member, value)) continue;
      if (!value.is_structured() || isLines(value)) {
        leaf(part.member, part.path, textOf(value));
      } else if (value.is_array()) {
        for (const json& element : value) waiting.push_back({&element, part.member, part.path});
      } else {
        for (const auto& [name, inner] : value.items())
          waiting.push_back({&inner, name, part.path + "/" + name});
      }
    }
  }

  std::vector<std::string> lost;
  std::map<PassedOver, std::size_t> passed;

 private:
  bool isStamp(const std::string& member, const json& value) {
    if (value.is_structured()) return false;
    if (kStamps.contains(member)) return ++passed[PassedOver::timeStamps];
    if (kStates.contains(member)) return ++passed[PassedOver::processing];
    return false;
  }

  bool isPassed(const std::string& member, const json& value) {
    if (isStamp(member, value)) return true;
    if (!value.is_object()) return false;
    if (member == "changedProperties") return ++passed[PassedOver::designerNotes];
    if (member == "columns" && value.value("type", "") == "rowNumber") {
      countStamps(value);
      return ++passed[PassedOver::rowNumbers];
    }
    if (member != "annotations" && member != "extendedProperties") return false;
    const json note = value.value("value", json(""));
    countStamps(value);
    ++counts_.leaves;
    if (!said_.hasNote(value.at("name"), textOf(note))) ++passed[PassedOver::designerNotes];
    return true;
  }

  void countStamps(const json& value) {
    for (const auto& [name, inner] : value.items()) {
      isStamp(name, inner);
      if (!inner.is_object()) continue;
      for (const auto& [deeper, stamp] : inner.items()) isStamp(deeper, stamp);
    }
  }

  void leaf(const std::string& member, const std::string& path, const std::string& text) {
    if (text.empty()) return;
    ++counts_.leaves;
    const auto type = member == "type" ? kColumnTypes.find(text) : kColumnTypes.end();
    if (type != kColumnTypes.end() && said_.has(member, type->second)) return;
    if (!said_.has(member, text)) lost.push_back(path + " = " + text);
  }

  const Said& said_;
  Counts& counts_;
};

/// What a definition names, and where the name has to lead.
class References {
 public:
  References(const Said& said, const ImporterRun& run, const json& model, Counts& counts)
      : said_(said), counts_(counts), sources_(tav::test::sourcesOf(*run.model)) {
    for (const json& table : model.value("tables", json::array())) {
      for (const json& column : table.value("columns", json::array())) {
        columns_.emplace(tav::foldedName(written(table.at("name"), column.at("name"))),
                         "/Dimensions/" + table.at("name").get<std::string>() + "/" +
                             column.at("name").get<std::string>());
      }
    }
    for (const json& table : model.value("tables", json::array()))
      for (const json& measure : table.value("measures", json::array()))
        measures_.insert(tav::foldedName(measure.at("name").get<std::string>()));
    cube_ = "/Cubes/" + model.value("name", "Model") + "/" + model.value("name", "Model");
    package_ = "/Cubes/" + model.value("name", "Model");
  }

  void run(const json& model) {
    for (const json& one : model.value("relationships", json::array())) {
      const std::string to = "relationship " + one.at("name").get<std::string>();
      expectColumn("joins", one.at("fromTable"), one.at("fromColumn"), to);
      expectColumn("joins", one.at("toTable"), one.at("toColumn"), to);
    }
    for (const json& table : model.value("tables", json::array())) checkTable(table);
    for (const json& perspective : model.value("perspectives", json::array())) checkPerspective(perspective);
    for (const json& role : model.value("roles", json::array())) {
      for (const json& permission : role.value("tablePermissions", json::array())) {
        const std::string name = permission.at("name");
        expect("secures: /Dimensions/" + name + " -> permission " + name);
        if (permission.contains("filterExpression"))
          checkNames(textOf(permission.at("filterExpression")), "permission " + name);
      }
    }
  }

  std::vector<std::string> lost;

 private:
  static std::string written(const std::string& table, const std::string& column) {
    return "'" + table + "'[" + column + "]";
  }

  void expect(const std::string& relation) {
    ++counts_.references;
    if (!said_.isRelated(relation)) lost.push_back(relation);
  }

  void expectColumn(const std::string& kind, const std::string& table, const std::string& column,
                    const std::string& to) {
    const auto found = columns_.find(tav::foldedName(written(table, column)));
    if (found != columns_.end()) return expect(kind + ": " + found->second + " -> " + to);
    ++counts_.references;
    if (!said_.isOpen(to, written(table, column))) lost.push_back(written(table, column) + " of " + to);
  }

  void checkTable(const json& table) {
    const std::string name = table.at("name");
    for (const json& column : table.value("columns", json::array())) {
      const std::string path = "/Dimensions/" + name + "/" + column.at("name").get<std::string>();
      if (column.contains("sortByColumn")) expectColumn("order", name, column.at("sortByColumn"), path);
      if (column.value("type", "") == "calculated") checkNames(textOf(column.at("expression")), path);
    }
    for (const json& measure : table.value("measures", json::array()))
      checkNames(textOf(measure.at("expression")),
                 package_ + "/Calculated Measures/" + name + "/" + measure.at("name").get<std::string>());
    for (const json& partition : table.value("partitions", json::array()))
      expect("fills: partition " + partition.at("name").get<std::string>() + " -> /Dimensions/" + name);
  }

  void checkPerspective(const json& perspective) {
    const std::string to = " -> " + cube_ + "/" + perspective.at("name").get<std::string>();
    for (const json& table : perspective.value("tables", json::array())) {
      const std::string name = table.at("name");
      expect("member: " + package_ + "/" + name + to);
      for (const json& one : table.value("columns", json::array()))
        expect("member: " + package_ + "/" + name + "/" + one.at("name").get<std::string>() + to);
      for (const json& one : table.value("measures", json::array()))
        expect("member: " + cube_ + "/" + one.at("name").get<std::string>() + to);
      for (const json& one : table.value("hierarchies", json::array()))
        expect("member: /Dimensions/" + name + "/" + one.at("name").get<std::string>() + to);
    }
  }

  /// Columns with their table in front, outside texts and comments.
  void checkNames(std::string text, const std::string& subject) {
    text = std::regex_replace(text, std::regex(R"RX("[^"]*"|//[^\n]*|--[^\n]*|/\*[^]*?\*/)RX"), " ");
    static const std::regex kName(R"((?:'([^']+)'|([A-Za-z_]\w*))\[([^\]]+)\])");
    const std::vector<std::string>& known = sources_[subject];
    for (std::sregex_iterator at(text.begin(), text.end(), kName), end; at != end; ++at) {
      const std::string name = written((*at)[1].matched ? (*at)[1] : (*at)[2], (*at)[3]);
      ++counts_.names;
      const auto column = columns_.find(tav::foldedName(name));
      const bool found =
          column == columns_.end()
              ? measures_.contains(tav::foldedName((*at)[3].str())) || said_.isOpen(subject, name)
              : std::count(known.begin(), known.end(), column->second) > 0 ||
                    said_.isPair(column->second, subject);
      if (!found) lost.push_back(name + " in " + subject);
    }
  }

  const Said& said_;
  Counts& counts_;
  tav::test::Sources sources_;
  std::map<std::string, std::string> columns_;  // by folded name
  std::set<std::string> measures_;              // by folded name
  std::string cube_;
  std::string package_;
};

/// The database of a definition; null in one that is no strict JSON.
json databaseOf(const std::filesystem::path& path) {
  std::string text = tav::test::readFile(path);
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  json root = json::parse(text, nullptr, false);
  for (const char* command : {"create", "createOrReplace", "alter"})
    if (root.is_object() && root.contains(command)) return root[command]["database"];
  return root;
}

void expectNothingLost(const std::vector<std::string>& lost, const std::filesystem::path& path) {
  EXPECT_TRUE(lost.empty()) << path << ": " << lost.size() << ", such as " << (lost.empty() ? "" : lost[0]);
}

std::vector<std::filesystem::path> definitions() {
  std::vector<std::filesystem::path> paths;
  for (const char* folder : {SAMPLES, SAMPLES "/../tmdl", SAMPLES "/../pbip", EXAMPLES}) {
    std::error_code none;  // the samples may be missing
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, none))
      if (entry.path().extension() == ".bim" || entry.path().extension() == ".xmla")
        paths.push_back(entry.path());
  }
  return paths;
}

void compare(const std::filesystem::path& path, Counts& counts) {
  const json database = databaseOf(path);
  if (!database.is_object() || !database.contains("model")) return;
  const ImporterRun run = tav::test::runImporter(path, true);
  ASSERT_EQ(run.exitCode, 0) << path << run.errors;
  const Said said(run);
  Walk walk(said, counts);
  walk.run(database);
  expectNothingLost(walk.lost, path);
  for (const auto& [what, count] : walk.passed)
    EXPECT_EQ(run.details->passedOver(what), count) << path << tav::rowOf(what).words;
  References references(said, run, database.at("model"), counts);
  references.run(database.at("model"));
  expectNothingLost(references.lost, path);
}

TEST(TabularCompleteness, NothingOfADefinitionIsLost) {
  Counts counts;
  for (const std::filesystem::path& path : definitions()) compare(path, counts);
  if (!std::filesystem::exists(SAMPLES)) GTEST_SKIP() << "no samples here";
  std::cout << counts.leaves << " values, " << counts.references << " references, " << counts.names
            << " names in DAX\n";
  EXPECT_GT(counts.leaves, 10'000U);
  EXPECT_GT(counts.references, 1'000U);
  EXPECT_GT(counts.names, 200U);
}

}  // namespace
// NOLINTEND(performance-inefficient-string-concatenation)
