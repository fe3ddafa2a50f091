#pragma once

#include "framework/details/details.h"
#include "framework/model/model.h"

namespace tav {

/// Marks connections as data sources, and deletes the model's packages that an import has put nothing into.
void tidyPackages(TAVStoreModel& model);

/// Takes the IDs of the definition off everything in a model but the model itself, and deletes maps that have
/// no source and connections that feed nothing; such a connection stays in the details, if there are any. A
/// second time changes nothing.
void cleanModel(TAVStoreModel& model, Details* details);

}  // namespace tav
