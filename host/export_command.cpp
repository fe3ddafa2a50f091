#include <optional>

#include "exports/formats.h"
#include "host/answer_models.h"
#include "host/command.h"
#include "host/estate_plan.h"
#include "host/export_lineage.h"
#include "host/inputs/estate_model.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/output.h"
#include "host/reports_option.h"

namespace host {
namespace {

struct Arguments {
  std::vector<std::string> inputs;
  std::string format;
  std::string output = "-";
  std::string folder;
  std::string map;
  std::vector<std::string> reports;
  tav::ExportOptions options;
  PostTarget post;
};

/// An export of models in one format, one after the other.
class Export {
 public:
  Export(const Arguments& arguments, AnswerInputs& inputs, MessageLog& log)
      : arguments_(arguments),
        format_(*tav::findExportFormat(arguments.format)),
        inputs_(inputs),
        log_(log) {}

  /// Each model to a file of its own where a folder is wanted, else into one document.
  int run(bool toFolder) {
    const int code = toFolder ? toFiles() : toOne();
    if (posting_ && !isBroken_) posting_->finish();
    return code;
  }

 private:
  using Use = std::function<void(const tav::DetailedModel& model, const tav::ExportOptions& options)>;

  int toFiles() {
    const std::vector<EstateFile> files = planOutputs(inputs_.paths, arguments_.folder, format_.extension);
    makeFolder(arguments_.folder);
    int code = kDone;
    for (const EstateFile& file : files) {
      code = worseOf(code, guarded(file.input, log_, [&] { return toFile(file.input, file.output); }));
      if (isBroken_) break;
    }
    return code;
  }

  int toOne() {
    if (!inputs_.several) return toFile(inputs_.paths.front(), arguments_.output);
    if (format_.writeFiles) {
      return forEach([&](const auto& model, const auto& options) {
        format_.writeFiles(model, options, arguments_.output);
      });
    }
    int code = kDone;
    const auto writeAll = [&](std::ostream* out) {
      code = forEach([&](const auto& model, const auto& options) {
        if (out) format_.write(model, options, *out);
        post(model, options);
      });
    };
    if (isShown(arguments_.output))
      writeOutput(arguments_.output, [&](std::ostream& out) { writeAll(&out); });
    else
      writeAll(nullptr);
    return code;
  }

  int toFile(const std::string& input, const std::string& output) {
    return with(input, [&](const auto& model, const auto& options) {
      if (format_.writeFiles)
        format_.writeFiles(model, options, output);
      else if (isShown(output))
        writeOutput(output, [&](std::ostream& out) { format_.write(model, options, out); });
      post(model, options);
    });
  }

  void post(const tav::DetailedModel& model, const tav::ExportOptions& options) {
    if (!isPosted()) return;
    if (!posting_) posting_.emplace(arguments_.post, log_);
    isBroken_ = true;
    posting_->post(model, options);
    isBroken_ = false;
  }

  int forEach(const Use& use) {
    int code = kDone;
    for (const std::string& input : inputs_.paths) {
      code = worseOf(code, guarded(input, log_, [&] { return with(input, use); }));
      if (isBroken_) break;
    }
    return code;
  }

  int with(const std::string& input, const Use& use) {
    log_.forgetWarnings();
    return withModel({input, inputs_.reports}, log_, [&](const tav::DetailedModel& model) {
      tav::ExportOptions options = arguments_.options;
      options.input = input;
      if (const auto stored = storedModel(input)) {
        options.input = stored->source;
        options.inputTime = stored->version->imported;
      }
      options.warnings = log_.getWarnings();
      options.map = inputs_.maps.of(input);
      use(model, options);
    });
  }

  [[nodiscard]] bool isPosted() const { return !arguments_.post.url.empty(); }
  /// What is posted need not be shown.
  [[nodiscard]] bool isShown(const std::string& output) const { return !isPosted() || output != "-"; }

  const Arguments& arguments_;
  const tav::ExportFormat& format_;
  AnswerInputs& inputs_;
  MessageLog& log_;
  std::optional<EventPosting> posting_;  // once there is something to post
  bool isBroken_ = false;  // whether an event was not taken, so that the next ones would not be either
};

void checkTarget(const Arguments& arguments, const tav::ExportFormat& format, bool toFolder, bool several) {
  if (toFolder) {
    if (arguments.output != "-") throw UsageError::excludes("--out-dir", "--output");
    return;
  }
  if (arguments.output == "-" && format.writeFiles)
    throw UsageError("-o", "the format " + arguments.format + " is written to files: give a file name");
  if (several && !format.joinsModels)
    throw UsageError(
        "INPUT", "the format " + arguments.format + " holds one model: give several a folder with --out-dir");
}

int exportModels(const Arguments& arguments, bool toFolder, MessageLog& log) {
  const tav::ExportFormat& format = *tav::findExportFormat(arguments.format);
  const bool around = !arguments.options.from.empty() || !arguments.options.to.empty();
  if (around && !format.takesNames)
    throw UsageError("--format", arguments.format + " takes neither --from nor --to");
  AnswerInputs inputs = findInputs(arguments.inputs, readMap(arguments.map), log, arguments.reports);
  checkTarget(arguments, format, toFolder, inputs.several);
  checkOutputs(inputs.paths, arguments.output);
  log.keepsWarnings = true;
  return Export(arguments, inputs, log).run(toFolder);
}

std::string describeFormats() {
  std::string text = "The output format:";
  for (const tav::ExportFormat* format : tav::exportFormats())
    text.append("\n").append(format->name).append(": ").append(format->description);
  return text;
}

}  // namespace

Command addExport(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  std::vector<std::string> formats;
  for (const tav::ExportFormat* format : tav::exportFormats()) formats.emplace_back(format->name);
  const CommandParser parser =
      program.addCommand("export", "Export saved models or definitions to another format");
  addInputs(parser, arguments->inputs);
  parser.addOption("--format FORMAT", arguments->format, describeFormats()).required().oneOf(formats);
  parser.addOption(
      "--from NAME", arguments->options.from,
      "dot, mermaid: only this object and what depends on it; with --to, only the paths between");
  parser.addOption("--to NAME", arguments->options.to,
                   "dot, mermaid: only this object and its sources; the same as --from: both directions");
  addReports(parser, arguments->reports);
  addMap(parser, arguments->map);
  addOutput(parser, arguments->output);
  parser.addOption("--out-dir DIR", arguments->folder,
                   "The folder for a file of each model (default for several models: one document of all "
                   "of\nthem, which sqlite and openlineage can be)");
  addLineageOptions(parser, arguments->options, arguments->post);
  return {parser, [parser, arguments](MessageLog& log) {
            checkLineageOptions(parser, arguments->format);
            return exportModels(*arguments, parser.isGiven("--out-dir"), log);
          }};
}

}  // namespace host
