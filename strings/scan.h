#ifndef ZRCOMMON_STRINGS_SCAN_H
#define ZRCOMMON_STRINGS_SCAN_H

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zrcommon {

/// Walks over strings of either unit, 16 bytes (a window) at a time.
///
/// A rule is a function that takes a window of each string and sets all bits of the units at which
/// the walk stops. No walk reads a page that holds no part of its strings: one string is read by
/// aligned windows, each of which lies in one page and which valgrind accepts; two strings are read
/// by windows at any address where these lie in one page each.
///
/// The walks are inlined, so that each of them knows its rule and whether it has a limit.
namespace scan {

using Window = __m128i;

constexpr std::size_t kWindowBytes = sizeof(Window);
constexpr std::size_t kPageBytes = 4096;
constexpr std::size_t kNoLimit = SIZE_MAX;

// The address sanitizer reports reads beyond the end of a string, even in its page.
[[gnu::no_sanitize_address]] inline Window load(const void* from) {
  return _mm_loadu_si128(static_cast<const Window*>(from));
}

[[gnu::no_sanitize_address]] inline Window loadAligned(const void* from) {
  return _mm_load_si128(static_cast<const Window*>(from));
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

/// One bit for each byte of a window.
inline std::uint64_t bits(Window stops) {
  return static_cast<unsigned int>(_mm_movemask_epi8(stops));
}

/// The number of units before the first bit.
template <typename Unit>
std::size_t unitsBefore(std::uint64_t stops) {
  return static_cast<std::size_t>(__builtin_ctzll(stops)) / sizeof(Unit);
}

inline std::size_t offsetIn(std::size_t block, const void* address) {
  return reinterpret_cast<std::uintptr_t>(address) % block;
}

inline std::size_t leftInPage(const void* address) {
  return kPageBytes - offsetIn(kPageBytes, address);
}

/// For units at odd addresses, which aligned windows would cut in two.
template <typename Unit, typename Rule>
std::size_t firstStopByUnits(const Unit* text, std::size_t limit, const Rule& rule) {
  std::size_t at = 0;
  while (at < limit && !bits(rule(repeat(text[at])))) ++at;
  return at;
}

/// The number of units before the first stop in a window, at most @p limit, which is not above a
/// window's units. The analyzers cannot see that; the shift masks its operand by 63 anyway.
template <typename Unit>
std::size_t unitsBefore(std::uint64_t stops, std::size_t limit) {
  return unitsBefore<Unit>(stops | std::uint64_t{1} << (limit * sizeof(Unit) & 63));
}

/// The index of the first unit at which the rule stops, at most @p limit.
template <typename Unit, typename Rule>
[[gnu::always_inline]] inline std::size_t firstStop(const Unit* text, std::size_t limit,
                                                    const Rule& rule) {
  constexpr std::size_t kUnits = kWindowBytes / sizeof(Unit);
  if (limit == 0) return 0;
  if (offsetIn(sizeof(Unit), text) != 0) return firstStopByUnits(text, limit, rule);
  const std::size_t before = offsetIn(kWindowBytes, text);
  const auto first =
      bits(rule(loadAligned(reinterpret_cast<const char*>(text) - before))) >> before;
  std::size_t at = kUnits - before / sizeof(Unit);
  if (limit <= at) return unitsBefore<Unit>(first, limit);
  if (first) return unitsBefore<Unit>(first);
  for (; at + 4 * kUnits < limit; at += 4 * kUnits)
    for (std::size_t i = 0; i < 4; ++i)
      if (const auto stops = bits(rule(loadAligned(text + at + i * kUnits))))
        return at + i * kUnits + unitsBefore<Unit>(stops);
  for (; at + kUnits < limit; at += kUnits)
    if (const auto stops = bits(rule(loadAligned(text + at)))) return at + unitsBefore<Unit>(stops);
  return at + unitsBefore<Unit>(bits(rule(loadAligned(text + at))), limit - at);
}

/// The stops in some windows of each string, one bit for each byte.
template <std::size_t kWindows, typename Rule, typename... Strings>
std::uint64_t stopsIn(const Rule& rule, const Strings*... strings) {
  Window stops[kWindows];
  Window any = _mm_setzero_si128();
  for (std::size_t i = 0; i < kWindows; ++i) {
    stops[i] = rule(load(reinterpret_cast<const char*>(strings) + i * kWindowBytes)...);
    any = _mm_or_si128(any, stops[i]);
  }
  if (!bits(any)) return 0;
  std::uint64_t all = 0;
  for (std::size_t i = 0; i < kWindows; ++i) all |= bits(stops[i]) << i * kWindowBytes;
  return all;
}

/// The units that can be read from here on in the pages of both strings.
template <typename Unit>
std::size_t unitsInPages(const Unit* a, const Unit* b) {
  return std::min(leftInPage(a), leftInPage(b)) / sizeof(Unit);
}

/// The same for two strings, in windows that lie in one page each, up to the limit or beyond it.
template <typename Unit, typename Rule>
[[gnu::always_inline]] inline std::size_t firstStop(const Unit* a, const Unit* b, std::size_t limit,
                                                    const Rule& rule) {
  constexpr std::size_t kUnits = kWindowBytes / sizeof(Unit);
  std::size_t at = 0;
  if (limit > 0 && unitsInPages(a, b) >= kWindowBytes) {
    if (const auto stops = stopsIn<sizeof(Unit)>(rule, a, b))
      return std::min(unitsBefore<Unit>(stops), limit);
    at = kWindowBytes;
  }
  while (at < limit) {
    std::size_t readable = unitsInPages(a + at, b + at);
    for (; readable >= 4 * kUnits && at < limit; readable -= 4 * kUnits, at += 4 * kUnits)
      if (const auto stops = stopsIn<4>(rule, a + at, b + at))
        return std::min(at + unitsBefore<Unit>(stops), limit);
    for (; readable >= kUnits && at < limit; readable -= kUnits, at += kUnits)
      if (const auto stops = stopsIn<1>(rule, a + at, b + at))
        return std::min(at + unitsBefore<Unit>(stops), limit);
    for (const std::size_t end = std::min(at + readable + 1, limit); at < end; ++at)
      if (bits(rule(repeat(a[at]), repeat(b[at])))) return at;
  }
  return limit;
}

/// The same for a block of memory, all of which may be read: in batches of four windows inside the
/// limit. A batch never crosses a page, because the limit may lie beyond the block.
template <typename Unit, typename Rule>
[[gnu::always_inline]] inline std::size_t firstStopInBlock(const Unit* block, std::size_t limit,
                                                           const Rule& rule) {
  constexpr std::size_t kUnits = 4 * kWindowBytes / sizeof(Unit);
  std::size_t at = 0;
  while (limit - at >= kUnits) {
    if (leftInPage(block + at) >= 4 * kWindowBytes) {
      if (const auto stops = stopsIn<4>(rule, block + at)) return at + unitsBefore<Unit>(stops);
    } else {
      const std::size_t stop = firstStopByUnits(block + at, kUnits, rule);
      if (stop < kUnits) return at + stop;
    }
    at += kUnits;
  }
  return at + firstStop(block + at, limit - at, rule);
}

}  // namespace scan

}  // namespace zrcommon

#endif  // ZRCOMMON_STRINGS_SCAN_H
