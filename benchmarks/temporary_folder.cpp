#include "benchmarks/temporary_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace tav::bench {
namespace {

constexpr const char* kMemory = "/dev/shm";

bool hasRoom(const char* folder, std::uintmax_t bytes) {
  std::error_code failure;
  const auto space = std::filesystem::space(folder, failure);
  return !failure && space.available >= bytes && ::access(folder, W_OK | X_OK) == 0;
}

}  // namespace

TemporaryFolder::TemporaryFolder(std::uintmax_t bytes) : inMemory_(hasRoom(kMemory, bytes)) {
  const std::filesystem::path parent = inMemory_ ? kMemory : std::filesystem::temp_directory_path();
  std::string name = parent / "xmla-bench-XXXXXX";
  if (!::mkdtemp(name.data()))
    throw std::filesystem::filesystem_error("no temporary folder", parent,
                                            std::error_code(errno, std::generic_category()));
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;  // there is nobody left to tell
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tav::bench
