#include <filesystem>

#include "exports/estate_names.h"
#include "framework/serialization/model_reader.h"
#include "host/command.h"
#include "host/inputs/estate_model.h"
#include "host/standard_output.h"
#include "lineage/lineage_graph.h"

namespace host {
namespace {

namespace fs = std::filesystem;

struct Arguments {
  std::string input;
  std::string typed;
};

/// Whether it is a saved model that is read while a user waits at a prompt.
bool isQuick(const std::string& input) {
  constexpr std::uintmax_t kLargest = 16'000'000;
  std::error_code error;
  if (!fs::is_regular_file(input, error)) return false;
  const std::uintmax_t size = fs::file_size(input, error);
  return !error && size <= kLargest && tav::isSavedModel(input);
}

void completeNames(const std::string& input, tav::NameCompletion& completion) {
  const tav::SavedModel saved = tav::loadSavedModel(input);
  const tav::AddressMap map;
  const tav::LineageGraph graph({*saved.model, saved.details.get()}, map);
  for (tav::NodeId id = 0; id < graph.nodes().size(); ++id)
    completion.add(graph.name(id), graph.qualifiedName(id), graph.path(id));
}

int complete(const Arguments& arguments) {
  tav::NameCompletion completion(arguments.typed);
  if (const auto estate = estatePlace(arguments.input))
    tav::completeNames(estate->path, modelsIn(*estate), completion);
  else if (isQuick(arguments.input))
    completeNames(arguments.input, completion);
  StandardOutput out;
  for (const std::string& name : completion.names()) out.stream() << name << '\n';
  out.finish();
  return kDone;
}

}  // namespace

Command addComplete(CommandLine& program) {
  auto arguments = std::make_shared<Arguments>();
  const CommandParser parser =
      program.addCommand("__complete", "What a NAME may become, for the completions of shells");
  parser.hide();
  parser.addOption("INPUT FILE", arguments->input, "What is asked").required();
  parser.addOption("TYPED", arguments->typed, "The beginning of the name");
  return {parser, [arguments](MessageLog& /*log*/) { return complete(*arguments); }};
}

}  // namespace host
