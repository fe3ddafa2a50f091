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
  CLI::Option* outputOption = nullptr;
  CLI::Option* folderOption = nullptr;
  CLI::Option* estateOption = nullptr;
  CLI::Option* jobsOption = nullptr;
  EstateTarget estate;
  std::string map;
};

int importFile(const Arguments& arguments, MessageLog& log) {
  const std::string& input = arguments.inputs.front();
  checkInput(input);
  if (arguments.output == "-") throw CLI::ValidationError("-o", "a model is saved in a file");
  checkOutput(input, arguments.output);

  Input opened = openInput(input, log);
  readReports(opened, arguments.reports);
  Summary summary;
  const int code =
      runImport(opened, arguments.output, log, arguments.scope, [&](const tav::DetailedModel& model) {
        summary = summarize(model);
        return true;
      });
  if (code != kDone && code != kIncomplete) return code;
  return tellOfWork(code, log, [&] { tellSummary(summary, arguments.output, arguments.json, log); });
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
  if (target.path.empty()) throw CLI::ValidationError("--estate", "the name of the database is empty");
  if (!isOneDefinition(arguments.inputs))
    return importIntoEstate(arguments.inputs, static_cast<std::size_t>(arguments.jobs), target,
                            arguments.scope, log);
  if (target.prune) throw CLI::ValidationError("--prune", "only a folder of definitions can be compared");
  return importIntoEstate(arguments.inputs.front(), target, arguments.scope, log);
}

int import(const Arguments& arguments, MessageLog& log) {
  const bool estate = arguments.estateOption->count() > 0;
  if (arguments.jobsOption->count() > 0 && !estate && arguments.folderOption->count() == 0)
    throw CLI::RequiresError("--jobs", "--out-dir or --estate");
  if (arguments.folderOption->count() > 0) return importFiles(arguments, log);
  if (estate) return importIntoEstate(arguments, log);
  if (arguments.inputs.size() > 1)
    throw CLI::ValidationError("INPUT",
                               "several files are imported with --out-dir or --estate instead of -o");
  if (arguments.outputOption->count() == 0) throw CLI::RequiredError("--output");
  return importFile(arguments, log);
}

}  // namespace

Command addImport(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* parser = program.add_subcommand("import", "Read one or more definitions and save their models");
  parser
      ->add_option("INPUT", arguments->inputs,
                   "The definition: a file, a project, a template or a folder (see docs/inputs.md)")
      ->type_name("FILE")
      ->required();
  arguments->outputOption =
      parser->add_option("-o,--output", arguments->output, "The file to save the model in")
          ->type_name("FILE");
  arguments->folderOption =
      parser
          ->add_option("--out-dir", arguments->folder,
                       "The folder to save models in, one process per file; created if missing")
          ->type_name("DIR")
          ->excludes(arguments->outputOption);
  arguments->estateOption =
      parser
          ->add_option("--estate", arguments->estate.path,
                       "The database to put models in, those that changed since; created if missing")
          ->type_name("DB")
          ->excludes(arguments->outputOption)
          ->excludes(arguments->folderOption);
  arguments->jobsOption = parser
                              ->add_option("--jobs", arguments->jobs,
                                           "The number of parallel processes (default: one per processor)")
                              ->type_name("N")
                              ->check(CLI::Range(1, kMostJobs));
  parser
      ->add_flag("--prune", arguments->estate.prune, "Remove models of the estate whose definitions are gone")
      ->needs(arguments->estateOption);
  parser->add_flag("--force", arguments->estate.force, "Import definitions that have not changed, too")
      ->needs(arguments->estateOption);
  parser
      ->add_flag_callback(
          "--no-history", [arguments] { arguments->estate.history = false; },
          "Keep no documents of earlier versions in the estate")
      ->needs(arguments->estateOption);
  addReports(*parser, arguments->reports)
      .excludes(arguments->folderOption)
      ->excludes(arguments->estateOption);
  addMap(*parser, arguments->map).needs(arguments->estateOption);
  parser->add_flag("--json", arguments->json, "Print the summary as JSON");
  parser->add_flag_callback(
      "--no-details", [arguments] { arguments->scope.details = false; },
      "Read the model alone, without what the definition says beyond it");
  return {parser, [arguments](MessageLog& log) {
            log.tellsSteps = true;
            return import(*arguments, log);
          }};
}

}  // namespace host
