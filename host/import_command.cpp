#include <thread>

#include "host/command.h"
#include "host/estate_import.h"
#include "host/estate_plan.h"
#include "host/estate_target.h"
#include "host/import_run.h"
#include "host/output.h"
#include "host/reports_option.h"
#include "host/summary.h"

namespace host {
namespace {

constexpr int kMostJobs = 256;

struct Arguments {
  std::vector<std::string> inputs;
  std::string output;
  std::string folder;
  std::vector<std::string> reports;
  int jobs = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  bool json = false;
  ImportScope scope;
  EstateTarget estate;
  std::string map;
};

int importFile(const Arguments& arguments, MessageLog& log) {
  const std::string& input = arguments.inputs.front();
  checkInput(input);
  if (arguments.output == "-") throw UsageError("-o", "a model is saved in a file");
  checkOutput(input, arguments.output);

  Input opened = openInput(input, log);
  readReports(opened, arguments.reports);
  ImportScope scope = arguments.scope;
  scope.isLast = true;
  const bool isTold = !log.quiet || arguments.json;
  Summary summary;
  const int code = runImport(opened, arguments.output, log, scope, [&](const tav::DetailedModel& model) {
    if (isTold) summary = summarize(model);
    return true;
  });
  if (code != kDone && code != kIncomplete) return code;
  return tellOfWork(code, log, [&] {
    if (isTold) tellSummary(summary, arguments.output, arguments.json, log);
  });
}

int importFiles(const Arguments& arguments, MessageLog& log) {
  const std::vector<EstateFile> files =
      planOutputs(planInputs(arguments.inputs, log).definitions, arguments.folder, ".model.xml");
  if (files.empty()) return kNoDefinition;
  makeFolder(arguments.folder);

  std::vector<std::string> options;
  if (!arguments.scope.details) options.emplace_back("--no-details");
  const EstateRun run = importEstate(files, static_cast<std::size_t>(arguments.jobs), options, log);
  return tellOfWork(exitCodeOf(run), log, [&] { tellEstate(files, run, arguments.json, log); });
}

int importIntoEstate(const Arguments& arguments, MessageLog& log) {
  EstateTarget target = arguments.estate;
  target.json = arguments.json;
  target.map = readMap(arguments.map);
  if (target.path.empty()) throw UsageError("--estate", "the name of the database is empty");
  if (!isOneDefinition(arguments.inputs))
    return importIntoEstate(arguments.inputs, static_cast<std::size_t>(arguments.jobs), target,
                            arguments.scope, log);
  if (target.prune) throw UsageError("--prune", "only a folder of definitions can be compared");
  return importIntoEstate(arguments.inputs.front(), target, arguments.scope, log);
}

int import(const CommandParser& parser, const Arguments& arguments, MessageLog& log) {
  const bool estate = parser.isGiven("--estate");
  if (parser.isGiven("--jobs") && !estate && !parser.isGiven("--out-dir"))
    throw UsageError::needs("--jobs", "--out-dir or --estate");
  if (parser.isGiven("--out-dir")) return importFiles(arguments, log);
  if (estate) return importIntoEstate(arguments, log);
  if (arguments.inputs.size() > 1)
    throw UsageError("INPUT", "several files are imported with --out-dir or --estate instead of -o");
  if (!parser.isGiven("--output")) throw UsageError::isRequired("--output");
  return importFile(arguments, log);
}

}  // namespace

Command addImport(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser =
      program.addCommand("import", "Read one or more definitions and save their models");
  parser
      .addOption("INPUT FILE", arguments->inputs,
                 "The definition: a file, a project, a template or a folder (see docs/inputs.md)")
      .required();
  const Option output =
      parser.addOption("-o,--output FILE", arguments->output, "The file to save the model in");
  const Option folder =
      parser
          .addOption("--out-dir DIR", arguments->folder,
                     "The folder to save models in, one process per file; created if missing")
          .excludes(output);
  const Option estate =
      parser
          .addOption("--estate DB", arguments->estate.path,
                     "The database to put models in, those that changed since; created if missing")
          .excludes(output)
          .excludes(folder);
  parser
      .addOption("--jobs N", arguments->jobs, "The number of parallel processes (default: one per processor)")
      .between(1, kMostJobs);
  parser.addFlag("--prune", arguments->estate.prune, "Remove models of the estate whose definitions are gone")
      .needs(estate);
  parser.addFlag("--force", arguments->estate.force, "Import definitions that have not changed, too")
      .needs(estate);
  parser
      .addFlag(
          "--no-history", [arguments] { arguments->estate.history = false; },
          "Keep no documents of earlier versions in the estate")
      .needs(estate);
  addReports(parser, arguments->reports).excludes(folder).excludes(estate);
  addMap(parser, arguments->map).needs(estate);
  parser.addFlag("--json", arguments->json, "Print the summary as JSON");
  parser.addFlag(
      "--no-details", [arguments] { arguments->scope.details = false; },
      "Read the model alone, without what the definition says beyond it");
  return {parser, [parser, arguments](MessageLog& log) {
            log.tellsSteps = true;
            return import(parser, *arguments, log);
          }};
}

}  // namespace host
