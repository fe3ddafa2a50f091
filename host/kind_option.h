#pragma once

// The option --kind of commands that take kinds of objects, and the list of them, which is too long for the
// help of a command.

#include <ostream>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "lineage/lineage_graph.h"

namespace host {

/// What `help` takes instead of the name of a command to list the kinds.
inline constexpr const char* kKindsTopic = "kinds";

void addKinds(const CommandParser& parser, std::vector<std::string>& kinds);

/// The kinds of these names, which the option has let through.
std::vector<tav::NodeKind> kindsOf(const std::vector<std::string>& names);

/// A line for each kind: its name, and what it is.
void writeKinds(std::ostream& out);

}  // namespace host
