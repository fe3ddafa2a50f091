#pragma once

#include <string>

#include "framework/model/model.h"

namespace tav::test {

/// The model of this name with what stands inside a saved model's TAVStoreModel.
Owned<TAVModel> smallModel(const std::string& name, const std::string& content);

}  // namespace tav::test
