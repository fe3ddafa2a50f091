#pragma once

#include <string>

#include "framework/model/model.h"

namespace tav::test {

/// The first of the laws for every model that this one breaks, in words; empty when it keeps them all: saved,
/// loaded and saved again it is the same to the byte, both export the same JSON, which parses, and its
/// lineage graph keeps its own laws.
std::string brokenLaw(const TAVModel& model);

}  // namespace tav::test
