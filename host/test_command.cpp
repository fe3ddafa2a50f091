#include <fmt/ostream.h>

#include "host/command.h"
#include "host/plugin.h"
#include "host/standard_output.h"

namespace host {
namespace {

int test(const std::string& input, MessageLog& log) {
  checkDefinition(input);
  TAVOptionList options = optionsFor(input);
  if (!loadPlugin().test(kBridgeIdentifier, options, log)) return kFailed;
  if (log.quiet) return kDone;
  StandardOutput out;
  fmt::print(out.stream(), "{} can be imported.\n", printable(input));
  out.finish();
  return kDone;
}

}  // namespace

Command addTest(CLI::App& program) {
  auto input = std::make_shared<std::string>();
  CLI::App* parser =
      program.add_subcommand("test", "Let the plug-in test whether a definition can be imported");
  parser->add_option("INPUT", *input, "The definition")->type_name("FILE")->required();
  return {parser, [input](MessageLog& log) { return test(*input, log); }};
}

}  // namespace host
