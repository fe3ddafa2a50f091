#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace tav {

/// Memory that is given out piece by piece and given back all at once, for values that need no destructor.
class Arena {
 public:
  /// `size` bytes at a multiple of `alignment`, which is a power of two and at most that of `new`.
  void* allocate(std::size_t size, std::size_t alignment) {
    std::size_t start = (used_ + alignment - 1) & ~(alignment - 1);
    if (start > capacity_ || size > capacity_ - start) {
      if (size > nextCapacity_ / 8) return newBlock(size);  // the block in use goes on serving small pieces
      block_ = newBlock(nextCapacity_);
      capacity_ = nextCapacity_;
      nextCapacity_ = std::min(2 * nextCapacity_, kLargestBlock);
      start = 0;
    }
    used_ = start + size;
    return block_ + start;
  }

  /// The text copied into the arena.
  std::string_view copy(std::string_view text) {
    if (text.empty()) return {};
    auto* bytes = static_cast<char*>(allocate(text.size(), 1));
    std::memcpy(bytes, text.data(), text.size());
    return {bytes, text.size()};
  }

 private:
  static constexpr std::size_t kFirstBlock = std::size_t{64} << 10;  // most documents are small
  static constexpr std::size_t kLargestBlock = std::size_t{4} << 20;
  static constexpr std::size_t kHugePage = std::size_t{2} << 20;

  struct Free {
    void operator()(std::byte* block) const noexcept { std::free(block); }  // NOLINT(*-no-malloc)
  };

  std::byte* newBlock(std::size_t size) {
    const std::size_t alignment = size >= kHugePage ? kHugePage : alignof(std::max_align_t);
    size = (size + alignment - 1) & ~(alignment - 1);
    std::unique_ptr<std::byte[], Free> block(static_cast<std::byte*>(std::aligned_alloc(alignment, size)));
    if (!block) throw std::bad_alloc();
    // Pages of 4 KB cost 8% of the time of parsing 100 MB. It is advice only: nothing depends on it.
    if (size >= kHugePage) madvise(block.get(), size, MADV_HUGEPAGE);
    return blocks_.emplace_back(std::move(block)).get();
  }

  std::vector<std::unique_ptr<std::byte[], Free>> blocks_;
  std::byte* block_ = nullptr;
  std::size_t used_ = 0;
  std::size_t capacity_ = 0;
  std::size_t nextCapacity_ = kFirstBlock;
};

}  // namespace tav
