#include <fmt/ostream.h>

#include "exports/answers/coverage_models.h"
#include "exports/answers/coverage_report.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/map_option.h"
#include "host/output.h"
#include "host/reports_option.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr int kWholeCoverage = 100;

struct Arguments {
  std::vector<std::string> inputs;
  std::string format = "text";
  std::string output = "-";
  std::string map;
  std::vector<std::string> reports;
  int bound = 0;
};

/// Gives them names that differ.
void nameAll(std::vector<tav::ModelCoverage>& models) {
  std::vector<ModelName> called;
  called.reserve(models.size());
  for (const tav::ModelCoverage& model : models) called.push_back({model.model, model.input});
  const std::vector<std::string> names = nameModels(called);
  for (std::size_t i = 0; i < models.size(); ++i) models[i].model = names[i];
}

/// The exit code, after `code`, of a model whose coverage has that many percent.
int hold(const Arguments& arguments, const std::string& input, std::size_t percent, int code,
         MessageLog& log) {
  if ((code != kDone && code != kIncomplete) || percent >= static_cast<std::size_t>(arguments.bound))
    return code;
  log.logEventOf(input, tav::messageEvent(tav::Message::belowCoverage,
                                          {std::to_string(percent), std::to_string(arguments.bound)}));
  return kBelowBound;
}

int measureOne(const Arguments& arguments, AnswerInputs& inputs, MessageLog& log) {
  std::size_t percent = 100;
  const int code = withModels(inputs, log, [&](const tav::JoinedModels& joined) {
    const tav::LineageGraph& graph = joined.whole(0);
    const tav::Coverage coverage = tav::measureCoverage(graph);
    writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
      if (arguments.format == "json")
        tav::writeCoverageJson(graph, coverage, out);
      else
        tav::writeCoverageText(graph, coverage, out, style);
    });
    percent = coverage.percent();
  });
  return hold(arguments, {}, percent, code, log);
}

/// The bound holds for each model.
int measureSeveral(const Arguments& arguments, AnswerInputs& inputs, MessageLog& log) {
  std::vector<tav::ModelCoverage> models;
  int code = forEachModel(inputs, log, [&](const std::string& input, const tav::LineageGraph& graph) {
    models.push_back(tav::summarizeCoverage(graph, tav::measureCoverage(graph)));
    models.back().input = input;
  });
  if (models.empty()) return code;
  nameAll(models);
  writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
    if (arguments.format == "json")
      tav::writeCoverageJson(models, out);
    else
      tav::writeCoverageText(models, out, style);
  });
  for (const tav::ModelCoverage& model : models)
    code = worseOf(code, hold(arguments, model.input, model.percent(), kDone, log));
  return code;
}

int measure(const Arguments& arguments, MessageLog& log) {
  AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map), log, arguments.reports);
  checkOutputs(inputs.paths, arguments.output);
  return inputs.several ? measureSeveral(arguments, inputs, log) : measureOne(arguments, inputs, log);
}

}  // namespace

Command addCoverage(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser = program.addCommand(
      "coverage",
      "Show how many attributes and measures trace back to a database column, and why others do not");
  addInputs(parser, arguments->inputs);
  parser
      .addOption("--fail-under PERCENT", arguments->bound,
                 "Exit with code 4 if the coverage is below this percentage")
      .between(0, kWholeCoverage);
  parser.addOption("--format FORMAT", arguments->format, "The output format (default: text)")
      .oneOf({"text", "json"});
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return measure(*arguments, log); }};
}

}  // namespace host
