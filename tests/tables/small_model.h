#pragma once

#include <string>

#include "framework/serialization/model_reader.h"

namespace tav::test {

/// The model of this name with what stands inside a saved model's TAVStoreModel; where `content` has details
/// too, these stand behind that.
SavedModel smallModel(const std::string& name, const std::string& content);

}  // namespace tav::test
