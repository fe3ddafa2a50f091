#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "framework/api.h"

namespace tav {

/// The SHA-256 (FIPS 180-4) of bytes that come in pieces. Adding takes no memory and cannot fail.
class TAV_API Sha256 {
 public:
  Sha256() noexcept;

  void add(std::string_view bytes) noexcept;
  /// The sum in hexadecimal digits. Nothing is added behind it.
  std::string finish();

  static constexpr std::size_t kBlock = 64;
  using State = std::array<std::uint32_t, 8>;
  /// Works blocks that lie one behind the other into a state.
  using Compress = void (*)(State& state, const unsigned char* blocks, std::size_t count) noexcept;

  /// For tests: with this way to work, which must be one that the processor knows.
  explicit Sha256(Compress compress) noexcept;
  /// In plain C++, for every processor.
  static void compressPlainly(State& state, const unsigned char* blocks, std::size_t count) noexcept;
  /// With the processor's instructions for it; null if it has none.
  static Compress compressFast() noexcept;

 private:
  State state_;
  std::array<unsigned char, kBlock> rest_{};  // what does not fill a block yet
  std::uint64_t size_ = 0;                    // of all bytes
  Compress compress_;
};

}  // namespace tav
