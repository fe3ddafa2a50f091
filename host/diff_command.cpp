#include <algorithm>
#include <ctime>

#include "exports/answers/diff_report.h"
#include "exports/answers/estate_diff.h"
#include "exports/utc_time.h"
#include "exports/versions.h"
#include "framework/bridgelib/model_stamps.h"
#include "framework/serialization/model_reader.h"
#include "framework/std/exception.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/model_pairs.h"
#include "host/output.h"
#include "host/reports_option.h"

namespace host {
namespace {

struct Arguments {
  std::string before;
  std::string after;
  std::string format = "text";
  std::string output = "-";
  std::string map;
  std::vector<std::string> reports;
  bool exitCode = false;
  std::vector<std::string> failOn;
  tav::EstateSpan span;
};

using Writer = void (*)(const tav::ModelDiff& diff, std::ostream& out);

/// Of a format for tools and pages; null for text.
Writer writerOf(const std::string& format) {
  if (format == "json") return tav::writeDiffJson;
  return format == "markdown" ? tav::writeDiffMarkdown : nullptr;
}

std::vector<std::string> groupNames() {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < tav::kDiffGroupCount; ++i)
    names.emplace_back(tav::diffGroupName(static_cast<tav::DiffGroup>(i)));
  return names;
}

/// Whether the user wants the exit code to tell of these differences.
bool isFailure(const tav::ModelDiff& diff, const Arguments& arguments) {
  if (arguments.exitCode && !diff.empty()) return true;
  return std::any_of(arguments.failOn.begin(), arguments.failOn.end(),
                     [&](const std::string& name) { return diff.count(*tav::diffGroupOf(name)) > 0; });
}

int compare(const Arguments& arguments, MessageLog& log) {
  for (const std::string& input : {arguments.before, arguments.after})
    if (arguments.output != "-") checkOutput(input, arguments.output);
  if (arguments.before == "-" && arguments.after == "-")
    throw UsageError("NEW", "only one of the two can be read from standard input");
  InputMaps maps(readMap(arguments.map));
  bool failure = false;
  int newCode = kDone;
  // The second is read while the first, which an import deletes at its end, is there.
  const int code =
      withModel({arguments.before, arguments.reports}, log, [&](const tav::DetailedModel& before) {
        newCode = withModel({arguments.after, arguments.reports}, log, [&](const tav::DetailedModel& after) {
          const tav::ModelDiff diff =
              tav::compareModels(before, after, maps.ofBoth(arguments.before, arguments.after));
          failure = isFailure(diff, arguments);
          writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
            if (const Writer write = writerOf(arguments.format))
              write(diff, out);
            else
              tav::writeDiffText(diff, out, style);
          });
        });
      });
  if (code != kDone || newCode != kDone) return code != kDone ? code : newCode;
  return failure ? kDiffers : kDone;
}

/// What `text` says: a day, of which `time` is meant, or a time itself.
std::string timeOf(const char* option, const std::string& text, std::string_view time) {
  std::string whole = text;
  if (text.size() == std::string_view("2026-03-08").size()) whole.append("T").append(time).append("Z");
  if (!tav::isUtcTime(whole)) {
    throw UsageError(option, "'" + text +
                                 "' is neither a day (2026-03-08) nor a time in UTC "
                                 "(2026-03-08T10:00:00Z)");
  }
  return whole;
}

/// Whether the user wants the exit code to tell of a model that was added or removed.
bool isFailure(const tav::EstateChange& change, const Arguments& arguments) {
  const std::string name(tav::diffGroupName(change.after ? tav::DiffGroup::added : tav::DiffGroup::removed));
  return arguments.exitCode ||
         std::find(arguments.failOn.begin(), arguments.failOn.end(), name) != arguments.failOn.end();
}

/// How a model of an estate changed; throws when one of its documents is not there.
tav::ModelDiff compareVersions(const std::string& estate, const tav::EstateChange& change,
                               const tav::AddressMap& map) {
  const auto load = [&](const tav::EstateVersion& version) {
    return tav::loadSavedModelText(tav::documentOf(estate, change.source, version), change.source);
  };
  const tav::SavedModel before = load(*change.before);
  const tav::SavedModel after = load(*change.after);
  return tav::compareModels({*before.model, before.details.get()}, {*after.model, after.details.get()}, map);
}

int compareEstate(const Arguments& arguments, MessageLog& log) {
  const tav::EstateSpan span{timeOf("--since", arguments.span.since, "00:00:00"),
                             arguments.span.until.empty()
                                 ? tav::isoTime(std::time(nullptr))
                                 : timeOf("--until", arguments.span.until, "23:59:59")};
  if (span.until < span.since) throw UsageError("--until", "the time is before that of --since");
  if (arguments.output != "-") checkOutput(arguments.before, arguments.output);
  InputMaps maps(readMap(arguments.map));
  int code = kDone;
  bool failure = false;
  writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
    const auto report = tav::makeEstateDiffReport(arguments.format, out, style);
    report->begin({span.since, span.until, true});
    for (const tav::EstateChange& change : tav::changesBetween(arguments.before, span)) {
      if (!change.before || !change.after) {
        report->add(change, nullptr);
        failure |= isFailure(change, arguments);
        continue;
      }
      try {
        const tav::ModelDiff diff = compareVersions(arguments.before, change, maps.of(arguments.before));
        if (!diff.empty()) report->add(change, &diff);
        failure |= isFailure(diff, arguments);
      } catch (const TAVException& error) {
        log.logFailure(error.getMessage());
        code = kIncomplete;
      }
    }
    report->end(code == kDone);
  });
  if (code != kDone) return code;
  return failure ? kDiffers : kDone;
}

/// How the models of one folder or estate differ from those of another.
int comparePlaces(const Arguments& arguments, MessageLog& log) {
  for (const std::string& input : {arguments.before, arguments.after})
    if (arguments.output != "-") checkOutput(input, arguments.output);
  InputMaps maps(readMap(arguments.map));
  int code = kDone;
  bool failure = false;
  writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
    const auto report = tav::makeEstateDiffReport(arguments.format, out, style);
    report->begin({arguments.before, arguments.after});
    for (const ModelPair& pair : pairModels(arguments.before, arguments.after)) {
      code = worseOf(code, guarded(pair.key, log, [&] {
                       return comparePair(pair, maps, log, [&](const auto& change, const auto* diff) {
                         if (!diff || !diff->empty()) report->add(change, diff);
                         failure |= diff ? isFailure(*diff, arguments) : isFailure(change, arguments);
                       });
                     }));
    }
    report->end(code == kDone);
  });
  if (code != kDone) return code;
  return failure ? kDiffers : kDone;
}

int run(const CommandParser& parser, const Arguments& arguments, MessageLog& log) {
  const bool estate = parser.isGiven("--since");
  checkReports(arguments.reports, estate);
  if (estate && parser.isGiven("NEW"))
    throw UsageError("NEW", "--since compares versions in one estate database");
  if (estate) return compareEstate(arguments, log);
  if (parser.isGiven("--until")) throw UsageError::needs("--until", "--since");
  if (!parser.isGiven("NEW")) throw UsageError::isRequired("NEW");
  if (holdsSeveral(arguments.before) || holdsSeveral(arguments.after)) {
    if (!isPlace(arguments.before) || !isPlace(arguments.after))
      throw UsageError("NEW", "a folder or an estate of models is compared with another one");
    checkReports(arguments.reports, true);
    return comparePlaces(arguments, log);
  }
  return compare(arguments, log);
}

}  // namespace

Command addDiff(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser = program.addCommand(
      "diff", "Compare two definitions or models, or two folders or estates of them, lineage included");
  parser
      .addOption("OLD INPUT", arguments->before,
                 "A definition, a saved model, a folder of them or an estate database")
      .required();
  parser.addOption("NEW INPUT", arguments->after, "Another one of these");
  parser.addOption("--since TIME", arguments->span.since,
                   "Compare what the estate database has with what it had at this day or time (UTC)");
  parser.addOption("--until TIME", arguments->span.until,
                   "With --since: compare with this day's end or this time instead of now");
  parser.addOption("--format FORMAT", arguments->format, "The output format (default: text)")
      .oneOf({"text", "json", "markdown"});
  parser.addFlag("--exit-code", arguments->exitCode, "Exit with code 5 if they differ");
  parser
      .addOption(
          "--fail-on GROUP,...", arguments->failOn,
          "Exit with code 5 if there is any of these differences: broken, lost-lineage, changed, added,\n"
          "removed, renamed, moved, reordered")
      .separatedBy(',')
      .oneEachTime()
      .oneOf(groupNames());
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  return {parser, [parser, arguments](MessageLog& log) { return run(parser, *arguments, log); }};
}

}  // namespace host
