#pragma once

// What the commands of the program have in common. Each command has a file of its own, which registers its
// arguments; main.cpp runs the one that the user chose.

#include <functional>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/message_log.h"

namespace host {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kNoDefinition = 3;
inline constexpr int kBelowBound = 4;
inline constexpr int kDiffers = 5;
inline constexpr int kIncomplete = 6;
inline constexpr int kFindings = 7;
inline constexpr int kUntold = 8;
inline constexpr int kSignalBase = 128;  // plus the number of the signal that ended the program

/// A registered command: its parser, and what to do once that has read the arguments. `run` gives an exit
/// code and throws a UsageError for wrong usage, any other exception for a failure.
struct Command {
  CommandParser parser;
  std::function<int(MessageLog& log)> run;
};

Command addImport(CommandLine& program);
Command addExport(CommandLine& program);
Command addReport(CommandLine& program);
Command addTrace(CommandLine& program);
Command addImpact(CommandLine& program);
Command addCoverage(CommandLine& program);
Command addCheck(CommandLine& program);
Command addUnused(CommandLine& program);
Command addDiff(CommandLine& program);
Command addTest(CommandLine& program);
Command addDescribe(CommandLine& program);
Command addComplete(CommandLine& program);

/// The argument INPUT of commands that tell about a model or about several, and the option -o of those that
/// write to standard output without it.
void addInput(const CommandParser& parser, std::string& input);
void addInputs(const CommandParser& parser, std::vector<std::string>& inputs);
/// The first of several, for a command that takes the others from the words that its parser leaves over.
void addFirstInput(const CommandParser& parser, std::string& input);
void addOutput(const CommandParser& parser, std::string& output);

/// Throws a usage error when `output` is empty or names the file `input`, itself or through links.
void checkOutput(const std::string& input, const std::string& output);
/// The same for an output that is not standard output, and each of several inputs.
void checkOutputs(const std::vector<std::string>& inputs, const std::string& output);
/// Throws a usage error when `input` is empty.
void checkInput(const std::string& input);

}  // namespace host
