#pragma once

#include <ostream>

#include "framework/details/detailed_model.h"

namespace tav {

/// Writes a model as one JSON document: containment nested, a line for each object, every other link by the
/// number of the object that it leads to; its details, where there are any, behind it. Passwords are masked.
/// Whether the stream took everything is the caller's to check; the memory needed does not depend on the
/// model's size, only on its depth.
void exportJson(const DetailedModel& model, std::ostream& out);

}  // namespace tav
