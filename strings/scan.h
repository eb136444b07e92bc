#ifndef ZRCOMMON_STRINGS_SCAN_H
#define ZRCOMMON_STRINGS_SCAN_H

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zrcommon {

/// Walks over strings of either unit, 16 units (a block) at a time.
///
/// A rule is a function that takes a window, 16 bytes, of each string and returns one whose units
/// are zero where the walk stops and not zero elsewhere.
///
/// No walk reads a page that holds no part of its strings: one string is read by aligned blocks,
/// each of which lies in one page; two strings are read by blocks at any address where these lie in
/// one page each. The units around a string are ignored. Valgrind reports a window of which no byte
/// belongs to allocated memory; packaging/zrcommon.supp suppresses that.
///
/// The walks are inlined, so that the compiler removes from those without a limit what has to do
/// with one.
namespace scan {

using Window = __m128i;

constexpr std::size_t kUnits = 16;
constexpr std::size_t kPageBytes = 4096;
constexpr std::size_t kNoLimit = SIZE_MAX;

// The address sanitizer reports reads beyond the end of a string, even in its page.
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

/// The stops in a block of each string, one bit for each unit.
template <typename Rule, typename... Units>
unsigned int stopsIn(const Rule& rule, const Units*... blocks) {
  Window marks = rule(load(blocks)...);
  // Wide units become bytes with saturation: only a zero becomes a zero.
  if constexpr ((sizeof(Units) + ...) > sizeof...(Units))
    marks = _mm_packs_epi16(marks, rule(load(blocks + kUnits / 2)...));
  return static_cast<unsigned int>(_mm_movemask_epi8(isZero<char>(marks)));
}

/// The unit of the first stop.
inline std::size_t firstOf(unsigned int stops) {
  return static_cast<unsigned int>(__builtin_ctz(stops));
}

/// The same, at most @p limit, which is not above 16. The analyzers cannot see that; the remainder
/// costs nothing.
inline std::size_t firstOf(unsigned int stops, std::size_t limit) {
  return firstOf(stops | 1U << limit % 32);
}

inline std::size_t offsetIn(std::size_t bytes, const void* address) {
  return reinterpret_cast<std::uintptr_t>(address) % bytes;
}

inline std::size_t leftInPage(const void* address) {
  return kPageBytes - offsetIn(kPageBytes, address);
}

/// For units that blocks would cut in two: those at odd addresses and those at the end of a page.
template <typename Rule, typename... Units>
[[gnu::cold]] std::size_t firstStopByUnits(std::size_t at, std::size_t end, const Rule& rule,
                                           const Units*... strings) {
  while (at < end && _mm_cvtsi128_si32(rule(repeat(strings[at])...)) != 0) ++at;
  return at;
}

/// The index of the first unit at which the rule stops, at most @p limit.
template <typename Unit, typename Rule>
[[gnu::always_inline]] inline std::size_t firstStop(const Unit* text, std::size_t limit,
                                                    const Rule& rule) {
  if (limit == 0) return 0;
  if (offsetIn(sizeof(Unit), text) != 0) return firstStopByUnits(0, limit, rule, text);
  const std::size_t before = offsetIn(kUnits * sizeof(Unit), text) / sizeof(Unit);
  const unsigned int inFirstBlock = stopsIn(rule, text - before) >> before;
  std::size_t at = kUnits - before;
  if (limit <= at) return firstOf(inFirstBlock, limit);
  if (inFirstBlock) return firstOf(inFirstBlock);
  for (std::size_t left = limit - at;; at += kUnits, left -= kUnits) {
    const unsigned int stops = stopsIn(rule, text + at);
    if (limit != kNoLimit && left <= kUnits) return at + firstOf(stops, left);
    if (stops) return at + firstOf(stops);
  }
}

/// The same for two strings.
template <typename Unit, typename Rule>
[[gnu::always_inline]] inline std::size_t firstStop(const Unit* a, const Unit* b, std::size_t limit,
                                                    const Rule& rule) {
  std::size_t at = 0;
  while (at < limit) {
    const std::size_t page = at + std::min(leftInPage(a + at), leftInPage(b + at)) / sizeof(Unit);
    for (std::size_t left = limit - at; at + kUnits <= page; at += kUnits, left -= kUnits) {
      const unsigned int stops = stopsIn(rule, a + at, b + at);
      if (limit != kNoLimit && left <= kUnits) return at + firstOf(stops, left);
      if (stops) return at + firstOf(stops);
    }
    const std::size_t end = std::min(page + 1, limit);
    at = firstStopByUnits(at, end, rule, a, b);
    if (at < end) return at;
  }
  return limit;
}

}  // namespace scan

}  // namespace zrcommon

#endif  // ZRCOMMON_STRINGS_SCAN_H
