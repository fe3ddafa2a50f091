#pragma once

// Running the Java importer of tabular definitions on a file.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/details/details.h"
#include "framework/model/model.h"
#include "tests/support/corpus.h"

namespace tav::test {

struct ImporterRun {
  int exitCode = -1;
  std::string messages;              ///< standard output but for its STATUS lines, a tab showing as a blank
  std::string errors;                ///< standard error, the folder of the input left out
  Owned<TAVModel> model;             ///< complete, or null when the importer failed
  std::unique_ptr<Details> details;  ///< null when they were not asked for
};

/// Imports a file. A document that the model's schema does not accept is a test failure.
ImporterRun runImporter(const std::string& path, bool withDetails = false);
/// Imports a text as FILE.bim.
ImporterRun importText(std::string_view definition, bool withDetails = false);

/// What an import took.
struct ImporterCost {
  int exitCode = -1;
  double seconds = 0;  ///< processor time: others on the machine do not lengthen it much
  std::string errors;  ///< standard error
};
/// Imports a file with a heap of so many megabytes, only to measure it: nothing is read back.
ImporterCost measureImporter(const std::string& path, std::uint64_t heapMegabytes, bool withDetails = false);

/// The features of a model by path, each with the paths of what it comes from, in the order of its map.
using Sources = std::map<std::string, std::vector<std::string>>;
Sources sourcesOf(const TAVModel& model);
/// The same for the tables and dimensions of a model, and what those come from.
Sources classifierSourcesOf(const TAVModel& model);

}  // namespace tav::test
