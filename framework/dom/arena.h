#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace tav {

/// Memory that is given out piece by piece and given back all at once, or from the front, for values that
/// need no destructor.
class Arena {
 public:
  /// `size` bytes at a multiple of `alignment`, which is a power of two and at most that of `new`. They lie
  /// behind all that was given out before.
  void* allocate(std::size_t size, std::size_t alignment) {
    std::size_t start = (used_ + alignment - 1) & ~(alignment - 1);
    if (start > capacity_ || size > capacity_ - start) {
      addBlock(std::max(size, nextCapacity_));
      nextCapacity_ = std::min(2 * nextCapacity_, kLargestBlock);
      start = 0;
    }
    used_ = start + size;
    return block_ + start;
  }

  /// Gives back the whole huge pages between `from` and the piece at `to`, which was given out later. Returns
  /// what `from` is the next time: at the first time it is a piece.
  const void* release(const void* from, const void* to) {
    const std::uintptr_t begin = addressOf(from);
    const std::uintptr_t end = addressOf(to);
    if ((begin < end ? end - begin : begin - end) < kHugePage) return from;
    const std::size_t last = numberOf(to);
    std::size_t number = numberOf(from);
    std::byte* place = blocks_[number].bytes.get() + (begin - addressOf(blocks_[number].bytes.get()));
    for (; number < last; ++number) {
      discard(place, blocks_[number].bytes.get() + blocks_[number].size);
      place = blocks_[number + 1].bytes.get();
    }
    return discard(place, place + (end - addressOf(place)));
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

  struct Block {
    std::unique_ptr<std::byte[], Free> bytes;
    std::size_t size;
  };

  void addBlock(std::size_t size) {
    const std::size_t alignment = size >= kHugePage ? kHugePage : alignof(std::max_align_t);
    size = (size + alignment - 1) & ~(alignment - 1);
    std::unique_ptr<std::byte[], Free> block(static_cast<std::byte*>(std::aligned_alloc(alignment, size)));
    if (!block) throw std::bad_alloc();
    // Pages of 4 KB cost 8% of the time of parsing 100 MB. It is advice only: nothing depends on it.
    if (size >= kHugePage) madvise(block.get(), size, MADV_HUGEPAGE);
    numbers_.insert_or_assign(block.get(), blocks_.size());
    block_ = blocks_.emplace_back(Block{std::move(block), size}).bytes.get();
    capacity_ = size;
  }

  static std::uintptr_t addressOf(const void* place) noexcept {
    return reinterpret_cast<std::uintptr_t>(place);
  }

  /// Of the block that a piece is in.
  [[nodiscard]] std::size_t numberOf(const void* piece) const {
    return std::prev(numbers_.upper_bound(static_cast<const std::byte*>(piece)))->second;
  }

  /// Gives back the whole huge pages there and returns what follows them. It is advice as well.
  static std::byte* discard(std::byte* begin, std::byte* end) {
    const std::size_t size = addressOf(end) - addressOf(begin);
    const std::size_t front = (kHugePage - addressOf(begin) % kHugePage) % kHugePage;
    const std::size_t back = addressOf(end) % kHugePage;
    if (front + back >= size) return begin;
    madvise(begin + front, size - front - back, MADV_DONTNEED);
    return end - back;
  }

  std::vector<Block> blocks_;
  std::map<const std::byte*, std::size_t, std::less<>> numbers_;  // of blocks, by where they lie
  std::byte* block_ = nullptr;
  std::size_t used_ = 0;
  std::size_t capacity_ = 0;
  std::size_t nextCapacity_ = kFirstBlock;
};

}  // namespace tav
