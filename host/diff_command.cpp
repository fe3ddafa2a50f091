#include <algorithm>

#include "exports/answers/diff_report.h"
#include "host/command.h"
#include "host/model_input.h"
#include "host/output.h"

namespace host {
namespace {

struct Arguments {
  std::string before;
  std::string after;
  std::string format = "text";
  std::string output = "-";
  bool exitCode = false;
  std::vector<std::string> failOn;
};

using Writer = void (*)(const tav::ModelDiff& diff, std::ostream& out);

Writer writerOf(const std::string& format) {
  if (format == "json") return tav::writeDiffJson;
  return format == "markdown" ? tav::writeDiffMarkdown : tav::writeDiffText;
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
    throw CLI::ValidationError("NEW", "only one of the two can be read from standard input");
  bool failure = false;
  int newCode = kDone;
  // The second is read while the first, which an import deletes at its end, is there.
  const int code = withModel(arguments.before, log, [&](const tav::DetailedModel& before) {
    newCode = withModel(arguments.after, log, [&](const tav::DetailedModel& after) {
      const tav::ModelDiff diff = tav::compareModels(before, after);
      failure = isFailure(diff, arguments);
      writeOutput(arguments.output, [&](std::ostream& out) { writerOf(arguments.format)(diff, out); });
    });
  });
  if (code != kDone || newCode != kDone) return code != kDone ? code : newCode;
  return failure ? kDiffers : kDone;
}

}  // namespace

Command addDiff(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* parser = program.add_subcommand("diff", "Compare two definitions or models, lineage included");
  parser->add_option("OLD", arguments->before, "A definition or a saved model")
      ->type_name("FILE")
      ->required();
  parser->add_option("NEW", arguments->after, "Another one")->type_name("FILE")->required();
  parser->add_option("--format", arguments->format, "The output format (default: text)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"text", "json", "markdown"}));
  parser->add_flag("--exit-code", arguments->exitCode, "Exit with code 5 if they differ");
  parser
      ->add_option(
          "--fail-on", arguments->failOn,
          "Exit with code 5 if there is any of these differences: broken, lost-lineage, changed, added,\n"
          "removed, renamed, moved, reordered")
      ->type_name("GROUP,...")
      ->delimiter(',')
      ->check(CLI::IsMember(groupNames()));
  addOutput(*parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return compare(*arguments, log); }};
}

}  // namespace host
