#pragma once

// What a user types behind the name of the program: options, arguments and commands, and what wrong usage is
// told. The library that reads it stays behind this header, because including that costs seconds per file.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {  // NOLINT(readability-identifier-naming): the name of the library
class App;
class Option;
}  // namespace CLI

namespace host {

/// Wrong usage, in words that name the option or argument. The program ends with kWrongUsage.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  /// `cause` is what is wrong with that option or argument.
  UsageError(const std::string& argument, const std::string& cause);

  static UsageError isRequired(const std::string& argument);
  /// `argument` was given without `other`.
  static UsageError needs(const std::string& argument, const std::string& other);
  /// `argument` was given with `other`.
  static UsageError excludes(const std::string& argument, const std::string& other);
};

/// An option or argument of a command, of which more can be said. Copies mean the same one.
class Option {
 public:
  /// What is wrong with a value; empty when it is right.
  using Check = std::function<std::string(const std::string& value)>;

  explicit Option(CLI::Option& option) noexcept : option_(&option) {}

  /// What the help says of the value and of how often it is given, in the place of what it would say itself.
  Option valueText(const std::string& text) const;
  Option required() const;
  Option oneOf(const std::vector<std::string>& words) const;
  Option between(int least, int most) const;
  Option between(double least, double most) const;
  Option check(const Check& check) const;
  /// A list may be given as one text with this character between the values.
  Option separatedBy(char separator) const;
  /// A list takes one text each time that the option is given; without this, all that follow.
  Option oneEachTime() const;
  Option needs(Option other) const;
  Option excludes(Option other) const;

 private:
  CLI::Option* option_;
};

/// What a command, or the program itself, takes. The variables and functions are given the values when the
/// command line is read. Copies mean the same one.
class CommandParser {
 public:
  explicit CommandParser(CLI::App& parser) noexcept : parser_(&parser) {}

  /// An option ("-o,--output FILE") or, without hyphens, an argument ("INPUT FILE"); the last word is what
  /// the help calls its value.
  Option addOption(const std::string& usage, std::string& value, const std::string& help) const;
  Option addOption(const std::string& usage, std::vector<std::string>& values, const std::string& help) const;
  Option addOption(const std::string& usage, int& value, const std::string& help) const;
  Option addOption(const std::string& usage, std::uint32_t& value, const std::string& help) const;
  Option addOption(const std::string& usage, const std::function<void(const std::string&)>& take,
                   const std::string& help) const;
  Option addOption(const std::string& usage, const std::function<void(const std::vector<std::string>&)>& take,
                   const std::string& help) const;
  Option addOption(const std::string& usage, const std::function<void(double)>& take,
                   const std::string& help) const;
  Option addFlag(const std::string& names, bool& value, const std::string& help) const;
  Option addFlag(const std::string& names, const std::function<void()>& take, const std::string& help) const;
  /// Leaves the command out of the help of the program.
  void hide() const;
  /// Words that are no option and for which there is no argument are no error: leftWords() has them.
  void keepLeftWords() const;

  /// Whether the user chose this command.
  [[nodiscard]] bool isChosen() const;
  /// Whether the user gave the option or argument of this name, which is there.
  [[nodiscard]] bool isGiven(const std::string& name) const;
  /// In the order of the command line, a "--" among them included.
  [[nodiscard]] std::vector<std::string> leftWords() const;
  /// What to throw for an option that the command does not have.
  [[nodiscard]] UsageError unknownOption(const std::string& word) const;

 private:
  CLI::App* parser_;
};

/// The command line of the program.
class CommandLine {
 public:
  CommandLine(const std::string& program, const std::string& description);
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;
  ~CommandLine();

  /// What stands in front of a command.
  [[nodiscard]] CommandParser options() const;
  CommandParser addCommand(const std::string& name, const std::string& description);
  /// A flag that asks for the help of the program, or of the command that it stands behind. To be added
  /// before the commands, which get it too.
  void addHelpFlag(const std::string& names, const std::string& help);
  void addVersionFlag(const std::string& names, const std::function<std::string()>& version,
                      const std::string& help);

  /// Reads the command line. Gives the text that the user asked for in the place of a command, help or
  /// version, if that is so. Throws a UsageError.
  std::optional<std::string> parse(int argc, const char* const* argv);

  /// The help of a command, of the program where the name is empty; none of a command that there is not.
  [[nodiscard]] std::optional<std::string> helpOf(const std::string& command) const;
  /// "; did you mean 'export'?" for a word that is no command; empty when none comes near.
  [[nodiscard]] std::string offerCommand(const std::string& word) const;

 private:
  [[nodiscard]] std::optional<UsageError> findMisspelt() const;

  std::unique_ptr<CLI::App> program_;
  std::map<std::string, CLI::App*> commands_;
};

/// The library that reads command lines, with the version that the program was built with.
std::string commandLineLibrary();

}  // namespace host
