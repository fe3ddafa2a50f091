#pragma once

#include <string_view>

#include "framework/serialization/model_reader.h"

namespace tav::test {

/// The model, and the details where there are any, that a document of `export --format json` holds. Throws a
/// std::exception for another document.
SavedModel readJson(std::string_view json);

}  // namespace tav::test
