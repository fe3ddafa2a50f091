#pragma once

#include <bit>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tav {

/// Behind what is to be passed, so many bytes stand in which every run ends, such as NUL: as many are looked
/// at together where the machine can.
inline constexpr std::size_t kBytesAtOnce = 16;

/// Whether a name may hold this character of ASCII.
constexpr bool isNamePart(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '-' && c <= ':' && c != '/') || c == '_';
}

#if defined(__SSE2__)

using Bytes = __m128i;

inline Bytes are(Bytes bytes, char c) noexcept {
  return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c));
}
/// What is no ASCII is below any character of it.
inline Bytes areBelow(Bytes bytes, char c) noexcept {
  return _mm_cmplt_epi8(bytes, _mm_set1_epi8(c));
}
inline Bytes areBetween(Bytes bytes, char first, char last) noexcept {
  return _mm_andnot_si128(areBelow(bytes, first), areBelow(bytes, static_cast<char>(last + 1)));
}

/// In front of the first of the bytes there that `find` marks.
template <class Find> const char* passUntil(const char* at, Find find) noexcept {
  for (;; at += kBytesAtOnce) {
    const Bytes found = find(_mm_loadu_si128(reinterpret_cast<const Bytes*>(at)));
    const auto places = static_cast<unsigned>(_mm_movemask_epi8(found));
    if (places != 0) return at + std::countr_zero(places);
  }
}

/// Behind the printable characters of ASCII there, as far as none of them is a stop.
template <char... Stops> const char* passPrintable(const char* at) noexcept {
  return passUntil(at, [](Bytes bytes) {
    Bytes found = areBelow(bytes, ' ');
    ((found = _mm_or_si128(found, are(bytes, Stops))), ...);
    return found;
  });
}

/// Behind the characters of ASCII there that a name may hold.
inline const char* passNameParts(const char* at) noexcept {
  return passUntil(at, [](Bytes bytes) {
    const Bytes letters = areBetween(_mm_or_si128(bytes, _mm_set1_epi8('a' - 'A')), 'a', 'z');
    const Bytes others = _mm_andnot_si128(are(bytes, '/'), areBetween(bytes, '-', ':'));
    const Bytes parts = _mm_or_si128(_mm_or_si128(letters, others), are(bytes, '_'));
    return are(parts, 0);
  });
}

/// Behind the spaces there.
inline const char* passSpaces(const char* at) noexcept {
  return passUntil(at, [](Bytes bytes) { return are(are(bytes, ' '), 0); });
}

#else

template <char... Stops> const char* passPrintable(const char* at) noexcept {
  while (static_cast<signed char>(*at) >= ' ' && ((*at != Stops) && ...)) ++at;
  return at;
}

inline const char* passNameParts(const char* at) noexcept {
  while (isNamePart(*at)) ++at;
  return at;
}

inline const char* passSpaces(const char* at) noexcept {
  while (*at == ' ') ++at;
  return at;
}

#endif

}  // namespace tav
