#include "exports/formats.h"
#include "host/command.h"
#include "host/export_lineage.h"
#include "host/map_option.h"
#include "host/model_input.h"
#include "host/output.h"

namespace host {
namespace {

struct Arguments {
  std::string format;
  std::string output = "-";
  std::string map;
  tav::ExportOptions options;
  PostTarget post;
};

void write(const tav::DetailedModel& model, const tav::ExportFormat& format,
           const tav::ExportOptions& options, const Arguments& arguments, MessageLog& log) {
  if (format.writeFiles) {
    format.writeFiles(model, options, arguments.output);
    return;
  }
  // What is posted need not be shown.
  if (arguments.post.url.empty() || arguments.output != "-")
    writeOutput(arguments.output, [&](std::ostream& out) { format.write(model, options, out); });
  if (!arguments.post.url.empty()) postLineage(model, options, arguments.post, log);
}

int exportModel(const Arguments& arguments, MessageLog& log) {
  const tav::ExportFormat& format = *tav::findExportFormat(arguments.format);
  if (arguments.output != "-") checkOutput(arguments.options.input, arguments.output);
  if (arguments.output == "-" && format.writeFiles)
    throw CLI::ValidationError("-o",
                               "the format " + arguments.format + " is written to files: give a file name");
  const bool around = !arguments.options.from.empty() || !arguments.options.to.empty();
  if (around && !format.takesNames)
    throw CLI::ValidationError("--format", arguments.format + " takes neither --from nor --to");
  const tav::AddressMap map = mapFor(readMap(arguments.map), arguments.options.input);
  log.keepsWarnings = true;
  return withModel(arguments.options.input, log, [&](const tav::DetailedModel& model) {
    tav::ExportOptions options = arguments.options;
    options.warnings = log.getWarnings();
    options.map = map;
    write(model, format, options, arguments, log);
  });
}

std::string describeFormats() {
  std::string text = "The output format:";
  for (const tav::ExportFormat* format : tav::exportFormats())
    text.append("\n").append(format->name).append(": ").append(format->description);
  return text;
}

}  // namespace

Command addExport(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  std::vector<std::string> formats;
  for (const tav::ExportFormat* format : tav::exportFormats()) formats.emplace_back(format->name);
  CLI::App* parser =
      program.add_subcommand("export", "Export a saved model or a definition to another format");
  addInput(*parser, arguments->options.input);
  parser->add_option("--format", arguments->format, describeFormats())
      ->type_name("FORMAT")
      ->required()
      ->check(CLI::IsMember(formats));
  parser
      ->add_option("--from", arguments->options.from,
                   "dot, mermaid: only this object and what depends on it; with --to, only the paths between")
      ->type_name("NAME");
  parser
      ->add_option("--to", arguments->options.to,
                   "dot, mermaid: only this object and its sources; the same as --from: both directions")
      ->type_name("NAME");
  addMap(*parser, arguments->map);
  addOutput(*parser, arguments->output);
  addLineageOptions(*parser, arguments->options, arguments->post);
  return {parser, [parser, arguments](MessageLog& log) {
            checkLineageOptions(*parser, arguments->format);
            return exportModel(*arguments, log);
          }};
}

}  // namespace host
