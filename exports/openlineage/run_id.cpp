#include "exports/openlineage/run_id.h"

#include <algorithm>
#include <bit>

namespace tav {
namespace {

constexpr std::array<std::uint8_t, 16> kUriSpace{0x6b, 0xa7, 0xb8, 0x11, 0x9d, 0xad, 0x11, 0xd1,
                                                 0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8};
constexpr std::size_t kUuidSize = 16;

/// What a round mixes in of three words, and its constant (FIPS 180-4).
std::uint32_t mixRound(std::size_t round, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
  if (round < 20) return ((b & c) | (~b & d)) + 0x5A827999U;
  if (round < 40) return (b ^ c ^ d) + 0x6ED9EBA1U;
  if (round < 60) return ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDCU;
  return (b ^ c ^ d) + 0xCA62C1D6U;
}

}  // namespace

NamedUuid::NamedUuid() : NamedUuid(kUriSpace) {}

NamedUuid::NamedUuid(const std::array<std::uint8_t, 16>& space) {
  size_ = space.size();
  std::copy(space.begin(), space.end(), block_.begin());
}

void NamedUuid::add(std::string_view text) {
  while (!text.empty()) {
    const std::size_t used = size_ % kBlockSize;
    const std::size_t count = std::min(text.size(), kBlockSize - used);
    std::copy_n(text.begin(), count, block_.begin() + used);
    text.remove_prefix(count);
    size_ += count;
    if (used + count == kBlockSize) mixBlock();
  }
}

void NamedUuid::mixBlock() {
  std::array<std::uint32_t, 80> words{};
  for (std::size_t i = 0; i < kBlockSize; ++i) words[i / 4] = words[i / 4] << 8U | block_[i];
  for (std::size_t i = 16; i < words.size(); ++i)
    words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
  auto [a, b, c, d, e] = state_;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::uint32_t next = std::rotl(a, 5) + mixRound(i, b, c, d) + e + words[i];
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  const std::array<std::uint32_t, 5> mixed{a, b, c, d, e};
  for (std::size_t i = 0; i < mixed.size(); ++i) state_[i] += mixed[i];
}

std::string NamedUuid::finish() {
  const std::uint64_t bits = size_ * 8;
  // A one and zeros up to the size, which ends the last block.
  std::string padding(1, '\x80');
  padding.resize(1 + (2 * kBlockSize - 1 - sizeof bits - size_ % kBlockSize) % kBlockSize);
  for (int shift = 56; shift >= 0; shift -= 8) padding += static_cast<char>(bits >> shift & 0xFFU);
  add(padding);

  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < kUuidSize; ++i) {
    auto byte = static_cast<std::uint8_t>(state_[i / 4] >> (24 - 8 * (i % 4)));
    if (i == 6) byte = (byte & 0x0FU) | 0x50U;  // version 5
    if (i == 8) byte = (byte & 0x3FU) | 0x80U;  // the variant of RFC 9562
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text.append({kDigits[byte >> 4U], kDigits[byte & 0xFU]});
  }
  return text;
}

}  // namespace tav
