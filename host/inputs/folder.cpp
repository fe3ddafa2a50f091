#include "host/inputs/folder.h"

#include <algorithm>
#include <filesystem>

#include "framework/std/string.h"

namespace host {
namespace {

namespace fs = std::filesystem;

}  // namespace

bool hasExtension(const std::string& path, const std::string& extension) {
  return tav::foldCase(fs::path(path).extension().string()) == extension;
}

std::vector<std::string> definitionsIn(const std::string& folder) {
  std::vector<std::string> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    if (hasExtension(entry->path().string(), kProjectExtension)) found.push_back(entry->path().string());
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace host
