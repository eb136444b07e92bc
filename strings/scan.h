#ifndef ZRCOMMON_STRINGS_SCAN_H
#define ZRCOMMON_STRINGS_SCAN_H

#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zrcommon {

/// Walks over strings of either unit, 16 bytes at a time.
///
/// A string may end at the last byte of a mapping, and nobody knows where before its terminator is
/// seen. So 16 bytes are read at once only where they lie in one page with the unit that the walk
/// has come to; what follows the string in that page is read and ignored. Where a page ends, the
/// walk goes unit by unit. The addresses may have any alignment.
namespace scan {

using Window = __m128i;

constexpr std::size_t kWindowBytes = sizeof(Window);
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

/// How many bytes can be read from here on without leaving the page.
inline std::size_t leftInPage(const void* from) {
  return kPageBytes - (reinterpret_cast<std::uintptr_t>(from) & (kPageBytes - 1));
}

/// A walk over two strings at once, up to where a rule stops it.
///
/// The rule's stops(x, y) tells whether two units end the walk, and its marks(x, y) tells it of a
/// window of each, with a zero unit for a stop and any other for none.
template <typename Unit, typename Rule>
class Walk {
 public:
  Walk(const Unit* a, const Unit* b, std::size_t limit, const Rule& rule)
      : a_(a), b_(b), limit_(limit), rule_(rule) {}

  /// The index at which it stops, at most the limit.
  std::size_t run() {
    // Most strings end in their first 16 units.
    if (readable() >= sizeof(Unit) * kWindowBytes && meetsStop<sizeof(Unit)>())
      return std::min(at_, limit_);
    while (at_ < limit_ && !stopsInPage()) continue;
    return std::min(at_, limit_);
  }

 private:
  static constexpr std::size_t kUnits = kWindowBytes / sizeof(Unit);

  std::size_t readable() const { return std::min(leftInPage(a_ + at_), leftInPage(b_ + at_)); }

  Window stopsInWindow(std::size_t number) const {
    const std::size_t at = at_ + number * kUnits;
    return isZero<Unit>(rule_.marks(load(a_ + at), load(b_ + at)));
  }

  // Moves to the first stop in so many windows, or behind them.
  template <unsigned kWindows>
  bool meetsStop() {
    Window stops[kWindows];
    Window any = _mm_setzero_si128();
    for (unsigned i = 0; i < kWindows; ++i) any = _mm_or_si128(any, stops[i] = stopsInWindow(i));
    if (!_mm_movemask_epi8(any)) {
      at_ += kWindows * kUnits;
      return false;
    }
    std::uint64_t bitPerByte = 0;
    for (unsigned i = 0; i < kWindows; ++i)
      bitPerByte |= static_cast<std::uint64_t>(_mm_movemask_epi8(stops[i])) << 16U * i;
    at_ += static_cast<unsigned>(__builtin_ctzll(bitPerByte)) / sizeof(Unit);
    return true;
  }

  // Goes to the end of the nearer page and over it. True if it met a stop.
  bool stopsInPage() {
    std::size_t left = readable();
    for (; left >= 4 * kWindowBytes && at_ < limit_; left -= 4 * kWindowBytes)
      if (meetsStop<4>()) return true;
    for (; left >= kWindowBytes && at_ < limit_; left -= kWindowBytes)
      if (meetsStop<1>()) return true;
    for (std::size_t units = left / sizeof(Unit) + 1; units > 0 && at_ < limit_; --units, ++at_)
      if (rule_.stops(a_[at_], b_[at_])) return true;
    return false;
  }

  const Unit* a_;
  const Unit* b_;
  std::size_t limit_;
  const Rule& rule_;
  std::size_t at_ = 0;
};

template <typename Unit, typename Rule>
std::size_t firstStop(const Unit* a, const Unit* b, std::size_t limit, const Rule& rule) {
  return Walk<Unit, Rule>(a, b, limit, rule).run();
}

template <typename Unit, typename Rule>
std::size_t firstStop(const Unit* text, std::size_t limit, const Rule& rule) {
  return firstStop(text, text, limit, rule);
}

}  // namespace scan

}  // namespace zrcommon

#endif  // ZRCOMMON_STRINGS_SCAN_H
