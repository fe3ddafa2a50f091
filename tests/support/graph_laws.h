#pragma once

#include <string>

#include "framework/details/detailed_model.h"

namespace tav::test {

/// The first of the laws for the lineage graph of any model that this one's breaks, in words; empty when it
/// keeps them all. Every source in the model and every relation of the details is an edge; each walk shows a
/// node whole once and is no longer than there are edges; what is counted adds up; the model does not differ
/// from itself.
std::string brokenGraphLaw(const DetailedModel& model);

}  // namespace tav::test
