#pragma once

// The one way in which commands get the model that they tell something about.

#include <functional>
#include <string>

#include "framework/details/detailed_model.h"
#include "host/message_log.h"

namespace host {

/// Opens `input` (see openInput), a saved model or a definition, which is imported without saving anything,
/// and shows its model to `use`. Returns an exit code: done, or that the input holds no
/// database definition. Throws when it cannot be opened.
int withModel(const std::string& input, MessageLog& log,
              const std::function<void(const tav::DetailedModel& model)>& use);

}  // namespace host
