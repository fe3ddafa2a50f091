#pragma once

// What stands in a folder.

#include <filesystem>
#include <string>
#include <vector>

namespace host {

/// The folders and files in a folder, in the order of their names, those that are links last: what is met
/// first gives its name. What is neither, such as a link that leads nowhere, is not in it.
struct Listing {
  explicit Listing(const std::filesystem::path& folder);

  std::vector<std::filesystem::path> folders;
  std::vector<std::filesystem::path> files;
  std::string cause;  ///< why it is not complete; empty when it is
};

/// Why a folder cannot be listed to its end; empty for one that can, and for what is none.
std::string causeOfUnlisted(const std::filesystem::path& folder);

}  // namespace host
