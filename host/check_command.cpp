#include <array>

#include "checks/checks.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/output.h"
#include "host/reports_option.h"

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

/// One model against another.
int checkAgainst(const Arguments& arguments, const std::string& input, const tav::CheckRuleFile& rules,
                 const tav::AddressMap& map, std::vector<tav::CheckedModel>& models, MessageLog& log) {
  int newCode = kDone;
  // The second is read while the first, which an import deletes at its end, is there.
  const int code = withModel({arguments.against}, log, [&](const tav::DetailedModel& old) {
    newCode = withModel({input, arguments.reports}, log, [&](const tav::DetailedModel& model) {
      const tav::LineageGraph before(old, map);
      const tav::LineageGraph graph(model, map);
      const tav::ModelDiff diff = tav::compareModels(before, graph);
      models.push_back(tav::checkModel({graph, &before, &diff}, input, rules));
    });
  });
  return worseOf(code, newCode);
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
  if (arguments.inputs.empty()) throw CLI::RequiredError("INPUT");
  const AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map).value_or(tav::AddressMap()),
                                         log, arguments.reports);
  checkOutputs(inputs.paths, arguments.output);
  if (!arguments.against.empty() && inputs.paths.size() > 1)
    throw CLI::ValidationError("--against", "one model is compared with one");
  const tav::CheckRuleFile rules =
      arguments.rules.empty() ? tav::CheckRuleFile() : tav::CheckRuleFile::load(arguments.rules);
  std::vector<tav::CheckedModel> models;
  const int code =
      arguments.against.empty()
          ? forEachModel(inputs, log,
                         [&](const std::string& input, const tav::LineageGraph& graph) {
                           models.push_back(tav::checkModel({graph, nullptr, nullptr}, input, rules));
                         })
          : checkAgainst(arguments, inputs.paths.front(), rules, inputs.map, models, log);
  if (models.empty()) return code;
  writeOutput(arguments.output, [&](std::ostream& out) { writerOf(arguments.format)(models, out); });
  if (code != kDone || arguments.failOn == "never") return code;
  return tav::hasFindings(models, *tav::checkSeverityOf(arguments.failOn)) ? kFindings : kDone;
}

}  // namespace

Command addCheck(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* parser = program.add_subcommand("check", "Hold models against rules, for builds and reviews");
  parser
      ->add_option("INPUT", arguments->inputs,
                   "Definitions or saved models, or folders of them (see docs/inputs.md)")
      ->type_name("FILE");
  parser
      ->add_option("--rules", arguments->rules,
                   "The rule file, in YAML or JSON (default: the rules as --print-rules has them)")
      ->type_name("FILE");
  parser
      ->add_option("--against", arguments->against,
                   "The model as it was, for rules about changes: a definition or a saved model")
      ->type_name("OLD");
  std::vector<std::string> formats;
  formats.reserve(kFormats.size());
  for (const Format& format : kFormats) formats.emplace_back(format.name);
  parser->add_option("--format", arguments->format, "The output format (default: text)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember(formats));
  parser
      ->add_option(
          "--fail-on", arguments->failOn,
          "Exit with code 7 if anything is found that is at least this: error, warning, info; or never\n"
          "(default: error)")
      ->type_name("SEVERITY")
      ->check(CLI::IsMember({"error", "warning", "info", "never"}));
  parser->add_flag("--list-rules", arguments->listRules, "Print the rules and what they are by default");
  parser->add_flag("--print-rules", arguments->printRules,
                   "Print a rule file that says what holds without one");
  addReports(*parser, arguments->reports);
  addMap(*parser, arguments->map);
  addOutput(*parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return check(*arguments, log); }};
}

}  // namespace host
