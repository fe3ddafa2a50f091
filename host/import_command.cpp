#include <fmt/ostream.h>

#include "host/command.h"
#include "host/import_run.h"
#include "host/standard_output.h"
#include "host/summary.h"

namespace host {
namespace {

struct Arguments {
  std::string input;
  std::string output;
};

int import(const Arguments& arguments, MessageLog& log) {
  checkDefinition(arguments.input);
  if (arguments.output == "-") throw CLI::ValidationError("-o", "a model is saved in a file");
  checkOutput(arguments.input, arguments.output);

  Summary summary;
  const int code = runImport(arguments.input, arguments.output, log, [&](const TAVStoreModel& model) {
    summary = summarize(model);
    return true;
  });
  if (code != kDone || log.quiet) return code;
  StandardOutput out;
  writeSummary(summary, log.getUnresolvedCount(), out.stream());
  fmt::print(out.stream(), "Saved in {}\n", printable(arguments.output));
  out.finish();
  return code;
}

}  // namespace

Command addImport(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* parser = program.add_subcommand("import", "Read a definition and save its model");
  parser
      ->add_option("INPUT", arguments->input,
                   "The definition: an XMLA script, an .asdatabase file or a tabular model")
      ->type_name("FILE")
      ->required();
  parser->add_option("-o,--output", arguments->output, "The file to save the model in")
      ->type_name("FILE")
      ->required();
  return {parser, [arguments](MessageLog& log) { return import(*arguments, log); }};
}

}  // namespace host
