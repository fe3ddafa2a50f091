#include <fmt/ostream.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "host/command.h"
#include "host/estate_import.h"
#include "host/standard_output.h"

namespace host {
namespace {

constexpr std::size_t kWidestFile = 60;  // a longer name moves its own line only

std::size_t countOf(const EstateRun& run, Outcome outcome) {
  return static_cast<std::size_t>(
      std::count_if(run.results.begin(), run.results.end(),
                    [&](const EstateResult& result) { return result.outcome == outcome; }));
}

nlohmann::ordered_json summaryOf(const EstateResult& result) {
  return nlohmann::ordered_json::parse(result.summary.empty() ? "null" : result.summary);
}

/// The sum of numbers of a summary, each given by the names that lead to it; a dash where there is no
/// summary.
std::string sumIn(const nlohmann::ordered_json& summary, std::initializer_list<const char*> pointers) {
  std::size_t sum = 0;
  for (const char* pointer : pointers) {
    const nlohmann::ordered_json::json_pointer place(pointer);
    if (!summary.contains(place)) return "-";
    sum += summary[place].get<std::size_t>();
  }
  return std::to_string(sum);
}

/// A message about a file does not name it again where it stands behind that name.
std::string withoutFile(std::string cause, const std::string& file) {
  const std::size_t place = cause.starts_with('[') ? cause.find("] ") + 2 : 0;
  if (cause.compare(place, file.size() + 2, file + ": ") == 0) cause.erase(place, file.size() + 2);
  return cause;
}

/// The file that the model is saved in, or its name where that is no file of its own; else why there is none.
std::string placeOrCause(const EstateFile& file, const EstateResult& result,
                         const nlohmann::ordered_json& summary) {
  if (!result.cause.empty()) return withoutFile(result.cause, file.input);
  return file.output.empty() && summary.is_object() ? summary.value("database", "") : file.output;
}

}  // namespace

std::string_view outcomeName(Outcome outcome) {
  constexpr std::array<std::string_view, 6> kNames{"ok",         "warnings",      "unchanged",
                                                   "incomplete", "no definition", "failed"};
  return kNames[static_cast<std::size_t>(outcome)];
}

int exitCodeOf(const EstateRun& run) {
  if (run.signal != 0) return kSignalBase + run.signal;
  if (countOf(run, Outcome::failed) > 0) return kFailed;
  if (countOf(run, Outcome::noDefinition) > 0) return kNoDefinition;
  return countOf(run, Outcome::incomplete) > 0 ? kIncomplete : kDone;
}

void writeEstateTable(const std::vector<EstateFile>& files, const EstateRun& run, std::ostream& out) {
  std::size_t width = 4;
  for (const EstateFile& file : files)
    width = std::max(width, std::min(kWidestFile, printable(file.input).size()));
  const auto line = [&](const std::array<std::string, 8>& cells) {
    fmt::print(out, "{:<{}}  {:<13}  {:>5}  {:>8}  {:>10}  {:>8}  {:>7}  {}\n", cells[0], width, cells[1],
               cells[2], cells[3], cells[4], cells[5], cells[6], cells[7]);
  };
  line({"FILE", "OUTCOME", "CUBES", "MEASURES", "UNRESOLVED", "WARNINGS", "SECONDS", "MODEL OR CAUSE"});
  for (std::size_t i = 0; i < files.size(); ++i) {
    const EstateResult& result = run.results[i];
    const nlohmann::ordered_json summary = summaryOf(result);
    line({printable(files[i].input), std::string(outcomeName(result.outcome)), sumIn(summary, {"/cubes"}),
          sumIn(summary, {"/measures/count", "/calculatedMeasures/count"}),
          sumIn(summary, {"/unresolvedReferences"}), std::to_string(result.warnings),
          fmt::format("{:.1f}", result.seconds), printable(placeOrCause(files[i], result, summary))});
  }
  const auto some = [&](Outcome outcome) {
    const std::size_t count = countOf(run, outcome);
    return count > 0 ? fmt::format("{} {}, ", count, outcomeName(outcome)) : std::string();
  };
  fmt::print(out, "{} file{} in {:.1f} s: {} ok, {} with warnings, {}{}{} without a definition, {} failed\n",
             files.size(), files.size() == 1 ? "" : "s", run.seconds, countOf(run, Outcome::ok),
             countOf(run, Outcome::warnings), some(Outcome::unchanged), some(Outcome::incomplete),
             countOf(run, Outcome::noDefinition), countOf(run, Outcome::failed));
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
  (json ? writeEstateJson : writeEstateTable)(files, run, out.stream());
  out.finish();
}

}  // namespace host
