#include "host/command.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/output.h"
#include "host/reports_option.h"
#include "report/report.h"

namespace host {
namespace {

constexpr std::string_view kProgram = "xmla-bridge " XMLA_VERSION;

struct Arguments {
  std::string input;
  std::string output = "-";
  std::string map;
  std::vector<std::string> reports;
};

int report(const Arguments& arguments, MessageLog& log) {
  if (arguments.output != "-") checkOutput(arguments.input, arguments.output);
  InputMaps maps(readMap(arguments.map));
  return withModel({arguments.input, arguments.reports}, log, [&](const tav::DetailedModel& model) {
    const tav::LineageGraph graph(model, maps.of(arguments.input));
    writeOutput(arguments.output, [&](std::ostream& out) { tav::writeReport(graph, kProgram, out); });
  });
}

}  // namespace

Command addReport(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser =
      program.addCommand("report", "Write a self-contained HTML report of a model and its lineage");
  addInput(parser, arguments->input);
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return report(*arguments, log); }};
}

}  // namespace host
