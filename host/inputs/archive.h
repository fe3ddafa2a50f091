#pragma once

// Zip archives, read in memory.

#include <memory>
#include <string>
#include <vector>

#include "host/own_library.h"

namespace host {

/// An open archive. What is wrong with it is thrown as std::runtime_error with the cause.
class Archive : public OwnInterface {
 public:
  [[nodiscard]] virtual bool holds(const std::string& entry) const = 0;
  /// The names of what it holds, in its order.
  [[nodiscard]] virtual std::vector<std::string> entries() const = 0;
  /// The bytes of an entry. One that is unpacked to more than such files have is refused.
  [[nodiscard]] virtual std::string read(const std::string& entry) const = 0;
};

/// What opens archives, in a library of its own: few inputs are one.
class Archives : public OwnInterface {
 public:
  [[nodiscard]] virtual std::unique_ptr<Archive> open(const std::string& path) const = 0;
  /// The version of the library that unpacks.
  [[nodiscard]] virtual std::string libraryVersion() const = 0;
};

/// Throws std::runtime_error with the cause when they cannot be loaded.
const Archives& archives();

}  // namespace host
