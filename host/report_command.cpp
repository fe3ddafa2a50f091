#include <filesystem>

#include "framework/std/exception.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/estate_plan.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/output.h"
#include "host/reports_option.h"
#include "lineage/server_location.h"
#include "report/estate_report.h"
#include "report/report.h"

namespace host {
namespace {

constexpr std::string_view kProgram = "xmla-bridge " XMLA_VERSION;

/// No model's page can have the name of the page about all.
constexpr std::string_view kExtension = ".report.html";
constexpr std::string_view kEstatePage = "index.html";

struct Arguments {
  std::vector<std::string> inputs;
  std::string output = "-";
  std::string folder;
  std::string map;
  std::vector<std::string> reports;
};

int reportOne(const Arguments& arguments, AnswerInputs& inputs, MessageLog& log) {
  return withModels(inputs, log, [&](const tav::JoinedModels& models) {
    writeOutput(arguments.output,
                [&](std::ostream& out) { tav::writeReport(models.whole(0), kProgram, out); });
  });
}

/// The file of a page as an address in another one beside it.
std::string pageAddress(const std::string& path) {
  return tav::uriText(std::filesystem::path(path).filename().string());
}

/// A page for each model, and one about all of them.
class ReportFolder {
 public:
  ReportFolder(const Arguments& arguments, AnswerInputs& inputs, MessageLog& log)
      : folder_(arguments.folder), inputs_(inputs), log_(log) {}

  int write() {
    const std::vector<EstateFile> files = planOutputs(inputs_.paths, folder_, kExtension);
    makeFolder(folder_);
    int code = kDone;
    for (const EstateFile& file : files)
      code = worseOf(code, guarded(file.input, log_, [&] { return report(file); }));
    writeOutput((std::filesystem::path(folder_) / kEstatePage).string(),
                [&](std::ostream& out) { estate_.write(nameModels(models_), kProgram, out); });
    return code;
  }

 private:
  int report(const EstateFile& file) {
    const std::size_t before = models_.size();
    try {
      const int code = withModel({file.input, inputs_.reports}, log_,
                                 [&](const tav::DetailedModel& model) { write(file, model); });
      if (models_.size() == before) estate_.addFailure(file.input, "it holds no database definition");
      return code;
    } catch (const TAVException& error) {
      estate_.addFailure(file.input, error.getMessage().str());
      throw;
    }
  }

  void write(const EstateFile& file, const tav::DetailedModel& model) {
    const tav::LineageGraph graph(model, inputs_.maps.of(file.input));
    writeOutput(file.output, [&](std::ostream& out) { tav::writeReport(graph, kProgram, out); });
    estate_.add(graph, file.input, pageAddress(file.output));
    models_.push_back({graph.modelName(), file.input});
  }

  const std::string& folder_;
  AnswerInputs& inputs_;
  MessageLog& log_;
  tav::EstateReport estate_;
  std::vector<ModelName> models_;  // those of the estate, in their order
};

int report(const Arguments& arguments, bool toFolder, MessageLog& log) {
  if (toFolder && arguments.output != "-") throw UsageError::excludes("--out-dir", "--output");
  AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map), log, arguments.reports);
  if (toFolder) return ReportFolder(arguments, inputs, log).write();
  if (inputs.several)
    throw UsageError("INPUT", "a report is about one model: give several a folder with --out-dir");
  checkOutputs(inputs.paths, arguments.output);
  return reportOne(arguments, inputs, log);
}

}  // namespace

Command addReport(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser = program.addCommand(
      "report", "Write a self-contained HTML report of a model and its lineage, or of several models");
  addInputs(parser, arguments->inputs);
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  parser.addOption("--out-dir DIR", arguments->folder,
                   "The folder for a report of each model, and index.html about all of them");
  return {parser, [parser, arguments](MessageLog& log) {
            return report(*arguments, parser.isGiven("--out-dir"), log);
          }};
}

}  // namespace host
