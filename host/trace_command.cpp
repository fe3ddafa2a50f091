#include <fmt/format.h>

#include <span>
#include <utility>

#include "exports/answers/lineage_rows.h"
#include "exports/answers/lineage_text.h"
#include "exports/estate_lineage.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/inputs/estate_model.h"
#include "host/kind_option.h"
#include "host/map_option.h"
#include "host/output.h"
#include "host/reports_option.h"
#include "lineage/joined_search.h"

namespace host {
namespace {

constexpr std::string_view kEndOfOptions = "--";

struct Arguments {
  std::string input;
  /// The last of the words: what the parser takes for the name is an input where others follow.
  std::string name;
  std::vector<std::string> inputs;
  std::string format = "text";
  std::vector<std::string> kinds;
  std::string output = "-";
  std::string map;
  std::vector<std::string> reports;
  tav::LineageWalk walk;
};

using RowWriter = void (*)(const tav::JoinedGraph& graph, const tav::LineageQuestion& question,
                           std::span<const tav::NodeKind> kinds, std::ostream& out);

/// Of a format that lists nodes one by one; null for the others, which show how they hang together.
RowWriter rowWriterOf(const std::string& format) {
  if (format == "list") return tav::writeLineageList;
  if (format == "csv") return tav::writeLineageCsv;
  return format == "markdown" ? tav::writeLineageMarkdown : nullptr;
}

void write(const Arguments& arguments, const tav::JoinedGraph& graph, const tav::LineageQuestion& question,
           std::ostream& out, const tav::TextStyle& style) {
  if (const RowWriter writeRows = rowWriterOf(arguments.format))
    writeRows(graph, question, kindsOf(arguments.kinds), out);
  else if (arguments.format == "json")
    tav::writeLineageJson(graph, question, out);
  else if (arguments.format == "dot")
    tav::writeLineageDot(graph.graph(0), question, out);
  else
    tav::writeLineageText(graph, question, out, style);
}

/// Where the name may mean several things in one of the models, that is an error of this model.
int answer(const Arguments& arguments, const tav::JoinedGraph& graph, const tav::FoundStarts& found,
           MessageLog& log) {
  for (const std::string& message : found.ambiguous) log.logFailure(message);
  writeAnswer(arguments.output, log, [&](std::ostream& out, const tav::TextStyle& style) {
    write(arguments, graph, {found.nodes, arguments.walk}, out, style);
  });
  return found.ambiguous.empty() ? kDone : kFailed;
}

/// The words that the parser has left over are arguments but for options that it does not know.
void addWords(Arguments& arguments, const CommandParser& parser) {
  arguments.inputs = {arguments.input};
  bool literal = false;
  for (const std::string& word : parser.leftWords()) {
    if (!literal && word == kEndOfOptions) {
      literal = true;
      continue;
    }
    if (!literal && word.size() > 1 && word.front() == '-') throw parser.unknownOption(word);
    arguments.inputs.push_back(std::exchange(arguments.name, word));
  }
}

/// The estate that the question is to, if it is to one alone and calls databases as the estate does.
std::optional<EstatePlace> askedEstate(const Arguments& arguments) {
  if (arguments.inputs.size() != 1 || !arguments.map.empty() || !arguments.reports.empty())
    return std::nullopt;
  return estatePlace(arguments.inputs.front());
}

/// What answers call the models of an estate.
std::vector<std::string> namesOf(const std::string& path, const std::vector<tav::EstateModel>& models) {
  std::vector<ModelName> called;
  called.reserve(models.size());
  for (const tav::EstateModel& model : models) called.push_back({model.name, estateArgument(path, model)});
  return nameModels(called);
}

/// Answers from the rows of an estate, if it has models.
std::optional<int> tellOfEstate(const Arguments& arguments, const EstatePlace& place, MessageLog& log) {
  checkOutputs({place.path}, arguments.output);
  tav::AskedModels asked{modelsIn(place), {}};
  if (asked.models.empty()) return std::nullopt;
  if (place.model.empty()) asked.names = namesOf(place.path, asked.models);
  tav::LineageWalk walk = arguments.walk;
  walk.members |= arguments.format == "json";
  const auto found = tav::EstateLineage(place.path, asked).ask(arguments.name, walk);
  return answer(arguments, found->graph(), found->starts(), log);
}

int tell(const Arguments& arguments, MessageLog& log) {
  if (!arguments.kinds.empty() && !rowWriterOf(arguments.format))
    throw UsageError("--kind", "is an option of --format list, csv and markdown");
  if (const auto estate = askedEstate(arguments)) {
    if (estate->model.empty() && arguments.format == "dot")
      throw UsageError("--format", "dot draws one model");
    if (const auto code = tellOfEstate(arguments, *estate, log)) return *code;
  }
  AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map), log, arguments.reports);
  if (inputs.several && arguments.format == "dot") throw UsageError("--format", "dot draws one model");
  checkOutputs(inputs.paths, arguments.output);
  int code = kDone;
  const int readCode = withModels(inputs, log, [&](const tav::JoinedGraph& graph) {
    code = answer(arguments, graph, tav::findStarts(graph, arguments.name, arguments.walk.direction), log);
  });
  return worseOf(code, readCode);
}

Command add(CommandLine& program, const std::string& name, const std::string& description,
            tav::LineageDirection direction) {
  auto arguments = std::make_shared<Arguments>();
  arguments->walk.direction = direction;
  const CommandParser parser = program.addCommand(name, description);
  parser.keepLeftWords();
  addFirstInput(parser, arguments->input);
  parser
      .addOption("NAME", arguments->name,
                 "A path, a qualified name such as \"[Measures].[Sales]\" or dbo.FactSales.Amount, or an "
                 "unambiguous part of one")
      .required();
  parser.addOption("--format FORMAT", arguments->format, "The output format (default: text)")
      .oneOf({"text", "list", "csv", "markdown", "json", "dot"});
  addKinds(parser, arguments->kinds);
  parser.addOption("--depth N", arguments->walk.depth, "The maximum number of steps (default: no limit)");
  parser.addFlag("--values", arguments->walk.values, "Follow only what values flow along");
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  return {parser, [parser, arguments](MessageLog& log) {
            addWords(*arguments, parser);
            return tell(*arguments, log);
          }};
}

}  // namespace

Command addTrace(CommandLine& program) {
  return add(program, "trace", "Trace an object back to its source columns in the database",
             tav::LineageDirection::upstream);
}

Command addImpact(CommandLine& program) {
  return add(program, "impact", "Show everything that depends on an object",
             tav::LineageDirection::downstream);
}

}  // namespace host
