#include "tests/java/leftovers.h"

#include <unistd.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

namespace tav::test {
namespace {

namespace fs = std::filesystem;

/// What /proc shows of a process; empty for one that has ended, collected or not, and for those of others.
std::string shown(const fs::path& process, const char* what) {
  std::ifstream in(process / what, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string processesOf(const std::string& folder) {
  std::string found;
  for (const auto& process : fs::directory_iterator("/proc")) {
    const std::string number = process.path().filename().string();
    if (number.find_first_not_of("0123456789") != number.npos || number == std::to_string(getpid())) continue;
    if (shown(process, "environ").find(folder) != std::string::npos)
      found += "process " + shown(process, "cmdline") + "\n";
  }
  return found;
}

}  // namespace

std::string leftovers(const fs::path& folder, const fs::path& temporaryFiles) {
  std::string left;
  for (int i = 0; i < 100; ++i) {
    left = processesOf(folder.string());
    if (left.empty()) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  for (const auto& file : fs::recursive_directory_iterator(temporaryFiles))
    left += "file " + file.path().filename().string() + "\n";
  return left;
}

}  // namespace tav::test
