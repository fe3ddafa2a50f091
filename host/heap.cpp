#include "host/heap.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace host {
namespace {

bool endsAfterOneCommand = false;

#if defined(__GLIBC__)

constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::size_t kSmallestFile = std::size_t{2} << 20;
constexpr std::size_t kMost = std::size_t{1} << 30;
/// What is made of a definition takes at most about so many times its bytes.
constexpr std::size_t kBytesOfByte = 4;

bool areAddressesLimited() noexcept {
  const auto isLimited = [](auto resource) {
    rlimit limit{};
    return getrlimit(resource, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY;
  };
  return isLimited(RLIMIT_AS) || isLimited(RLIMIT_DATA);
}

/// A block that is taken and freed at once leaves its room at the end of the heap.
void growHeap(std::size_t bytes) noexcept {
  constexpr int kMappedBlocks = 65536;  // as many as without being asked
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  mallopt(M_MMAP_MAX, 0);
  void* block = std::malloc(bytes);  // NOLINT(*-no-malloc): it is this heap that is grown
  mallopt(M_MMAP_MAX, kMappedBlocks);
  if (!block) return;
  const auto start = reinterpret_cast<std::uintptr_t>(block);
  const std::size_t front = (kHugePage - start % kHugePage) % kHugePage;
  // It is advice: nothing depends on it.
  madvise(static_cast<std::byte*>(block) + front, bytes - front, MADV_HUGEPAGE);
  std::free(block);  // NOLINT(*-no-malloc)
}

#endif

}  // namespace

void endAfterOneCommand() noexcept {
  endsAfterOneCommand = true;
}

void prepareHeapFor([[maybe_unused]] const std::string& path) noexcept {
#if defined(__GLIBC__)
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (!endsAfterOneCommand || error || size < kSmallestFile || areAddressesLimited()) return;
  const std::size_t bytes = kBytesOfByte * std::min<std::uintmax_t>(size, kMost / kBytesOfByte);
  if (mallinfo2().keepcost < bytes) growHeap(bytes);
#endif
}

}  // namespace host
