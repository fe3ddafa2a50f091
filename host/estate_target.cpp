#include "host/estate_target.h"

#include <fmt/ostream.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "exports/sqlite_model.h"
#include "exports/versions.h"
#include "host/command.h"
#include "host/estate_import.h"
#include "host/estate_plan.h"
#include "host/inputs/content_hash.h"
#include "host/inputs/input.h"
#include "host/inputs/listing.h"
#include "host/inputs/semantic_model.h"
#include "host/output.h"
#include "host/standard_output.h"
#include "host/summary.h"
#include "messages/message.h"

namespace host {
namespace {

namespace fs = std::filesystem;

/// Who reads a definition: another version of the program may find more in it, other rules give it other
/// names.
std::string readerOf(const ImportScope& scope, const std::string& rules) {
  constexpr std::size_t kHashSize = 16;
  std::string reader = std::string("xmla-bridge " XMLA_VERSION) + (scope.details ? "" : " --no-details");
  if (!rules.empty()) reader.append(" --map ").append(textHash(rules), 0, kHashSize);
  return reader;
}

/// The rules of an estate, which are those that were given, if any were.
std::string settleRules(const EstateTarget& target) {
  if (target.map) tav::setAddressRules(target.path, target.map->text());
  return tav::addressRulesOf(target.path);
}

std::string_view stateOf(const MessageLog& log) {
  if (log.getErrorCount() > 0) return tav::kStateIncomplete;
  return log.getWarnings().empty() ? tav::kStateOk : tav::kStateWarnings;
}

void tellUnchanged(const tav::EstateVersion& version, const EstateTarget& target, const MessageLog& log) {
  if (log.quiet && !target.json) return;
  StandardOutput out;
  if (target.json) {
    const nlohmann::ordered_json document{{"database", version.name},
                                          {"unchanged", true},
                                          {"imported", version.imported},
                                          {"output", target.path}};
    out.stream() << document.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
  } else {
    fmt::print(out.stream(), "Database {}\nUnchanged since {}, in {}\n", printable(version.name),
               version.imported, printable(target.path));
  }
  out.finish();
}

/// An estate knows a definition by its place, to find it again.
void checkPlace(const std::string& input) {
  checkInput(input);
  std::error_code ignored;  // what is not there is told by the import
  const fs::file_status status = fs::status(input, ignored);
  if (input == "-" || (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)))
    throw UsageError("INPUT", "an estate takes files and folders, which can be found again");
}

void checkEstate(const std::string& input, const std::string& path) {
  std::error_code ignored;  // one of them is not there yet
  if (fs::equivalent(input, path, ignored)) throw UsageError("--estate", "the database is among the inputs");
}

std::vector<std::string> optionsFor(const EstateTarget& target, const ImportScope& scope) {
  std::vector<std::string> options{"--estate", target.path};
  if (!target.history) options.emplace_back("--no-history");
  if (target.force) options.emplace_back("--force");
  if (!scope.details) options.emplace_back("--no-details");
  return options;
}

/// What is imported, and which sources of the estate are gone.
struct Work {
  std::vector<EstateFile> files;
  std::vector<std::string> gone;
};

/// A definition of the estate that a folder does not show any longer, damaged so that nobody would take it
/// for one perhaps, is tried as long as it is there.
Work planWork(const std::vector<std::string>& inputs, const EstateTarget& target, MessageLog& log) {
  const PlannedInputs planned = planInputs(inputs, log);
  Work work;
  std::unordered_set<std::string> sources;
  for (const std::string& input : planned.definitions) {
    checkPlace(input);
    checkEstate(input, target.path);
    if (sources.insert(tav::canonicalSource(input)).second)
      work.files.push_back({input, {}});
    else
      log.logEventOf(input, tav::messageEvent(tav::Message::duplicateInput));
  }
  for (const std::string& folder : planned.folders) {
    for (const std::string& source : tav::sourcesBelow(target.path, tav::canonicalSource(folder))) {
      if (!sources.insert(source).second) continue;
      std::error_code ignored;  // what cannot be asked for is told by the import
      if (fs::exists(source, ignored) || ignored)
        work.files.push_back({source, {}});
      else
        work.gone.push_back(source);
    }
  }
  return work;
}

}  // namespace

bool isOneDefinition(const std::vector<std::string>& inputs) {
  if (inputs.size() != 1) return false;
  const std::string& input = inputs.front();
  std::error_code ignored;  // what cannot be asked for is told by the import
  return !fs::is_directory(input, ignored) || findFolderModel(input) || !causeOfUnlisted(input).empty();
}

int importIntoEstate(const std::string& input, const EstateTarget& target, const ImportScope& scope,
                     MessageLog& log) {
  checkPlace(input);
  checkEstate(input, target.path);
  log.keepsWarnings = true;
  const Input opened = openInput(input, log);
  const std::string rules = settleRules(target);
  const tav::AddressMap map = tav::AddressMap::parse(rules, target.path);
  const tav::EstateDefinition definition{tav::canonicalSource(opened.name()), contentHash(opened),
                                         readerOf(scope, rules)};
  const auto unchanged = tav::findUnchanged(target.path, definition);
  if (unchanged && !target.force) {
    tellUnchanged(*unchanged, target, log);
    return kDone;
  }
  Summary summary;
  ImportScope wanted = scope;
  wanted.empty = false;
  wanted.isLast = true;
  const int code = runImport(opened, "", log, wanted, [&](const tav::DetailedModel& model) {
    tav::importIntoEstate(target.path, definition, model,
                          {stateOf(log), target.history, log.getWarnings(), map});
    summary = summarize(model);
    return false;
  });
  if (code != kDone && code != kIncomplete) return code;
  return tellOfWork(code, log, [&] { tellSummary(summary, target.path, target.json, log); });
}

int importIntoEstate(const std::vector<std::string>& inputs, std::size_t jobs, const EstateTarget& target,
                     const ImportScope& scope, MessageLog& log) {
  tav::makeEstate(target.path);
  settleRules(target);
  const Work work = planWork(inputs, target, log);
  if (work.files.empty()) return kNoDefinition;
  const EstateRun run = importEstate(work.files, jobs, optionsFor(target, scope), log);
  if (run.signal == 0) {
    if (target.prune) tav::removeFromEstate(target.path, work.gone);
    for (const std::string& source : work.gone)
      log.logEventOf(source, tav::messageEvent(target.prune ? tav::Message::definitionRemoved
                                                            : tav::Message::definitionGone));
  }
  return tellOfWork(exitCodeOf(run), log, [&] { tellEstate(work.files, run, target.json, log); });
}

}  // namespace host
