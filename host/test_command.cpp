#include <fmt/ostream.h>

#include <utility>

#include "host/command.h"
#include "host/import_run.h"
#include "host/plugin.h"
#include "host/standard_output.h"

namespace host {
namespace {

/// The plug-in's test looks at the file from outside. Whether there is a definition in it only an import can
/// tell, so that one is made: its errors are shown, its other messages and its model are dropped.
int test(const std::string& input, MessageLog& log) {
  checkInput(input);
  const Input opened = openInput(input, log);
  TAVOptionList options = optionsFor(opened.path());
  if (opened.isInPlace() && !opened.refusal() && !loadPlugin().test(kBridgeIdentifier, options, log))
    return kFailed;
  const bool quiet = std::exchange(log.quiet, true);
  const int code = runImport(opened, "", log, {.details = false, .isLast = true},
                             [](const tav::DetailedModel& /*model*/) { return false; });
  if (code != kDone || quiet) return code;
  StandardOutput out;
  fmt::print(out.stream(), "{} can be imported.\n", printable(opened.name()));
  out.finish();
  return kDone;
}

}  // namespace

Command addTest(CommandLine& program) {
  auto input = std::make_shared<std::string>();
  const CommandParser parser = program.addCommand("test", "Test whether a definition can be imported");
  parser.addOption("INPUT FILE", *input, "The definition").required();
  return {parser, [input](MessageLog& log) { return test(*input, log); }};
}

}  // namespace host
