#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
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
      if (size > kBlock / 8) return newBlock(size);  // the block in use goes on serving small pieces
      block_ = newBlock(kBlock);
      capacity_ = kBlock;
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
  static constexpr std::size_t kBlock = std::size_t{1} << 20;

  std::byte* newBlock(std::size_t size) {
    // Not make_unique, which would write zeros over memory that is written anyway.
    return blocks_.emplace_back(new std::byte[size]).get();  // NOLINT(modernize-make-unique)
  }

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* block_ = nullptr;
  std::size_t used_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace tav
