#include "host/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Error.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <CLI/Version.hpp>
#include <sstream>

namespace host {
namespace {

std::string namesIn(const std::string& usage) {
  return usage.substr(0, usage.find(' '));
}

/// The option, its value called as in `usage`, if it is called there.
Option calledAs(const std::string& usage, CLI::Option& option) {
  if (const std::size_t blank = usage.find(' '); blank != usage.npos)
    option.type_name(usage.substr(blank + 1));
  return Option(option);
}

template <class Value>
Option addVariable(CLI::App& parser, const std::string& usage, Value& value, const std::string& help) {
  return calledAs(usage, *parser.add_option(namesIn(usage), value, help));
}

template <class Value>
Option addFunction(CLI::App& parser, const std::string& usage, const std::function<void(const Value&)>& take,
                   const std::string& help) {
  return calledAs(usage, *parser.add_option_function<Value>(namesIn(usage), take, help));
}

}  // namespace

UsageError::UsageError(const std::string& argument, const std::string& cause)
    : runtime_error(argument + ": " + cause) {}

UsageError UsageError::isRequired(const std::string& argument) {
  return UsageError(argument + " is required");
}

UsageError UsageError::needs(const std::string& argument, const std::string& other) {
  return UsageError(argument + " requires " + other);
}

UsageError UsageError::excludes(const std::string& argument, const std::string& other) {
  return UsageError(argument + " excludes " + other);
}

UsageError UsageError::unexpected(const std::string& word) {
  return UsageError("The following argument was not expected: " + word);
}

Option Option::valueText(const std::string& text) const {
  option_->option_text(text);
  return *this;
}

Option Option::required() const {
  option_->required();
  return *this;
}

Option Option::oneOf(const std::vector<std::string>& words) const {
  option_->check(CLI::IsMember(words));
  return *this;
}

Option Option::between(int least, int most) const {
  option_->check(CLI::Range(least, most));
  return *this;
}

Option Option::between(double least, double most) const {
  option_->check(CLI::Range(least, most));
  return *this;
}

Option Option::check(const Check& check) const {
  option_->check(check);
  return *this;
}

Option Option::separatedBy(char separator) const {
  option_->delimiter(separator);
  return *this;
}

Option Option::oneEachTime() const {
  option_->allow_extra_args(false);
  return *this;
}

Option Option::needs(Option other) const {
  option_->needs(other.option_);
  return *this;
}

Option Option::excludes(Option other) const {
  option_->excludes(other.option_);
  return *this;
}

Option CommandParser::addOption(const std::string& usage, std::string& value, const std::string& help) const {
  return addVariable(*parser_, usage, value, help);
}

Option CommandParser::addOption(const std::string& usage, std::vector<std::string>& values,
                                const std::string& help) const {
  return addVariable(*parser_, usage, values, help);
}

Option CommandParser::addOption(const std::string& usage, int& value, const std::string& help) const {
  return addVariable(*parser_, usage, value, help);
}

Option CommandParser::addOption(const std::string& usage, std::uint32_t& value,
                                const std::string& help) const {
  return addVariable(*parser_, usage, value, help);
}

Option CommandParser::addOption(const std::string& usage, const std::function<void(const std::string&)>& take,
                                const std::string& help) const {
  return addFunction<std::string>(*parser_, usage, take, help);
}

Option CommandParser::addOption(const std::string& usage,
                                const std::function<void(const std::vector<std::string>&)>& take,
                                const std::string& help) const {
  return addFunction<std::vector<std::string>>(*parser_, usage, take, help);
}

Option CommandParser::addOption(const std::string& usage, const std::function<void(double)>& take,
                                const std::string& help) const {
  return addFunction<double>(*parser_, usage, take, help);
}

Option CommandParser::addFlag(const std::string& names, bool& value, const std::string& help) const {
  return Option(*parser_->add_flag(names, value, help));
}

Option CommandParser::addFlag(const std::string& names, const std::function<void()>& take,
                              const std::string& help) const {
  return Option(*parser_->add_flag_callback(names, take, help));
}

void CommandParser::keepLeftWords() const {
  parser_->allow_extras();
}

bool CommandParser::isChosen() const {
  return parser_->parsed();
}

bool CommandParser::isGiven(const std::string& name) const {
  return parser_->count(name) > 0;
}

std::vector<std::string> CommandParser::leftWords() const {
  return parser_->remaining();
}

CommandLine::CommandLine(const std::string& program, const std::string& description)
    : program_(std::make_unique<CLI::App>(description, program)) {
  program_->require_subcommand(0, 1);
}

CommandLine::~CommandLine() = default;

CommandParser CommandLine::options() const {
  return CommandParser(*program_);
}

CommandParser CommandLine::addCommand(const std::string& name, const std::string& description) {
  CLI::App& command = *program_->add_subcommand(name, description);
  commands_.emplace(name, &command);
  return CommandParser(command);
}

void CommandLine::addHelpFlag(const std::string& names, const std::string& help) {
  program_->set_help_flag(names, help);
}

void CommandLine::addVersionFlag(const std::string& names, const std::function<std::string()>& version,
                                 const std::string& help) {
  program_->set_version_flag(names, version, help);
}

std::optional<std::string> CommandLine::parse(int argc, const char* const* argv) {
  try {
    program_->parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::Success& request) {
    std::ostringstream answer;
    program_->exit(request, answer, answer);
    return answer.str();
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
}

std::optional<std::string> CommandLine::helpOf(const std::string& command) const {
  const auto known = commands_.find(command);
  if (!command.empty() && known == commands_.end()) return std::nullopt;
  const CLI::App* shown = command.empty() ? program_.get() : known->second;
  const std::string title = command.empty() ? program_->get_name() : program_->get_name() + " " + command;
  // App::help() would show the help of the command that was run.
  return shown->get_formatter()->make_help(shown, title, CLI::AppFormatMode::Normal);
}

std::string commandLineLibrary() {
  return "CLI11 " CLI11_VERSION;
}

}  // namespace host
