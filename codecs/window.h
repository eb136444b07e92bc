#ifndef ZRCOMMON_CODECS_WINDOW_H
#define ZRCOMMON_CODECS_WINDOW_H

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

namespace zrcommon {

/// A window is as many bytes as one vector instruction works on. Its address is a multiple of its
/// size, so it lies in one page: whoever may read one of its bytes may read all.
constexpr std::size_t kWindowBytes = sizeof(__m128i);

/// How many bytes before @p byte its window begins.
inline std::size_t placeInWindow(const char* byte) {
  return reinterpret_cast<std::uintptr_t>(byte) % kWindowBytes;
}

/// The window may begin before a text and end after it.
[[gnu::no_sanitize_address]] inline __m128i loadWindow(const char* window) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(window));
}

inline void storeWindow(char* window, __m128i bytes) {
  _mm_store_si128(reinterpret_cast<__m128i*>(window), bytes);
}

/// The bytes of a window's size, at any address.
inline __m128i loadAnywhere(const char* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

/// The first @p count of the bytes, fewer than 16, and zeros.
inline __m128i firstBytes(__m128i bytes, std::size_t count) {
  alignas(kWindowBytes) static constexpr std::uint64_t kKept[] = {~0ULL, ~0ULL, 0, 0};
  const char* const kept = reinterpret_cast<const char*>(kKept) + kWindowBytes - count;
  return _mm_and_si128(bytes, loadAnywhere(kept));
}

/// The places of a character among the bytes: bit 0 for the first byte.
inline unsigned placesOf(char character, __m128i bytes) {
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(character))));
}

/// The first and the last of the places, of which there is at least one.
inline unsigned firstOf(unsigned places) {
  return static_cast<unsigned>(__builtin_ctz(places));
}

inline unsigned lastOf(unsigned places) {
  return 31 - static_cast<unsigned>(__builtin_clz(places));
}

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_WINDOW_H
