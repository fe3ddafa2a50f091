#pragma once

// The details of a definition as text, for comparison with what a test expects.

#include <string>

#include "framework/details/details.h"

namespace tav::test {

/// An item by its kind and name, an object of the model by its path.
std::string labelOf(const Details& details, ItemId id);

/// A line for each item, relation, setting and open name, in their order, and for what was passed over.
std::string detailsText(const Details& details);

}  // namespace tav::test
