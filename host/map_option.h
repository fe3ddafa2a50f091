#pragma once

// The option --map: names of servers, databases and schemas.

#include <optional>
#include <string>
#include <unordered_map>

#include "host/command_line.h"
#include "lineage/address_map.h"

namespace host {

/// The rules that a command was given, if it was given any.
using GivenMap = std::optional<tav::AddressMap>;

Option addMap(const CommandParser& parser, std::string& path);

/// Reads the file of the option; of no file, nothing. Throws when it cannot be read or is no list of rules.
GivenMap readMap(const std::string& path);

/// How the databases of inputs are called: by the rules that were given, otherwise by those of the estate
/// that an input lies in, which are read once.
class InputMaps {
 public:
  InputMaps() = default;
  explicit InputMaps(GivenMap given) : given_(std::move(given)) {}

  [[nodiscard]] bool given() const noexcept { return given_.has_value(); }
  /// Throws what an estate that cannot be read does.
  const tav::AddressMap& of(const std::string& input);
  /// One for two inputs that are compared, of which either may lie in an estate.
  const tav::AddressMap& ofBoth(const std::string& before, const std::string& after);

 private:
  GivenMap given_;
  tav::AddressMap none_;
  std::unordered_map<std::string, tav::AddressMap> estates_;  // by their paths
};

}  // namespace host
