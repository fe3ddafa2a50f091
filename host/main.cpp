#include <array>
#include <csignal>
#include <exception>
#include <iostream>
#include <map>
#include <new>

#include "framework/std/exception.h"
#include "framework/std/mask.h"
#include "host/command.h"
#include "host/heap.h"
#include "host/kind_option.h"
#include "host/out_of_memory.h"
#include "host/signals.h"
#include "host/standard_output.h"
#include "host/version.h"
#include "messages/message.h"

namespace host {
namespace {

/// The options that every command has, also in front of the command.
void addMessageOptions(const CommandParser& parser, MessageLog& log) {
  static const std::map<std::string, LogFormat> kFormats{{"text", LogFormat::text},
                                                         {"json", LogFormat::json}};
  parser.addFlag("--quiet", log.quiet, "Show errors only");
  parser
      .addOption(
          "--log-format FORMAT", [&log](const std::string& name) { log.format = kFormats.at(name); },
          "The format of messages (default: text)")
      .oneOf({"text", "json"});
  static const std::map<std::string, ColourChoice> kColours{
      {"auto", ColourChoice::automatic}, {"always", ColourChoice::always}, {"never", ColourChoice::never}};
  parser
      .addOption(
          "--color WHEN", [&log](const std::string& name) { log.terminal.colours = kColours.at(name); },
          "Whether text has colours (default: auto, on a terminal)")
      .oneOf({"auto", "always", "never"});
  parser.addFlag(
      "--no-pager", [&log] { log.terminal.pager = false; }, "Show long answers without a pager");
}

int show(const std::string& text) {
  StandardOutput out;
  out.stream() << text;
  out.finish();
  return kDone;
}

int showKinds() {
  StandardOutput out;
  writeKinds(out.stream());
  out.finish();
  return kDone;
}

Command addHelp(CommandLine& program) {
  auto name = std::make_shared<std::string>();
  const CommandParser parser = program.addCommand("help", "Show the help of a command");
  parser.addOption("COMMAND", *name, "The command; or kinds, for what --kind takes");
  return {parser, [&program, name](MessageLog& /*log*/) {
            if (*name == kKindsTopic) return showKinds();
            if (const auto help = program.helpOf(*name)) return show(*help);
            throw UsageError("COMMAND",
                             "there is no command '" + printable(*name) + "'" + program.offerCommand(*name));
          }};
}

int parseAndRun(int argc, const char* const* argv, MessageLog& log) {
  CommandLine program("xmla-bridge",
                      "Turns Analysis Services definitions into metadata models with lineage.");
  program.addVersionFlag("--version", versionText, "Show the version, how it was built, and its libraries");
  program.addHelpFlag("-h,--help", "Show help, of the program or of a command");
  addMessageOptions(program.options(), log);
  const std::array commands{
      addImport(program),   addExport(program),   addReport(program), addTrace(program), addImpact(program),
      addCoverage(program), addCheck(program),    addUnused(program), addDiff(program),  addTest(program),
      addDescribe(program), addComplete(program), addHelp(program)};
  for (const Command& command : commands) addMessageOptions(command.parser, log);
  if (const auto text = program.parse(argc, argv)) return show(*text);
  for (const Command& command : commands)
    if (command.parser.isChosen()) return command.run(log);
  throw UsageError::isRequired("A command");
}

int runProgram(int argc, const char* const* argv, MessageLog& log) {
  try {
    return parseAndRun(argc, argv, log);
  } catch (const UsageError& error) {
    std::cerr << "xmla-bridge: " << printable(tav::maskPasswords(error.what()))
              << "\nTry: xmla-bridge --help\n";
    return kWrongUsage;
  }
}

int runGuarded(int argc, char** argv) {
  MessageLog log;
  try {
    try {
      return runProgram(argc, argv, log);
    } catch (const TAVException& error) {
      log.logFailure(error.getMessage());
    } catch (const ClosedPipe&) {
      return kSignalBase + SIGPIPE;
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      log.logEvent(tav::messageEvent(tav::Message::internalError, {error.what()}));
    }
  } catch (const std::bad_alloc&) {
    log.clearProgress();
    tellOutOfMemory(log.format == LogFormat::json);
  }
  return kFailed;
}

}  // namespace
}  // namespace host

int main(int argc, char** argv) {
  host::handleSignals();
  host::endAfterOneCommand();
  return host::runGuarded(argc, argv);
}
