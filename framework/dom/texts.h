#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "framework/dom/arena.h"

namespace tav {

/// Texts of a document in its arena. Of a short one that was among the last, the same copy is given again:
/// IDs and types are said many times.
class DomTexts {
 public:
  explicit DomTexts(Arena& arena) : arena_(arena) {}

  /// The text kept as long as the arena.
  std::string_view keep(std::string_view text) {
    if (text.size() > kLongest || text.size() < kShortest) return arena_.copy(text);
    std::string_view& last = last_[slotOf(text)];
    if (last != text) last = arena_.copy(text);
    return last;
  }

 private:
  static constexpr std::size_t kLongest = 128;
  static constexpr std::size_t kShortest = sizeof(std::uint64_t);
  static constexpr std::size_t kSlots = 4096;

  /// It looks at the beginning and the end: texts that differ in between are rare, and cost their copy only.
  static std::size_t slotOf(std::string_view text) noexcept {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::memcpy(&begin, text.data(), sizeof begin);
    std::memcpy(&end, text.data() + text.size() - sizeof end, sizeof end);
    constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15U;
    return (((begin ^ text.size()) * kMix ^ end) * kMix >> 32) % kSlots;
  }

  Arena& arena_;
  std::array<std::string_view, kSlots> last_;
};

}  // namespace tav
