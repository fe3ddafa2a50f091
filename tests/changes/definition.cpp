#include "tests/changes/definition.h"

#include <gtest/gtest.h>

#include "bridge/import.h"
#include "bridge/tabular_import.h"
#include "framework/modelbridge/host_observer.h"
#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "tests/support/corpus.h"
#include "tests/support/program_run.h"

namespace tav::test {
namespace {

struct NoLog : TAVLog {
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

/// Keeps what an import hands over.
struct Observer : HostObserver {
  bool wantsDetails() override { return true; }
};

std::vector<Definition> importXml(const std::vector<std::string>& texts) {
  std::vector<Definition> all;
  for (const std::string& text : texts) {
    const TemporaryFolder folder;
    const auto observer = std::make_shared<Observer>();
    Definition& one = all.emplace_back();
    NoLog log;
    try {
      one.model.reset(execAsImport("test", TAVFile(TAVString(folder.write("definition.xmla", text))), &log));
    } catch (const TAVException&) {
      one.model.reset();
    }
    one.details = std::shared_ptr<const Details>(observer, observer->details());
  }
  return all;
}

Definition loadTabular(const std::string& path) {
  Definition definition;
  if (!std::filesystem::exists(path)) return definition;
  SavedModel saved = loadSavedModel(TAVString(path));
  completeTabularModel(*as<TAVStoreModel>(saved.model.get()), nullptr, saved.details.get());
  definition.details = std::move(saved.details);
  definition.model = std::move(saved.model);
  return definition;
}

std::vector<Definition> importTabular(const std::vector<std::string>& texts) {
  const TemporaryFolder folder;
  std::vector<std::string> words{JAVA_PROGRAM,       "-XX:TieredStopAtLevel=1",
                                 "-XX:+UseSerialGC", "-cp",
                                 CLASS_PATH,         "KORV.bridges.MicrosoftSqlServerAs.Import.ImportEach"};
  std::vector<std::string> targets;
  for (const std::string& text : texts) {
    const std::string number = std::to_string(targets.size());
    const std::string path = folder.write(number + ".bim", text);
    words.push_back(folder.write(number + ".options", "BP_FILE\t" + path + "\nBP_DETAILS\ttrue\n"));
    targets.push_back(folder.path() / (number + ".xml"));
    words.push_back(targets.back());
  }
  const std::string errors = folder.path() / "errors";
  EXPECT_EQ(runProgram(words, folder.path() / "out", errors), 0) << readFile(errors);
  std::vector<Definition> all;
  all.reserve(targets.size());
  for (const std::string& target : targets) all.push_back(loadTabular(target));
  return all;
}

}  // namespace

const Importer kXml{importXml, 1};
const Importer kTabular{importTabular, 50};

}  // namespace tav::test
