#include "tests/tabular/importer_run.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>

#include "bridge/tabular_import.h"
#include "framework/model/tree_walk.h"
#include "framework/serialization/model_reader.h"
#include "tests/support/program_run.h"

namespace tav::test {
namespace {

std::string withoutStatus(const std::string& text) {
  std::string kept;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    std::string line = text.substr(at, end - at);
    at = end == std::string::npos ? text.size() : end + 1;
    if (line.rfind("STATUS\t", 0) == 0) continue;
    std::replace(line.begin(), line.end(), '\t', ' ');
    kept += line + "\n";
  }
  return kept;
}

std::string optionLines(const std::string& path, bool withDetails) {
  std::string escaped;
  for (const char c : path) {
    if (c == '\\')
      escaped += "\\\\";
    else if (c == '\n')
      escaped += "\\n";
    else if (c == '\t')
      escaped += "\\t";
    else
      escaped += c;
  }
  return "BP_FILE\t" + escaped + "\n" + (withDetails ? "BP_DETAILS\ttrue\n" : "");
}

/// The processor time of all programs that were run so far.
double secondsOfPrograms() {
  rusage used{};
  getrusage(RUSAGE_CHILDREN, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

std::vector<std::string> importerCommand(const std::vector<std::string>& javaOptions,
                                         const std::string& options, const std::string& target) {
  std::vector<std::string> words{JAVA_PROGRAM};
  words.insert(words.end(), javaOptions.begin(), javaOptions.end());
  words.insert(words.end(),
               {"-cp", std::string(JAVA_FOLDER) + "/MicrosoftSqlServerAs.jar",
                "KORV.bridges.MicrosoftSqlServerAs.Import.MicrosoftSqlServerAsImport", options, target});
  return words;
}

class SourceCollector {
 public:
  void enter(const TAVObject& object) {
    const auto* feature = as<TAVFeature>(&object);
    if (!feature) return;
    std::vector<std::string>& sources = found[feature->getPath(true).str()];
    if (const TAVFeatureMap* map = feature->destinationOf.get())
      for (const TAVFeature& source : map->sourceFeatures) sources.push_back(source.getPath(true).str());
  }
  void enterRole(const LinkRow& /*row*/) {}
  void leaveRole(const LinkRow& /*row*/) {}
  void leave(const TAVObject& /*object*/) {}

  Sources found;
};

class ClassifierSourceCollector {
 public:
  void enter(const TAVObject& object) {
    const auto* classifier = as<TAVClassifier>(&object);
    const TAVClassifierMap* map = classifier ? classifier->getDestinationOfClassifierMap() : nullptr;
    if (!map) return;
    std::vector<std::string>& sources = found[classifier->getPath(true).str()];
    for (const TAVClassifier& source : map->sourceClassifiers) sources.push_back(source.getPath(true).str());
  }
  void enterRole(const LinkRow& /*row*/) {}
  void leaveRole(const LinkRow& /*row*/) {}
  void leave(const TAVObject& /*object*/) {}

  Sources found;
};

}  // namespace

ImporterRun runImporter(const std::string& path, bool withDetails) {
  const TemporaryFolder folder;
  const std::string target = folder.path() / "main.xml";
  const std::string out = folder.path() / "out";
  const std::string errors = folder.path() / "errors";
  const std::string options = folder.write("options", optionLines(path, withDetails));
  ImporterRun run;
  run.exitCode = runProgram(importerCommand({}, options, target), out, errors);
  run.messages = withoutStatus(readFile(out));
  run.errors = readFile(errors);
  const std::string place = std::filesystem::path(path).parent_path().string() + "/";
  for (std::size_t at = run.errors.find(place); at != std::string::npos; at = run.errors.find(place))
    run.errors.erase(at, place.size());
  if (run.exitCode != 0) return run;
  const int valid = runProgram({XMLLINT, "--noout", "--huge", "--schema", SCHEMA, target}, out, errors);
  EXPECT_EQ(valid, 0) << path << ": " << readFile(errors).substr(0, 2000);
  SavedModel saved = loadSavedModel(target);
  run.model = std::move(saved.model);
  run.details = std::move(saved.details);
  EXPECT_EQ(run.details != nullptr, withDetails);
  completeTabularModel(*as<TAVStoreModel>(run.model.get()), nullptr, run.details.get());
  return run;
}

ImporterRun importText(std::string_view definition, bool withDetails) {
  const TemporaryFolder folder;
  return runImporter(folder.write("FILE.bim", definition), withDetails);
}

ImporterCost measureImporter(const std::string& path, std::uint64_t heapMegabytes, bool withDetails) {
  const TemporaryFolder folder;
  const std::string errors = folder.path() / "errors";
  const std::vector<std::string> command = importerCommand(
      {"-Xmx" + std::to_string(heapMegabytes) + "m", "-XX:TieredStopAtLevel=1", "-XX:+UseSerialGC"},
      folder.write("options", optionLines(path, withDetails)), folder.path() / "main.xml");
  ImporterCost cost;
  const double before = secondsOfPrograms();
  cost.exitCode = runProgram(command, folder.path() / "out", errors);
  cost.seconds = secondsOfPrograms() - before;
  cost.errors = readFile(errors);
  return cost;
}

Sources sourcesOf(const TAVModel& model) {
  SourceCollector collector;
  walkTree(model, collector);
  return std::move(collector.found);
}

Sources classifierSourcesOf(const TAVModel& model) {
  ClassifierSourceCollector collector;
  walkTree(model, collector);
  return std::move(collector.found);
}

}  // namespace tav::test
