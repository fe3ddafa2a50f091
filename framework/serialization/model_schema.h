#pragma once

#include <ostream>

#include "framework/api.h"

namespace tav {

/// Writes the XML schema of saved models, made from the classes' rows.
TAV_API void writeModelSchema(std::ostream& out);

}  // namespace tav
