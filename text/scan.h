#ifndef ZRCOMMON_TEXT_SCAN_H
#define ZRCOMMON_TEXT_SCAN_H

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// Walks over strings of either unit, 16 bytes at a time.
///
/// A string may end at the last byte of a mapping, and nobody knows where before its terminator is
/// seen. So 16 bytes are read at once only where they lie in one page with the unit that the walk
/// has come to; what follows the string in that page is read and ignored. Where a page ends, the
/// walk goes unit by unit. The addresses may have any alignment.
namespace scan {

using Window = __m128i;

constexpr std::size_t kWindowBytes = sizeof(Window);
constexpr std::size_t kBlockBytes = 4 * kWindowBytes;
constexpr std::size_t kPageBytes = 4096;
constexpr std::size_t kNoLimit = SIZE_MAX;

// The sanitizer takes a read behind a string for an overrun; that it stays in the page is what
// makes it none.
[[gnu::no_sanitize_address]] inline Window load(const void* from) {
  return _mm_loadu_si128(static_cast<const Window*>(from));
}

template <typename Unit>
Window repeat(Unit unit) {
  if constexpr (sizeof(Unit) == 1)
    return _mm_set1_epi8(static_cast<char>(unit));
  else
    return _mm_set1_epi16(static_cast<short>(unit));
}

/// All bits set in every unit that is the same in both, none in the others.
template <typename Unit>
Window equal(Window a, Window b) {
  if constexpr (sizeof(Unit) == 1)
    return _mm_cmpeq_epi8(a, b);
  else
    return _mm_cmpeq_epi16(a, b);
}

template <typename Unit>
Window isZero(Window units) {
  return equal<Unit>(units, _mm_setzero_si128());
}

inline std::uint64_t bitPerByte(Window window) {
  return static_cast<std::uint64_t>(_mm_movemask_epi8(window));
}

inline bool isInOnePage(const void* from, std::size_t bytes) {
  return (reinterpret_cast<std::uintptr_t>(from) & (kPageBytes - 1)) <= kPageBytes - bytes;
}

/// The index at which a walk over both strings stops, at most @p limit.
///
/// @param rule  stops(x, y) tells whether two units end the walk; marks(x, y) tells it of a window
///              of each, with a zero unit for a stop and any other for none
template <typename Unit, typename Rule>
std::size_t firstStop(const Unit* a, const Unit* b, std::size_t limit, const Rule& rule) {
  constexpr std::size_t kUnits = kWindowBytes / sizeof(Unit);
  const auto canRead = [a, b](std::size_t at, std::size_t bytes) {
    return isInOnePage(a + at, bytes) && isInOnePage(b + at, bytes);
  };
  const auto stopsFrom = [a, b, &rule](std::size_t at) {
    return isZero<Unit>(rule.marks(load(a + at), load(b + at)));
  };
  std::size_t at = 0;
  while (at < limit) {
    if (!canRead(at, kWindowBytes)) {
      if (rule.stops(a[at], b[at])) return at;
      ++at;
      continue;
    }
    if (const std::uint64_t stops = bitPerByte(stopsFrom(at)))
      return std::min(limit, at + static_cast<unsigned>(__builtin_ctzll(stops)) / sizeof(Unit));
    at += kUnits;
    for (; at < limit && canRead(at, kBlockBytes); at += 4 * kUnits) {
      const Window first = stopsFrom(at), second = stopsFrom(at + kUnits);
      const Window third = stopsFrom(at + 2 * kUnits), fourth = stopsFrom(at + 3 * kUnits);
      const Window any = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth));
      if (!bitPerByte(any)) continue;
      const std::uint64_t stops = bitPerByte(first) | bitPerByte(second) << 16U |
                                  bitPerByte(third) << 32U | bitPerByte(fourth) << 48U;
      return std::min(limit, at + static_cast<unsigned>(__builtin_ctzll(stops)) / sizeof(Unit));
    }
  }
  return limit;
}

template <typename Unit, typename Rule>
std::size_t firstStop(const Unit* text, std::size_t limit, const Rule& rule) {
  return firstStop(text, text, limit, rule);
}

}  // namespace scan

#endif  // ZRCOMMON_TEXT_SCAN_H
