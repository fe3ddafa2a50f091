#include <fmt/format.h>

#include "exports/answers/lineage_text.h"
#include "host/command.h"
#include "host/model_input.h"
#include "host/output.h"
#include "lineage/node_search.h"

namespace host {
namespace {

struct Arguments {
  std::string input;
  std::string name;
  std::string format = "text";
  std::string output = "-";
  tav::LineageWalk walk;
};

using Writer = void (*)(const tav::LineageGraph& graph, const tav::LineageQuestion& question,
                        std::ostream& out);

Writer writerOf(const std::string& format) {
  if (format == "json") return tav::writeLineageJson;
  return format == "dot" ? tav::writeLineageDot : tav::writeLineageText;
}

int tell(const Arguments& arguments, MessageLog& log) {
  if (arguments.output != "-") checkOutput(arguments.input, arguments.output);
  return withModel(arguments.input, log, [&](const tav::DetailedModel& model) {
    const tav::LineageGraph graph(model);
    const tav::NodeId start = tav::findNode(graph, arguments.name, arguments.walk.direction);
    writeOutput(arguments.output, [&](std::ostream& out) {
      writerOf(arguments.format)(graph, {start, arguments.walk}, out);
    });
  });
}

Command add(CLI::App& program, const std::string& name, const std::string& description,
            tav::LineageDirection direction) {
  auto arguments = std::make_shared<Arguments>();
  arguments->walk.direction = direction;
  CLI::App* parser = program.add_subcommand(name, description);
  addInput(*parser, arguments->input);
  parser
      ->add_option("NAME", arguments->name,
                   "A path, a qualified name such as \"[Measures].[Sales]\" or dbo.FactSales.Amount, or an "
                   "unambiguous part of one")
      ->required();
  parser->add_option("--format", arguments->format, "The output format (default: text)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"text", "json", "dot"}));
  parser->add_option("--depth", arguments->walk.depth, "The maximum number of steps (default: no limit)")
      ->type_name("N");
  parser->add_flag("--values", arguments->walk.values, "Follow only what values flow along");
  addOutput(*parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return tell(*arguments, log); }};
}

}  // namespace

Command addTrace(CLI::App& program) {
  return add(program, "trace", "Trace an object back to its source columns in the database",
             tav::LineageDirection::upstream);
}

Command addImpact(CLI::App& program) {
  return add(program, "impact", "Show everything that depends on an object",
             tav::LineageDirection::downstream);
}

}  // namespace host
