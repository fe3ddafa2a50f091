#pragma once

// The one way in which commands get the model that they tell something about.

#include <functional>
#include <string>
#include <vector>

#include "framework/details/detailed_model.h"
#include "host/message_log.h"

namespace host {

/// A model that a command is to tell about.
struct ModelSource {
  std::string input;
  std::vector<std::string> reports{};  ///< by their paths, given for it beside those that it has
};

/// Opens the input (see openInput), a saved model or a definition, which is imported without saving anything,
/// and shows its model to `use`. Returns an exit code: done, or that the input holds no
/// database definition. Throws when it cannot be opened.
int withModel(const ModelSource& source, MessageLog& log,
              const std::function<void(const tav::DetailedModel& model)>& use);

}  // namespace host
