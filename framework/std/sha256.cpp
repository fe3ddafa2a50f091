#include "framework/std/sha256.h"

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace tav {
namespace {

// The names of what follows are those of the standard.
constexpr Sha256::State kInitial{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

alignas(16) constexpr std::array<std::uint32_t, 64> kConstants{
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

constexpr std::size_t kLengthBytes = 8;

std::uint32_t sum0(std::uint32_t x) noexcept {
  return std::rotr(x, 2) ^ std::rotr(x, 13) ^ std::rotr(x, 22);
}
std::uint32_t sum1(std::uint32_t x) noexcept {
  return std::rotr(x, 6) ^ std::rotr(x, 11) ^ std::rotr(x, 25);
}
std::uint32_t sigma0(std::uint32_t x) noexcept {
  return std::rotr(x, 7) ^ std::rotr(x, 18) ^ (x >> 3U);
}
std::uint32_t sigma1(std::uint32_t x) noexcept {
  return std::rotr(x, 17) ^ std::rotr(x, 19) ^ (x >> 10U);
}

std::array<std::uint32_t, 64> scheduleOf(const unsigned char* block) noexcept {
  std::array<std::uint32_t, 64> words{};
  for (std::size_t i = 0; i < 16; ++i, block += 4)
    words[i] = std::uint32_t{block[0]} << 24U | std::uint32_t{block[1]} << 16U |
               std::uint32_t{block[2]} << 8U | std::uint32_t{block[3]};
  for (std::size_t i = 16; i < words.size(); ++i)
    words[i] = sigma1(words[i - 2]) + words[i - 7] + sigma0(words[i - 15]) + words[i - 16];
  return words;
}

void compressBlock(Sha256::State& state, const unsigned char* block) noexcept {
  const std::array<std::uint32_t, 64> words = scheduleOf(block);
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::uint32_t choice = (e & f) ^ (~e & g);
    const std::uint32_t majority = (a & b) ^ (a & c) ^ (b & c);
    const std::uint32_t first = h + sum1(e) + choice + kConstants[i] + words[i];
    const std::uint32_t second = sum0(a) + majority;
    h = g;
    g = f;
    f = e;
    e = d + first;
    d = c;
    c = b;
    b = a;
    a = first + second;
  }
  const Sha256::State added{a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < state.size(); ++i) state[i] += added[i];
}

#ifdef __x86_64__

bool knowsInstructions() noexcept {
  constexpr unsigned kOfSha = 1U << 29U;
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  return __builtin_cpu_supports("sse4.1") && __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 &&
         (b & kOfSha) != 0;
}

// The instructions want the words of the state in two registers: a, b, e, f and c, d, g, h.
[[gnu::target("sha,sse4.1")]] void compressByInstructions(Sha256::State& state, const unsigned char* blocks,
                                                          std::size_t count) noexcept {
  const __m128i swap = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
  const auto at = [](auto* place) { return reinterpret_cast<const __m128i*>(place); };
  const auto [a, b, c, d, e, f, g, h] = state;
  const auto word = [](std::uint32_t value) { return static_cast<int>(value); };
  __m128i abef = _mm_set_epi32(word(a), word(b), word(e), word(f));
  __m128i cdgh = _mm_set_epi32(word(c), word(d), word(g), word(h));
  for (; count > 0; --count, blocks += Sha256::kBlock) {
    const __m128i abefBefore = abef;
    const __m128i cdghBefore = cdgh;
    __m128i words[4];  // sixteen of the schedule, four in each  NOLINT(modernize-avoid-c-arrays)
    for (std::size_t i = 0; i < 4; ++i)
      words[i] = _mm_shuffle_epi8(_mm_loadu_si128(at(blocks + 16 * i)), swap);
    for (std::size_t i = 0; i < 16; ++i) {
      __m128i& now = words[i % 4];
      const __m128i before = words[(i + 3) % 4];
      if (i >= 4) {
        now = _mm_sha256msg1_epu32(now, words[(i + 1) % 4]);
        now = _mm_add_epi32(now, _mm_alignr_epi8(before, words[(i + 2) % 4], 4));
        now = _mm_sha256msg2_epu32(now, before);
      }
      const __m128i added = _mm_add_epi32(now, _mm_load_si128(at(kConstants.data() + 4 * i)));
      cdgh = _mm_sha256rnds2_epu32(cdgh, abef, added);
      abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(added, 0x0E));
    }
    abef = _mm_add_epi32(abef, abefBefore);
    cdgh = _mm_add_epi32(cdgh, cdghBefore);
  }
  std::array<std::uint32_t, 4> fixed{};
  _mm_storeu_si128(reinterpret_cast<__m128i*>(fixed.data()), abef);
  state[5] = fixed[0], state[4] = fixed[1], state[1] = fixed[2], state[0] = fixed[3];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(fixed.data()), cdgh);
  state[7] = fixed[0], state[6] = fixed[1], state[3] = fixed[2], state[2] = fixed[3];
}

#endif

}  // namespace

Sha256::Sha256() noexcept : Sha256(compressFast() ? compressFast() : compressPlainly) {}

Sha256::Sha256(Compress compress) noexcept : state_(kInitial), compress_(compress) {}

void Sha256::compressPlainly(State& state, const unsigned char* blocks, std::size_t count) noexcept {
  for (; count > 0; --count, blocks += kBlock) compressBlock(state, blocks);
}

Sha256::Compress Sha256::compressFast() noexcept {
#ifdef __x86_64__
  static const bool kKnows = knowsInstructions();
  if (kKnows) return compressByInstructions;
#endif
  return nullptr;
}

void Sha256::add(std::string_view bytes) noexcept {
  const std::size_t held = size_ % kBlock;
  size_ += bytes.size();
  if (held > 0) {
    const std::size_t count = bytes.copy(reinterpret_cast<char*>(rest_.data()) + held, kBlock - held);
    bytes.remove_prefix(count);
    if (held + count < kBlock) return;
    compress_(state_, rest_.data(), 1);
  }
  const std::size_t whole = bytes.size() / kBlock;
  if (whole > 0) compress_(state_, reinterpret_cast<const unsigned char*>(bytes.data()), whole);
  bytes.remove_prefix(whole * kBlock);
  bytes.copy(reinterpret_cast<char*>(rest_.data()), kBlock);
}

std::string Sha256::finish() {
  const std::uint64_t bits = size_ * 8;
  std::array<char, kBlock + kLengthBytes> padding{'\x80'};
  // A bit, zeros to the end of a block but for the length, and the length.
  const std::size_t zeros = (2 * kBlock - kLengthBytes - 1 - size_ % kBlock) % kBlock;
  for (std::size_t i = 0; i < kLengthBytes; ++i)
    padding[1 + zeros + i] = static_cast<char>(bits >> (8U * (kLengthBytes - 1 - i)));
  add({padding.data(), 1 + zeros + kLengthBytes});
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  text.reserve(kBlock);
  for (const std::uint32_t word : state_)
    for (unsigned shift = 32; shift > 0; shift -= 4) text += kDigits[word >> (shift - 4) & 0xFU];
  return text;
}

}  // namespace tav
