#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "exports/formats.h"
#include "framework/std/text.h"
#include "tests/support/checked_import.h"
#include "tests/support/corpus.h"
#include "tests/support/damage.h"
#include "tests/support/short_definition.h"

namespace {

using Json = nlohmann::ordered_json;

/// The proposals for an expanded definition; none when it cannot be imported.
Json proposalsOf(const std::string& definition, const tav::ExportOptions& options) {
  tav::test::DocumentImporter importer;
  const tav::test::Imported imported = importer.import(definition);
  if (!imported.model) return Json::array();
  imported.model->modificationTime = "2026-03-08T10:00:00Z";
  std::ostringstream out;
  tav::findExportFormat("datahub")->write(tav::DetailedModel(*imported.model), options, out);
  return Json::parse(out.str());
}

/// Takes the lines of options off the beginning of a case.
tav::ExportOptions takeOptions(std::string& input) {
  tav::ExportOptions options;
  options.input = "-";
  while (!input.starts_with('<')) {
    const std::string line = input.substr(0, input.find('\n'));
    input.erase(0, line.size() + 1);
    std::istringstream words(line);
    std::string word;
    std::string server;
    std::string name;
    words >> word >> server >> name;
    if (word == "tables") options.datahub.describesTables = true;
    if (word == "env") options.datahub.environment = server;
    if (word == "instance") options.datahub.instances.emplace_back(server, name);
    if (word == "map") options.map = tav::AddressMap::parse(line.substr(4), "rules");
  }
  return options;
}

std::string without(std::string text, std::string_view part) {
  for (std::size_t i = text.find(part); i != text.npos; i = text.find(part)) text.erase(i, part.size());
  return text;
}

std::string describeField(const Json& field) {
  const std::string type = field["type"]["type"].begin().key();
  std::string text = "\n    " + field["fieldPath"].get<std::string>() + " " +
                     without(type, "com.linkedin.schema.") + " " +
                     field["nativeDataType"].get<std::string>() + " " + field.value("jsonProps", "");
  return text + (field.contains("description") ? ", " + field["description"].get<std::string>() : "");
}

std::string describeLineage(const Json& lineage) {
  std::string text;
  for (const Json& upstream : lineage["upstreams"]) {
    EXPECT_EQ(upstream["auditStamp"]["time"], 1772964000000);
    text += "\n    " + upstream["type"].get<std::string>() + " " + upstream["dataset"].get<std::string>();
  }
  for (const Json& one : lineage["fineGrainedLineages"]) {
    text += "\n    " + one["downstreams"][0].get<std::string>() + " " +
            one["transformOperation"].get<std::string>();
    for (const Json& from : one["upstreams"]) text += "\n      <- " + from.get<std::string>();
  }
  return text;
}

std::string describeAspect(const std::string& name, Json value) {
  std::string parts;
  if (name == "schemaMetadata") {
    for (const Json& field : value["fields"]) parts += describeField(field);
    return value["schemaName"].get<std::string>() + parts;
  }
  return name == "upstreamLineage" ? describeLineage(value).substr(1) : value.dump();
}

/// Each entity with its aspects, without what is the same in all URNs.
std::string describe(const Json& proposals) {
  std::string text;
  std::string entity;
  for (const Json& proposal : proposals) {
    const std::string urn = proposal["entityUrn"];
    const std::string name = proposal["aspectName"];
    if (urn != entity) text += urn + "\n";
    entity = urn;
    const std::string value = proposal["aspect"]["value"];
    text += "  " + name + " " + describeAspect(name, Json::parse(value)) + "\n";
  }
  for (const char* part : {"urn:li:dataPlatform:", "urn:li:dataset:", "urn:li:schemaField:", "urn:li:"})
    text = without(text, part);
  return text;
}

TEST(Datahub, Corpus) {
  tav::test::checkCorpus("datahub/proposals.txt", [](std::string input) {
    const tav::ExportOptions options = takeOptions(input);
    std::string text = describe(proposalsOf(tav::test::expanded(input), options));
    if (!text.empty()) text.pop_back();
    return text;
  });
}

TEST(Datahub, ProposalsOfDamagedDefinitionsAreWhole) {
  constexpr unsigned kRounds = 30;
  for (auto c : tav::test::loadCorpus("datahub/proposals.txt")) {
    const tav::ExportOptions options = takeOptions(c.input);
    for (unsigned seed = 0; seed < kRounds; ++seed) {
      const std::string damaged = tav::test::Damage(seed).elements(tav::test::expanded(c.input));
      for (const Json& proposal : proposalsOf(damaged, options))
        ASSERT_TRUE(Json::accept(proposal["aspect"]["value"].get<std::string>())) << c.name << ", " << seed;
    }
  }
}

}  // namespace
