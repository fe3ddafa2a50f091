#pragma once

// The option --map: names of servers, databases and schemas.

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "lineage/address_map.h"

namespace host {

/// The rules that a command was given, if it was given any.
using GivenMap = std::optional<tav::AddressMap>;

CLI::Option& addMap(CLI::App& parser, std::string& path);

/// Reads the file of the option; of no file, nothing. Throws when it cannot be read or is no list of rules.
GivenMap readMap(const std::string& path);

/// The rules for one input: those that were given, otherwise those of the estate that it lies in.
tav::AddressMap mapFor(const GivenMap& given, const std::string& input);

}  // namespace host
