#pragma once

#include <string>

#include "framework/details/detailed_model.h"

namespace tav::test {

/// The first of the laws for every model that this one breaks, in words; empty when it keeps them all: saved,
/// loaded and saved again it is the same to the byte, both export the same JSON, the model that is read from
/// the JSON is saved as the same again, details included, and its lineage graph keeps its own laws.
std::string brokenLaw(const DetailedModel& detailed);

}  // namespace tav::test
