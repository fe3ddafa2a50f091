#include "exports/answers/unused_report.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/map_option.h"
#include "host/output.h"
#include "host/reports_option.h"

namespace host {
namespace {

struct Arguments {
  std::vector<std::string> inputs;
  std::vector<std::string> kinds;
  std::string format = "text";
  std::string output = "-";
  std::string map;
  std::vector<std::string> reports;
};

using Writer = void (*)(const tav::JoinedModels& graph, std::span<const tav::UnusedGroup> groups,
                        std::ostream& out);

/// Of a format for tools and pages; null for text.
Writer writerOf(const std::string& format) {
  if (format == "json") return tav::writeUnusedJson;
  if (format == "csv") return tav::writeUnusedCsv;
  return format == "markdown" ? tav::writeUnusedMarkdown : nullptr;
}

/// The groups that were asked for, all where none was, in their own order.
std::vector<tav::UnusedGroup> groupsOf(const std::vector<std::string>& kinds) {
  std::vector<tav::UnusedGroup> groups;
  for (const tav::UnusedGroup& group : tav::unusedGroups())
    if (kinds.empty() || std::find(kinds.begin(), kinds.end(), group.name) != kinds.end())
      groups.push_back(group);
  return groups;
}

std::vector<std::string> kindNames() {
  std::vector<std::string> names;
  for (const tav::UnusedGroup& group : tav::unusedGroups()) names.emplace_back(group.name);
  return names;
}

int list(const Arguments& arguments, MessageLog& log) {
  AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map), log, arguments.reports);
  checkOutputs(inputs.paths, arguments.output);
  const std::vector<tav::UnusedGroup> groups = groupsOf(arguments.kinds);
  return withModels(inputs, log, [&](const tav::JoinedModels& graph) {
    writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
      if (const Writer write = writerOf(arguments.format))
        write(graph, groups, out);
      else
        tav::writeUnusedText(graph, groups, out, style);
    });
  });
}

}  // namespace

Command addUnused(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser =
      program.addCommand("unused", "Show what nothing uses, and what is only shown, kind by kind");
  addInputs(parser, arguments->inputs);
  parser
      .addOption("--kind KINDS", arguments->kinds,
                 "Only these: tables, columns, dimensions, attributes, measures, members, sets, expressions "
                 "or functions; several with commas (default: all)")
      .separatedBy(',')
      .oneOf(kindNames());
  parser.addOption("--format FORMAT", arguments->format, "The output format (default: text)")
      .oneOf({"text", "json", "csv", "markdown"});
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  return {parser, [arguments](MessageLog& log) { return list(*arguments, log); }};
}

}  // namespace host
