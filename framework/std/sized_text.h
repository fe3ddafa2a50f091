#pragma once

// Texts that know their size: a pointer to one is all that is kept of it.

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace tav {

/// What a sized text has in front of its bytes.
using TextSize = std::uint32_t;

inline TextSize requireTextSize(std::size_t size) {
  if (size > std::numeric_limits<TextSize>::max()) throw std::length_error("a text of more than 4 GB");
  return static_cast<TextSize>(size);
}

/// A text somewhere that is somebody else's. It is used like the view that it converts to.
class SizedText {
 public:
  SizedText() = default;
  /// The one at `place`, written by writeSizedText; null is an empty one.
  explicit SizedText(const char* place) noexcept : place_(place) {}

  [[nodiscard]] bool empty() const noexcept { return !place_; }
  [[nodiscard]] std::string_view view() const noexcept {
    if (!place_) return {};
    TextSize size = 0;
    std::memcpy(&size, place_, sizeof size);
    return {place_ + sizeof size, size};
  }
  operator std::string_view() const noexcept { return view(); }  // NOLINT(google-explicit-constructor)

  friend bool operator==(SizedText a, SizedText b) noexcept { return a.view() == b.view(); }
  friend bool operator==(SizedText a, std::string_view b) noexcept { return a.view() == b; }
  friend bool operator==(SizedText a, const char* b) noexcept { return a.view() == b; }

 private:
  const char* place_ = nullptr;
};

/// Writes the size and the first bytes of a text of `size` bytes; returns where its other bytes belong.
inline char* writeSizedText(char* place, TextSize size, std::string_view first) noexcept {
  std::memcpy(place, &size, sizeof size);
  if (!first.empty()) std::memcpy(place + sizeof size, first.data(), first.size());
  return place + sizeof size + first.size();
}

/// The two texts as one, with a NUL behind it that its size does not count; null when both are empty. Throws
/// std::length_error.
[[nodiscard]] inline std::unique_ptr<char[]> makeSizedText(std::string_view first,
                                                           std::string_view second = {}) {
  if (first.empty() && second.empty()) return nullptr;
  const TextSize size = requireTextSize(first.size() + second.size());
  auto text = std::make_unique_for_overwrite<char[]>(sizeof size + std::size_t{size} + 1);
  char* end = writeSizedText(text.get(), size, first);
  if (!second.empty()) std::memcpy(end, second.data(), second.size());
  end[second.size()] = '\0';
  return text;
}

}  // namespace tav
