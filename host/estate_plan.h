#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/message_log.h"

namespace host {

/// One of the files of an estate, and where its model is saved; empty when that is no file of its own.
struct EstateFile {
  std::string input;
  std::string output;
};

/// The definitions among inputs, each once, in the order of the inputs: an input that is named twice is
/// planned once, with a warning; a folder stands for every definition below it, and one without is an error
/// in `log`. Throws a usage error for an input that cannot be one.
struct PlannedInputs {
  std::vector<std::string> definitions;
  std::vector<std::string> folders;  ///< those that stand for what is below them, and hold something
};
PlannedInputs planInputs(const std::vector<std::string>& inputs, MessageLog& log);

/// Gives each of the inputs, which differ, a file in `folder`: its own name with `extension` instead of its
/// own. Where names would be equal, in any letter case, inputs of one folder keep their extension and those
/// of several get the names of their folders in front, as many as it takes; what is then still equal is
/// numbered. Throws a usage error for an output that would replace an input.
std::vector<EstateFile> planOutputs(const std::vector<std::string>& inputs, const std::string& folder,
                                    std::string_view extension);

/// Makes the folder of --out-dir where it is missing. Throws Message::folderNotMade.
void makeFolder(const std::string& folder);

}  // namespace host
