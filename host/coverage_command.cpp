#include <fmt/ostream.h>

#include "exports/answers/coverage_report.h"
#include "host/command.h"
#include "host/model_input.h"
#include "host/output.h"
#include "messages/message.h"

namespace host {
namespace {

constexpr int kWholeCoverage = 100;

struct Arguments {
  std::string input;
  std::string format = "text";
  std::string output = "-";
  int bound = 0;
};

int measure(const Arguments& arguments, MessageLog& log) {
  if (arguments.output != "-") checkOutput(arguments.input, arguments.output);
  std::size_t percent = 100;
  const int code = withModel(arguments.input, log, [&](const tav::DetailedModel& model) {
    const tav::LineageGraph graph(model);
    const tav::Coverage coverage = tav::measureCoverage(graph);
    writeOutput(arguments.output, [&](std::ostream& out) {
      if (arguments.format == "json")
        tav::writeCoverageJson(graph, coverage, out);
      else
        tav::writeCoverageText(graph, coverage, out);
    });
    percent = coverage.percent();
  });
  if ((code != kDone && code != kIncomplete) || percent >= static_cast<std::size_t>(arguments.bound))
    return code;
  log.logEvent(tav::messageEvent(tav::Message::belowCoverage,
                                 {std::to_string(percent), std::to_string(arguments.bound)}));
  return kBelowBound;
}

}  // namespace

Command addCoverage(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* parser = program.add_subcommand(
      "coverage",
      "Show how many attributes and measures trace back to a database column, and why others do not");
  addInput(*parser, arguments->input);
  parser
      ->add_option("--fail-under", arguments->bound,
                   "Exit with code 4 if the coverage is below this percentage")
      ->type_name("PERCENT")
      ->check(CLI::Range(0, kWholeCoverage));
  parser->add_option("--format", arguments->format, "The output format (default: text)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"text", "json"}));
  addOutput(*parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return measure(*arguments, log); }};
}

}  // namespace host
