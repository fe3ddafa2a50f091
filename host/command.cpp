#include "host/command.h"

#include <CLI/Error.hpp>
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

void addInput(CLI::App& parser, std::string& input) {
  parser.add_option("INPUT", input, "A definition or a saved model, \"-\" for standard input")
      ->type_name("FILE")
      ->required();
}

void addInputs(CLI::App& parser, std::vector<std::string>& inputs) {
  parser.add_option("INPUT", inputs, kInputs)->type_name("FILE")->required();
}

void addFirstInput(CLI::App& parser, std::string& input) {
  parser.add_option("INPUT", input, kInputs)->option_text("FILE ... REQUIRED")->required();
}

void addOutput(CLI::App& parser, std::string& output) {
  parser.add_option("-o,--output", output, "The file to write, \"-\" for standard output (default: -)")
      ->type_name("FILE");
}

void checkOutput(const std::string& input, const std::string& output) {
  if (output.empty()) throw CLI::ValidationError("-o", "the name of the output file is empty");
  const auto estate = estatePlace(input);
  if (input != "-" && isSameFile(estate ? estate->path : input, output))
    throw CLI::ValidationError("-o", "the output would replace the input");
}

void checkOutputs(const std::vector<std::string>& inputs, const std::string& output) {
  if (output == "-") return;
  for (const std::string& input : inputs) checkOutput(input, output);
}

void checkInput(const std::string& input) {
  if (input.empty()) throw CLI::ValidationError("INPUT", "the name of a file is empty");
}

}  // namespace host
