#pragma once

// The option --reports: reports that are given with the model that they are on.

#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/inputs/input.h"

namespace host {

Option addReports(const CommandParser& parser, std::vector<std::string>& paths);

/// Adds the reports that the paths of the option lead to. Throws a usage error for a path that leads to none,
/// and for a saved model, which has its reports already.
void readReports(Input& input, const std::vector<std::string>& paths);

/// Throws a usage error when reports were given for several models.
void checkReports(const std::vector<std::string>& paths, bool severalModels);

}  // namespace host
