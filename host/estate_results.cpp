#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "host/command.h"
#include "host/estate_import.h"
#include "host/standard_output.h"

namespace host {
namespace {

nlohmann::ordered_json summaryOf(const EstateResult& result) {
  return nlohmann::ordered_json::parse(result.summary.empty() ? "null" : result.summary);
}

}  // namespace

std::string_view outcomeName(Outcome outcome) {
  constexpr std::array<std::string_view, 6> kNames{"ok",         "warnings",      "unchanged",
                                                   "incomplete", "no definition", "failed"};
  return kNames[static_cast<std::size_t>(outcome)];
}

std::size_t countOf(const EstateRun& run, Outcome outcome) {
  return static_cast<std::size_t>(
      std::count_if(run.results.begin(), run.results.end(),
                    [&](const EstateResult& result) { return result.outcome == outcome; }));
}

int exitCodeOf(const EstateRun& run) {
  if (run.signal != 0) return kSignalBase + run.signal;
  if (countOf(run, Outcome::failed) > 0) return kFailed;
  if (countOf(run, Outcome::noDefinition) > 0) return kNoDefinition;
  return countOf(run, Outcome::incomplete) > 0 ? kIncomplete : kDone;
}

void writeEstateJson(const std::vector<EstateFile>& files, const EstateRun& run, std::ostream& out) {
  nlohmann::ordered_json document{{"files", nlohmann::ordered_json::array()},
                                  {"ok", countOf(run, Outcome::ok)},
                                  {"warnings", countOf(run, Outcome::warnings)},
                                  {"unchanged", countOf(run, Outcome::unchanged)},
                                  {"incomplete", countOf(run, Outcome::incomplete)},
                                  {"noDefinition", countOf(run, Outcome::noDefinition)},
                                  {"failed", countOf(run, Outcome::failed)},
                                  {"seconds", run.seconds}};
  for (std::size_t i = 0; i < files.size(); ++i) {
    const EstateResult& result = run.results[i];
    nlohmann::ordered_json file{{"file", files[i].input}, {"outcome", outcomeName(result.outcome)}};
    if (!result.cause.empty()) file["cause"] = result.cause;
    file["warnings"] = result.warnings;
    file["seconds"] = result.seconds;
    if (!files[i].output.empty()) file["output"] = files[i].output;
    file["summary"] = summaryOf(result);
    document["files"].push_back(std::move(file));
  }
  out << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

void tellEstate(const std::vector<EstateFile>& files, const EstateRun& run, bool json,
                const MessageLog& log) {
  if (run.signal != 0 || (log.quiet && !json)) return;
  StandardOutput out;
  if (json)
    writeEstateJson(files, run, out.stream());
  else
    writeEstateTable(files, run, styleOfOutput(log.terminal), out.stream());
  out.finish();
}

}  // namespace host
