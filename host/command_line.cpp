#include "host/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Error.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <CLI/Version.hpp>
#include <algorithm>
#include <set>
#include <sstream>

#include "framework/std/nearest_word.h"

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

bool isOption(const std::string& word) {
  return word.size() > 1 && word.front() == '-';
}

UsageError unexpected(const std::string& word, const std::string& offer) {
  return UsageError("The following argument was not expected: " + word + offer);
}

template <class Words> std::string offerNearest(const std::string& word, const Words& words) {
  const std::vector<std::string_view> views(words.begin(), words.end());
  return tav::offerNearest(word, views);
}

/// The options of a command as they are typed, to offer one in the place of a word that looks like one.
class OptionNames {
 public:
  explicit OptionNames(const CLI::App& parser) {
    for (const CLI::Option* option : parser.get_options())
      for (const std::string& name : option->get_lnames()) names_.push_back("--" + name);
  }
  [[nodiscard]] std::string offer(const std::string& word) const {
    return offerNearest(word.substr(0, word.find('=')), names_);
  }

 private:
  std::vector<std::string> names_;
};

std::optional<UsageError> findMisspeltOption(const CLI::App& parser) {
  const OptionNames names(parser);
  for (const std::string& word : parser.remaining()) {
    if (word == "--") break;
    if (!isOption(word)) continue;
    if (const std::string offer = names.offer(word); !offer.empty()) return unexpected(word, offer);
  }
  return std::nullopt;
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

Option Option::valueText(const std::string& text) const {
  option_->option_text(text);
  return *this;
}

Option Option::required() const {
  option_->required();
  return *this;
}

Option Option::oneOf(const std::vector<std::string>& words) const {
  const std::string list = CLI::IsMember(words).get_description();
  const auto check = [known = std::set(words.begin(), words.end()), list](const std::string& value) {
    if (known.count(value) > 0) return std::string();
    return value + " not in " + list + offerNearest(value, known);
  };
  option_->check(check, list);
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

void CommandParser::hide() const {
  parser_->group("");
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

UsageError CommandParser::unknownOption(const std::string& word) const {
  return unexpected(word, OptionNames(*parser_).offer(word));
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
    // What a misspelt word was meant for is missing: the word is the cause of other errors.
    if (const auto misspelt = findMisspelt()) throw UsageError(*misspelt);
    throw UsageError(error.what());
  }
}

std::optional<UsageError> CommandLine::findMisspelt() const {
  const std::vector<std::string> words = program_->remaining();
  const auto command = std::find_if_not(words.begin(), words.end(), isOption);
  if (command != words.end())
    if (const std::string offer = offerCommand(*command); !offer.empty()) return unexpected(*command, offer);
  if (auto option = findMisspeltOption(*program_)) return option;
  const std::vector<CLI::App*> chosen = program_->get_subcommands();
  return chosen.empty() ? std::nullopt : findMisspeltOption(*chosen.front());
}

std::string CommandLine::offerCommand(const std::string& word) const {
  std::vector<std::string> names;
  names.reserve(commands_.size());
  for (const auto& [name, parser] : commands_) names.push_back(name);
  return offerNearest(word, names);
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
