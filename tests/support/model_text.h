#pragma once

#include <string>

#include "framework/model/model.h"

namespace tav::test {

/// A model as text that a person can read and compare: an object a line, indented under what contains it,
/// with its attributes that are not default and where its references lead, by path. Leaves out what differs
/// from run to run (modification time; path and version of the origin), and the types.
std::string modelText(const TAVModel& model);

}  // namespace tav::test
