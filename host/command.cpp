#include "host/command.h"

#include <filesystem>

#include "host/inputs/estate_model.h"

namespace host {
namespace {

constexpr const char* kInputs =
    "Definitions, saved models, folders of them or estate databases, \"-\" for standard input; of several, "
    "the "
    "answer names the models";

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  if (std::filesystem::equivalent(a, b, error)) return true;
  const auto plain = [&](const std::string& path) {
    return std::filesystem::absolute(path, error).lexically_normal();
  };
  return plain(a) == plain(b);
}

}  // namespace

void addInput(const CommandParser& parser, std::string& input) {
  parser.addOption("INPUT FILE", input, "A definition or a saved model, \"-\" for standard input").required();
}

void addInputs(const CommandParser& parser, std::vector<std::string>& inputs) {
  parser.addOption("INPUT FILE", inputs, kInputs).required();
}

void addFirstInput(const CommandParser& parser, std::string& input) {
  parser.addOption("INPUT", input, kInputs).valueText("FILE ... REQUIRED").required();
}

void addOutput(const CommandParser& parser, std::string& output) {
  parser.addOption("-o,--output FILE", output, "The file to write, \"-\" for standard output (default: -)");
}

void checkOutput(const std::string& input, const std::string& output) {
  if (output.empty()) throw UsageError("-o", "the name of the output file is empty");
  const auto estate = estatePlace(input);
  if (input != "-" && isSameFile(estate ? estate->path : input, output))
    throw UsageError("-o", "the output would replace the input");
}

void checkOutputs(const std::vector<std::string>& inputs, const std::string& output) {
  if (output == "-") return;
  for (const std::string& input : inputs) checkOutput(input, output);
}

void checkInput(const std::string& input) {
  if (input.empty()) throw UsageError("INPUT", "the name of a file is empty");
}

}  // namespace host
