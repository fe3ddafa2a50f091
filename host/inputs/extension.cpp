#include "host/inputs/extension.h"

#include <filesystem>

#include "framework/std/string.h"

namespace host {

bool hasExtension(const std::string& path, const std::string& extension) {
  return tav::foldCase(std::filesystem::path(path).extension().string()) == extension;
}

}  // namespace host
