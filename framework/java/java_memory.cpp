#include "framework/java/java_memory.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

namespace tav {
namespace {

constexpr std::uint64_t kMegabyte = std::uint64_t{1} << 20;
// Measured: 500 MB are enough for a definition of 68 MB as editors save it, and 800 MB for one of 60 MB that
// is written without blanks, which 700 MB are not.
constexpr std::uint64_t kFloor = 64 * kMegabyte;
constexpr std::uint64_t kPerByte = 14;
// What Java takes beside its heap must fit too, or the kernel ends it instead of an error that says why.
constexpr std::uint64_t kBesideHeap = 128 * kMegabyte;
constexpr const char* kContainerLimits[] = {"/sys/fs/cgroup/memory.max",
                                            "/sys/fs/cgroup/memory/memory.limit_in_bytes"};

}  // namespace

std::uint64_t javaHeapFor(std::uint64_t inputSize, std::uint64_t machineMemory) {
  const std::uint64_t quarter = machineMemory / 4;
  const std::uint64_t most =
      std::max(machineMemory - std::min(machineMemory, kBesideHeap), machineMemory / 2);
  // A size that cannot be multiplied is more than any machine has.
  const std::uint64_t needed = inputSize > most / kPerByte ? most : kFloor + kPerByte * inputSize;
  return std::min(std::max(needed, quarter), most);
}

std::uint64_t machineMemory() {
  std::uint64_t memory =
      static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  for (const char* path : kContainerLimits) {
    std::uint64_t limit = 0;  // "max" where there is none
    if (std::ifstream(path) >> limit) memory = std::min(memory, limit);
  }
  // Java keeps more address space than it fills, so that a limit of that leaves half for the heap.
  rlimit addresses{};
  if (getrlimit(RLIMIT_AS, &addresses) == 0 && addresses.rlim_cur != RLIM_INFINITY)
    memory = std::min<std::uint64_t>(memory, addresses.rlim_cur / 2);
  return memory;
}

}  // namespace tav
