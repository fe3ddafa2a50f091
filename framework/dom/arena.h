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

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TAV_WATCHED_ARENA
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define TAV_WATCHED_ARENA
#endif
#if defined(TAV_WATCHED_ARENA)
#include <sanitizer/asan_interface.h>
#endif

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

  /// A place between two pieces.
  struct Place {
    std::size_t block = 0;
    std::size_t offset = 0;
  };
  /// The place behind a piece of `size` bytes.
  [[nodiscard]] Place placeBehind(const void* piece, std::size_t size) const {
    const Place place = placeOf(piece);
    return {place.block, place.offset + size};
  }
  /// Gives back the whole pages behind `from` and in front of the piece at `to`, which was given out later.
  /// Returns where to go on.
  Place release(Place from, const void* to) {
    const Block& block = blocks_[from.block];
    const std::size_t offset = addressOf(to) - addressOf(block.bytes.get());
    if (offset < block.size && offset - from.offset < kGrain) return from;
    const Place end = placeOf(to);
    for (; from.block < end.block; from = {from.block + 1, 0}) discard(from, blocks_[from.block].size);
    return {from.block, discard(from, end.offset)};
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

  /// Large blocks lie outside of the heap, which would give few of them back.
  struct GiveBack {
    std::size_t size;
    void operator()(std::byte* block) const noexcept {
      if (size < kHugePage) return std::free(block);  // NOLINT(*-no-malloc)
      lendAgain(block, size);
      munmap(block, size);
    }
  };
  using Bytes = std::unique_ptr<std::byte[], GiveBack>;

  struct Block {
    Bytes bytes;
    std::size_t size;
  };

  void addBlock(std::size_t size) {
    if (size >= kHugePage) size = (size + kHugePage - 1) & ~(kHugePage - 1);
    auto* place =
        size >= kHugePage ? map(size) : static_cast<std::byte*>(std::malloc(size));  // NOLINT(*-no-malloc)
    Bytes block(place, GiveBack{size});
    if (!block) throw std::bad_alloc();
    numbers_.insert_or_assign(block.get(), blocks_.size());
    block_ = blocks_.emplace_back(Block{std::move(block), size}).bytes.get();
    capacity_ = size;
  }

  /// Huge pages, or null: those of 4 KB cost 8% of the time of parsing 100 MB. They are advice only.
  static std::byte* map(std::size_t size) {
    const std::size_t taken = size + kHugePage;
    void* place = mmap(nullptr, taken, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) return nullptr;
    auto* start = static_cast<std::byte*>(place);
    const std::size_t front = kHugePage - addressOf(start) % kHugePage;
    munmap(start, front);
    if (front < kHugePage) munmap(start + front + size, kHugePage - front);
    madvise(start + front, size, MADV_HUGEPAGE);
    return start + front;
  }

  static std::uintptr_t addressOf(const void* place) noexcept {
    return reinterpret_cast<std::uintptr_t>(place);
  }

  [[nodiscard]] Place placeOf(const void* piece) const {
    const auto block = std::prev(numbers_.upper_bound(static_cast<const std::byte*>(piece)));
    return {block->second, addressOf(piece) - addressOf(block->first)};
  }

  /// Gives back the whole pages of a block from a place on; returns the offset behind them.
  std::size_t discard(Place from, std::size_t end) {
    std::byte* const bytes = blocks_[from.block].bytes.get();
    const std::size_t front = (kGrain - addressOf(bytes + from.offset) % kGrain) % kGrain;
    const std::size_t back = addressOf(bytes + end) % kGrain;
    if (from.offset + front + back >= end) return from.offset;
    giveBack(bytes + from.offset + front, end - back - front - from.offset);
    return end - back;
  }

#if defined(TAV_WATCHED_ARENA)
  // The sanitizer for addresses stops whoever looks there again.
  static constexpr std::size_t kGrain = 8;
  static void giveBack(std::byte* begin, std::size_t size) {
    __asan_poison_memory_region(begin, size);
  }
  static void lendAgain(std::byte* begin, std::size_t size) {
    __asan_unpoison_memory_region(begin, size);
  }
#else
  static constexpr std::size_t kGrain = kHugePage;
  // It is advice as well.
  static void giveBack(std::byte* begin, std::size_t size) {
    madvise(begin, size, MADV_DONTNEED);
  }
  static void lendAgain(std::byte* /*begin*/, std::size_t /*size*/) {}
#endif

  std::vector<Block> blocks_;
  std::map<const std::byte*, std::size_t, std::less<>> numbers_;  // of blocks, by where they lie
  std::byte* block_ = nullptr;
  std::size_t used_ = 0;
  std::size_t capacity_ = 0;
  std::size_t nextCapacity_ = kFirstBlock;
};

}  // namespace tav
