#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "exports/json.h"
#include "framework/serialization/model_reader.h"
#include "framework/serialization/replacing_file.h"
#include "framework/std/exception.h"
#include "host/command.h"
#include "host/import_run.h"
#include "host/standard_output.h"

namespace host {
namespace {

struct Format {
  std::string_view name;
  void (*write)(const TAVModel& model, std::ostream& out);
};
constexpr std::array kFormats{Format{"json", tav::exportJson}};

struct Arguments {
  std::string input;
  std::string format;
  std::string output = "-";
};

void write(const TAVModel& model, const Arguments& arguments) {
  const auto* format = std::find_if(kFormats.begin(), kFormats.end(),
                                    [&](const Format& row) { return row.name == arguments.format; });
  if (arguments.output == "-") {
    StandardOutput out;
    format->write(model, out.stream());
    out.finish();
  } else {
    tav::ReplacingFile out{TAVString(arguments.output)};
    format->write(model, out.stream());
    out.commit();
  }
}

std::string readStandardInput() {
  constexpr std::size_t kStep = std::size_t{1} << 16;
  std::string text;
  for (;;) {
    const std::size_t size = text.size();
    text.resize(size + kStep);
    const ssize_t count = read(STDIN_FILENO, text.data() + size, kStep);
    if (count < 0 && errno != EINTR)
      tav::fail("XMLABRIDGE_F0008", "Standard input cannot be read: " +
                                        std::error_code(errno, std::generic_category()).message());
    text.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) return text;
  }
}

int exportModel(const Arguments& arguments, MessageLog& log) {
  if (arguments.output != "-") checkOutput(arguments.input, arguments.output);
  if (arguments.input == "-") {
    write(*tav::loadModelText(readStandardInput(), "standard input"), arguments);
    return kDone;
  }
  if (tav::isSavedModel(arguments.input)) {
    write(*tav::loadModel(arguments.input), arguments);
    return kDone;
  }
  return runImport(arguments.input, "", log, [&](const TAVStoreModel& model) {
    write(model, arguments);
    return false;
  });
}

}  // namespace

Command addExport(CLI::App& program) {
  auto arguments = std::make_shared<Arguments>();
  std::vector<std::string> formats;
  formats.reserve(kFormats.size());
  for (const Format& format : kFormats) formats.emplace_back(format.name);
  CLI::App* parser =
      program.add_subcommand("export", "Write a saved model or a definition in another format");
  parser
      ->add_option("INPUT", arguments->input,
                   "A saved model, or \"-\" for one on standard input; or a definition")
      ->type_name("FILE")
      ->required();
  parser->add_option("--format", arguments->format, "The format to write")
      ->type_name("FORMAT")
      ->required()
      ->check(CLI::IsMember(formats));
  parser
      ->add_option("-o,--output", arguments->output,
                   "The file to write; standard output without it or with \"-\"")
      ->type_name("FILE");
  return {parser, [arguments](MessageLog& log) { return exportModel(*arguments, log); }};
}

}  // namespace host
