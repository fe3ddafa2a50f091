#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "exports/openlineage/event_time.h"
#include "exports/openlineage/lineage_events.h"
#include "exports/openlineage/run_id.h"
#include "exports/openlineage/uri.h"
#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "tests/support/checked_import.h"
#include "tests/support/corpus.h"
#include "tests/support/damage.h"
#include "tests/support/short_definition.h"

namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> eventsOf(const tav::DetailedModel& model, bool isStatic) {
  tav::ExportOptions options;
  options.input = "-";
  options.staticEvents = isStatic;
  std::vector<std::string> events;
  const tav::LineageEvents lineage(model, options);
  lineage.write([&](std::string_view event) { events.emplace_back(event); });
  EXPECT_EQ(lineage.count(), events.size());
  return events;
}

/// The events of an expanded definition; none when it cannot be imported.
std::vector<std::string> eventsOf(const std::string& definition, bool isStatic) {
  tav::test::DocumentImporter importer;
  const tav::test::Imported imported = importer.import(definition);
  if (!imported.model) return {};
  imported.model->modificationTime = "2026-03-08T10:00:00Z";
  return eventsOf(tav::DetailedModel(*imported.model), isStatic);
}

std::vector<std::string> exportEvents(const std::string& definition, bool isStatic) {
  return eventsOf(tav::test::expanded(definition), isStatic);
}

std::string nameOf(const Json& dataset) {
  const std::string space = dataset["namespace"];
  return (space == "ssas://localhost" ? "" : space + " ") + dataset["name"].get<std::string>();
}

std::string describeOrigin(const Json& origin) {
  const Json& transformation = origin["transformations"][0];
  std::string text =
      "\n    <- " + nameOf(origin) + " : " + tav::test::escape(origin["field"].get<std::string>()) + " " +
      transformation["type"].get<std::string>() + " " + transformation["subtype"].get<std::string>();
  if (transformation.contains("description"))
    text += " " + tav::test::escape(transformation["description"].get<std::string>());
  return text;
}

std::string describeField(const Json& field) {
  std::string text = "\n   " + tav::test::escape(field["name"].get<std::string>());
  if (field.contains("type")) text += " " + field["type"].get<std::string>();
  if (field.contains("description")) text += ", " + field["description"].get<std::string>();
  return text;
}

/// A dataset with what is known of it, a line a field and a line for each of the field's origins.
std::string describeDataset(const Json& dataset) {
  std::string text = nameOf(dataset);
  if (!dataset.contains("facets")) return text;
  const Json& facets = dataset["facets"];
  const Json& type = facets["datasetType"];
  text += ": " + type.value("datasetType", "") + " " + type.value("subType", "") + " of " +
          facets["dataSource"].value("name", "") + " " + facets["dataSource"].value("uri", "");
  if (facets.contains("documentation")) text += ", " + facets["documentation"].value("description", "");
  const Json lineage = facets.value("columnLineage", Json{{"fields", Json::object()}});
  for (const Json& field : facets.value("schema", Json::object()).value("fields", Json::array())) {
    text += describeField(field);
    const Json origins = lineage["fields"].value(field["name"].get<std::string>(), Json::object());
    for (const Json& origin : origins.value("inputFields", Json::array())) text += describeOrigin(origin);
  }
  if (lineage.contains("dataset")) text += "\n   (rows)";
  for (const Json& origin : lineage.value("dataset", Json::array())) text += describeOrigin(origin);
  return text;
}

std::string describeEvent(const Json& event) {
  if (event.contains("dataset")) return "dataset " + describeDataset(event["dataset"]) + "\n";
  const Json& job = event["job"];
  std::string text = "job " + nameOf(job) + ": " + job["facets"]["jobType"].value("jobType", "") + "\n";
  if (job["facets"].contains("sql")) text += "  SQL " + job["facets"]["sql"].value("query", "") + "\n";
  if (job["facets"].contains("sourceCode")) {
    const Json& code = job["facets"]["sourceCode"];
    text += "  " + code.value("language", "") + " " +
            std::regex_replace(code.value("sourceCode", ""), std::regex("\n\n"), "\n  ") + "\n";
  }
  for (const Json& input : event["inputs"]) text += " from " + describeDataset(input) + "\n";
  for (const Json& output : event["outputs"]) text += " to " + describeDataset(output) + "\n";
  return text;
}

TEST(LineageEvents, Corpus) {
  tav::test::checkCorpus("openlineage/events.txt", [](const std::string& input) {
    const bool isStatic = input.starts_with("static\n");
    std::string text;
    for (const std::string& event : exportEvents(isStatic ? input.substr(7) : input, isStatic))
      text += describeEvent(Json::parse(event));
    if (!text.empty()) text.pop_back();
    return text;
  });
}

/// Of a saved model, with the facet of our own behind each event that has it.
TEST(LineageEvents, WithDetails) {
  tav::test::checkCorpus("openlineage/details.txt", [](const std::string& file) {
    const tav::SavedModel saved = tav::loadSavedModel(tav::test::testFile(file).string());
    std::string text;
    for (const std::string& line : eventsOf({*saved.model, saved.details.get()}, false)) {
      const Json event = Json::parse(line);
      text += describeEvent(event);
      const Json facet = event["outputs"][0]["facets"].value("xmlaBridge_definition", Json::object());
      for (const char* list : {"objects", "relations", "settings"})
        for (const Json& one : facet.value(list, Json::array()))
          text += std::string("  ") + list + " " + one.dump() + "\n";
    }
    text.pop_back();
    return text;
  });
}

TEST(LineageEvents, ToTheByte) {
  tav::test::checkCorpus("openlineage/bytes.txt", [](const std::string& input) {
    std::string text;
    for (const bool isStatic : {false, true})
      for (const std::string& event : exportEvents(input, isStatic)) text += event + "\n";
    text.pop_back();
    // Both follow from the version.
    text = std::regex_replace(text, std::regex("urn:xmla-bridge:[0-9.]+"), "urn:xmla-bridge:VERSION");
    return std::regex_replace(text, std::regex(R"re("runId":"[^"]*")re"), R"("runId":"...")");
  });
}

TEST(LineageEvents, OfDamagedDefinitionsAreWhole) {
  constexpr unsigned kRounds = 30;
  for (const auto& c : tav::test::loadCorpus("openlineage/events.txt")) {
    for (unsigned seed = 0; seed < kRounds; ++seed) {
      const std::string damaged =
          tav::test::Damage(seed).elements(tav::test::expanded(c.input.substr(c.input.find('<'))));
      for (const bool isStatic : {false, true})
        for (const std::string& event : eventsOf(damaged, isStatic))
          ASSERT_TRUE(Json::accept(event)) << c.name << ", seed " << seed;
    }
  }
}

TEST(LineageEvents, AnotherContentIsAnotherRun) {
  const auto runOf = [](const std::string& description) {
    const auto events = exportEvents(
        "<Database><ID>D</ID><Dimensions><Dimension><ID>d</ID><Name>N</Name>"
        "<Description>" +
            description + "</Description></Dimension></Dimensions></Database>",
        false);
    return Json::parse(events.at(0))["run"]["runId"].get<std::string>();
  };
  EXPECT_EQ(runOf("one"), runOf("one"));
  EXPECT_NE(runOf("one"), runOf("two"));
}

/// Of an expression with very many operands, what is written grows with their number, not with its square.
TEST(LineageEvents, LongExpressionsAreNotWrittenForEachOfTheirOperands) {
  constexpr int kMeasures = 2000;
  std::string measures;
  std::string sum = "0";
  for (int i = 0; i < kMeasures; ++i) {
    const std::string name = "Measure number " + std::to_string(i);
    measures += "<M name=\"" + name + "\" sum=\"Sum\" table=\"T\" column=\"c\"/>";
    sum += " + [Measures].[" + name + "]";
  }
  const auto events = exportEvents(
      "<Database><ID>D</ID><Cubes><Cube><ID>c</ID><Name>C</Name><MeasureGroups><MeasureGroup><ID>g</"
      "ID><Name>G</"
      "Name><Measures>" +
          measures +
          "</Measures></MeasureGroup></MeasureGroups><MdxScripts><MdxScript><Commands><Command><Text>"
          "CREATE MEMBER CURRENTCUBE.[Measures].[All] AS " +
          sum + ";</Text></Command></Commands></MdxScript></MdxScripts></Cube></Cubes></Database>",
      false);
  const Json lineage =
      Json::parse(events.at(1))["outputs"][0]["facets"]["columnLineage"]["fields"]["All"]["inputFields"];
  ASSERT_EQ(lineage.size(), kMeasures);
  const auto description = [&](int i) {
    return lineage[i]["transformations"][0]["description"].get<std::string>();
  };
  EXPECT_EQ(description(0), sum + ";");
  EXPECT_LE(description(1).size(), 1004);
  EXPECT_TRUE(description(1).ends_with(" ..."));
  EXPECT_TRUE(sum.starts_with(description(1).substr(0, 990)));
}

TEST(EventTime, Corpus) {
  tav::test::checkCorpus("openlineage/time.txt", [](const std::string& input) {
    const tav::test::TemporaryFolder folder;
    const std::string file = folder.write("file", "");
    const auto model = tav::make<TAVStoreModel>("m");
    tav::ExportOptions options;
    options.input = "-";
    std::istringstream lines(input);
    for (std::string word, value; lines >> word >> value;) {
      if (word == "model") model->modificationTime = value;
      if (word == "epoch") setenv("SOURCE_DATE_EPOCH", value.c_str(), 1);
      if (word == "missing") options.input = "no such file";
      if (word == "time") options.inputTime = value;
      if (word != "file") continue;
      options.input = file;
      const timespec time{std::stoll(value), 999'999'999};
      const std::array<timespec, 2> times{time, time};
      utimensat(AT_FDCWD, file.c_str(), times.data(), 0);
    }
    std::string shown;
    try {
      shown = tav::eventTime(*model, options);
    } catch (const TAVException& failure) {
      shown = failure.getMessage().str();
    }
    unsetenv("SOURCE_DATE_EPOCH");
    return shown;
  });
}

TEST(NamedUuid, Corpus) {
  tav::test::checkCorpus("openlineage/uuid.txt", [](const std::string& name) {
    tav::NamedUuid whole;
    whole.add(name);
    tav::NamedUuid pieces;
    for (const char c : name) pieces.add({&c, 1});
    std::string uuid = whole.finish();
    EXPECT_EQ(pieces.finish(), uuid);
    return uuid;
  });
}

TEST(Uri, Corpus) {
  tav::test::checkCorpus("openlineage/uri.txt", [](const std::string& input) {
    std::istringstream lines(input);
    std::string shown;
    for (std::string line; std::getline(lines, line);)
      shown += std::string(shown.empty() ? "" : "\n") + (tav::isUri(line) ? "yes" : "no");
    return shown;
  });
}

}  // namespace
