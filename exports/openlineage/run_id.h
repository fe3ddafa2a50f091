#pragma once

// Identifiers of runs that follow from what the run tells: the same text always has the same one.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tav {

/// A UUID of version 5 (RFC 9562): the SHA-1 sum of a namespace and of the text that is given piece by piece.
class NamedUuid {
 public:
  /// In the namespace of names that are URIs.
  NamedUuid();
  /// In the namespace whose 16 bytes are given.
  explicit NamedUuid(const std::array<std::uint8_t, 16>& space);

  void add(std::string_view text);
  /// The identifier, "2ed6657d-e927-568b-95e1-2665a8aea6a2"; nothing may be added afterwards.
  [[nodiscard]] std::string finish();

 private:
  static constexpr std::size_t kBlockSize = 64;

  void mixBlock();

  std::array<std::uint32_t, 5> state_{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  std::array<std::uint8_t, kBlockSize> block_{};
  std::uint64_t size_ = 0;  // in bytes
};

}  // namespace tav
