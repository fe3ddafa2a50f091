#include <CLI/Error.hpp>
#include <array>
#include <csignal>
#include <exception>
#include <iostream>
#include <map>
#include <new>

#include "framework/std/exception.h"
#include "framework/std/mask.h"
#include "host/command.h"
#include "host/kind_option.h"
#include "host/out_of_memory.h"
#include "host/signals.h"
#include "host/standard_output.h"
#include "host/version.h"
#include "messages/message.h"

namespace host {
namespace {

/// The options that every command has, also in front of the command.
void addMessageOptions(CLI::App& parser, MessageLog& log) {
  static const std::map<std::string, LogFormat> kFormats{{"text", LogFormat::text},
                                                         {"json", LogFormat::json}};
  parser.add_flag("--quiet", log.quiet, "Show errors only");
  parser
      .add_option_function<std::string>(
          "--log-format", [&log](const std::string& name) { log.format = kFormats.at(name); },
          "The format of messages (default: text)")
      ->type_name("FORMAT")
      ->check(CLI::IsMember({"text", "json"}));
  static const std::map<std::string, ColourChoice> kColours{
      {"auto", ColourChoice::automatic}, {"always", ColourChoice::always}, {"never", ColourChoice::never}};
  parser
      .add_option_function<std::string>(
          "--color", [&log](const std::string& name) { log.terminal.colours = kColours.at(name); },
          "Whether text has colours (default: auto, on a terminal)")
      ->type_name("WHEN")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  parser.add_flag_callback(
      "--no-pager", [&log] { log.terminal.pager = false; }, "Show long answers without a pager");
}

const CLI::App* findCommand(const CLI::App& program, const std::string& name) {
  for (const CLI::App* command : program.get_subcommands([](const CLI::App* /*command*/) { return true; }))
    if (command->get_name() == name) return command;
  return nullptr;
}

int showKinds() {
  StandardOutput out;
  writeKinds(out.stream());
  out.finish();
  return kDone;
}

Command addHelp(CLI::App& program) {
  auto name = std::make_shared<std::string>();
  CLI::App* parser = program.add_subcommand("help", "Show the help of a command");
  parser->add_option("COMMAND", *name, "The command; or kinds, for what --kind takes");
  return {parser, [&program, name](MessageLog& /*log*/) {
            if (*name == kKindsTopic) return showKinds();
            const CLI::App* shown = name->empty() ? &program : findCommand(program, *name);
            if (!shown)
              throw CLI::ValidationError("COMMAND", "there is no command '" + printable(*name) + "'");
            StandardOutput out;
            const std::string title = name->empty() ? "xmla-bridge" : "xmla-bridge " + *name;
            // App::help() would show the help of the command that was run, which is this one.
            out.stream() << shown->get_formatter()->make_help(shown, title, CLI::AppFormatMode::Normal);
            out.finish();
            return kDone;
          }};
}

int runProgram(int argc, char** argv, MessageLog& log) {
  CLI::App program("Turns Analysis Services definitions into metadata models with lineage.", "xmla-bridge");
  program.set_version_flag("--version", versionText, "Show the version, how it was built, and its libraries");
  program.set_help_flag("-h,--help", "Show help, of the program or of a command");
  program.require_subcommand(0, 1);
  addMessageOptions(program, log);
  const std::array commands{addImport(program), addExport(program),   addReport(program),
                            addTrace(program),  addImpact(program),   addCoverage(program),
                            addCheck(program),  addUnused(program),   addDiff(program),
                            addTest(program),   addDescribe(program), addHelp(program)};
  for (const Command& command : commands) addMessageOptions(*command.parser, log);
  try {
    program.parse(argc, argv);
    for (const Command& command : commands)
      if (command.parser->parsed()) return command.run(log);
    throw CLI::RequiredError("A command");
  } catch (const CLI::Success& answer) {
    StandardOutput out;
    program.exit(answer, out.stream(), std::cerr);
    out.finish();
    return kDone;
  } catch (const CLI::ParseError& error) {
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
  return host::runGuarded(argc, argv);
}
