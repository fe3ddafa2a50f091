#pragma once

#include <string>

#include "framework/details/details.h"

namespace tav::test {

/// The details as text: for each item that there is something to say of, in their order, a line with its kind
/// and path, and under it its text, settings, relations to what it names, and names that lead nowhere; then
/// what was passed over. Objects of the model show by their path, in double quotes.
std::string detailsText(const Details& details);

}  // namespace tav::test
