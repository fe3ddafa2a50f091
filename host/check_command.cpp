#include <array>

#include "checks/checks.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/model_pairs.h"
#include "host/output.h"
#include "host/reports_option.h"
#include "messages/message.h"

namespace host {
namespace {

struct Arguments {
  std::vector<std::string> inputs;
  std::string rules;
  std::string against;
  std::string map;
  std::vector<std::string> reports;
  std::string format = "text";
  std::string failOn = "error";
  std::string output = "-";
  bool listRules = false;
  bool printRules = false;
};

using Writer = void (*)(std::span<const tav::CheckedModel> models, std::ostream& out);

struct Format {
  const char* name;
  Writer write;
};
constexpr std::array kFormats{Format{"text", tav::writeCheckText},     Format{"json", tav::writeCheckJson},
                              Format{"junit", tav::writeCheckJunit},   Format{"sarif", tav::writeCheckSarif},
                              Format{"github", tav::writeCheckGithub}, Format{"azure", tav::writeCheckAzure}};

Writer writerOf(const std::string& name) {
  const auto found = std::find_if(kFormats.begin(), kFormats.end(),
                                  [&](const Format& format) { return name == format.name; });
  return found == kFormats.end() ? tav::writeCheckText : found->write;
}

void writeRuleList(std::ostream& out) {
  std::size_t width = 0;
  for (const tav::CheckRule& rule : tav::checkRules()) width = std::max(width, rule.id.size());
  for (const tav::CheckRule& rule : tav::checkRules()) {
    const std::string_view severity = tav::checkSeverityName(rule.severity);
    out << rule.id << std::string(width - rule.id.size() + 2, ' ') << severity
        << std::string(9 - severity.size(), ' ') << rule.summary << '\n';
  }
}

/// What a check goes by and what it found.
struct Check {
  const Arguments& arguments;
  AnswerInputs& inputs;
  tav::CheckRuleFile rules;
  MessageLog& log;
  std::vector<tav::CheckedModel> models = {};
};

int checkAll(Check& check) {
  return forEachModel(check.inputs, check.log, [&](const std::string& input, const tav::LineageGraph& graph) {
    check.models.push_back(tav::checkModel({graph, nullptr, nullptr}, input, check.rules));
  });
}

/// One model against another.
int checkAgainst(Check& check, const std::string& was, const std::string& input) {
  int newCode = kDone;
  // The second is read while the first, which an import deletes at its end, is there.
  const int code = withModel({was}, check.log, [&](const tav::DetailedModel& old) {
    newCode = withModel({input, check.inputs.reports}, check.log, [&](const tav::DetailedModel& model) {
      const tav::AddressMap& map = check.inputs.maps.ofBoth(was, input);
      const tav::LineageGraph before(old, map);
      const tav::LineageGraph graph(model, map);
      const tav::ModelDiff diff = tav::compareModels(before, graph);
      check.models.push_back(tav::checkModel({graph, &before, &diff}, input, check.rules));
    });
  });
  return worseOf(code, newCode);
}

/// One model of a folder or estate against what it was in another. A new one is checked as it is.
int checkPair(Check& check, const ModelPair& pair) {
  if (pair.after.empty()) {
    check.log.logEvent(tav::messageEvent(tav::Message::modelGone, {pair.before}));
    return kDone;
  }
  if (!pair.before.empty()) return checkAgainst(check, pair.before, pair.after);
  return withModel({pair.after}, check.log, [&](const tav::DetailedModel& model) {
    const tav::LineageGraph graph(model, check.inputs.maps.of(pair.after));
    check.models.push_back(tav::checkModel({graph, nullptr, nullptr}, pair.after, check.rules));
  });
}

int checkPairs(Check& check) {
  const std::string& was = check.arguments.against;
  if (check.arguments.inputs.size() > 1 || !isPlace(was) || !isPlace(check.arguments.inputs.front()))
    throw UsageError("--against", "one model is compared with one, a folder or an estate with another one");
  int code = kDone;
  for (const ModelPair& pair : pairModels(was, check.arguments.inputs.front()))
    code = worseOf(code, guarded(pair.key, check.log, [&] { return checkPair(check, pair); }));
  return code;
}

int checkModels(Check& check) {
  const std::string& was = check.arguments.against;
  if (was.empty()) return checkAll(check);
  if (check.inputs.several || holdsSeveral(was)) return checkPairs(check);
  return checkAgainst(check, was, check.inputs.paths.front());
}

int check(const Arguments& arguments, MessageLog& log) {
  if (arguments.listRules || arguments.printRules) {
    writeOutput(arguments.output, [&](std::ostream& out) {
      if (arguments.listRules)
        writeRuleList(out);
      else
        out << tav::CheckRuleFile::text();
    });
    return kDone;
  }
  if (arguments.inputs.empty()) throw UsageError::isRequired("INPUT");
  AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map), log, arguments.reports);
  checkOutputs(inputs.paths, arguments.output);
  Check run{arguments, inputs,
            arguments.rules.empty() ? tav::CheckRuleFile() : tav::CheckRuleFile::load(arguments.rules), log};
  const int code = checkModels(run);
  const std::vector<tav::CheckedModel>& models = run.models;
  if (models.empty()) return code;
  writeOutput(arguments.output, [&](std::ostream& out) { writerOf(arguments.format)(models, out); });
  if (code != kDone || arguments.failOn == "never") return code;
  return tav::hasFindings(models, *tav::checkSeverityOf(arguments.failOn)) ? kFindings : kDone;
}

}  // namespace

Command addCheck(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser =
      program.addCommand("check", "Hold models against rules, for builds and reviews");
  parser.addOption("INPUT FILE", arguments->inputs,
                   "Definitions or saved models, folders of them or estate databases (see docs/inputs.md)");
  parser.addOption("--rules FILE", arguments->rules,
                   "The rule file, in YAML or JSON (default: the rules as --print-rules has them)");
  parser.addOption("--against OLD", arguments->against,
                   "The model as it was, for rules about changes; for a folder or an estate, another one");
  std::vector<std::string> formats;
  formats.reserve(kFormats.size());
  for (const Format& format : kFormats) formats.emplace_back(format.name);
  parser.addOption("--format FORMAT", arguments->format, "The output format (default: text)").oneOf(formats);
  parser
      .addOption(
          "--fail-on SEVERITY", arguments->failOn,
          "Exit with code 7 if anything is found that is at least this: error, warning, info; or never\n"
          "(default: error)")
      .oneOf({"error", "warning", "info", "never"});
  parser.addFlag("--list-rules", arguments->listRules, "Print the rules and what they are by default");
  parser.addFlag("--print-rules", arguments->printRules,
                 "Print a rule file that says what holds without one");
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return check(*arguments, log); }};
}

}  // namespace host
