#include <emmintrin.h>

#include <cstddef>

#include "strings/length.h"
#include "strings/scan.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

namespace {

using scan::Window;

// Both rules stop where the units differ and where either string ends.

template <typename Unit>
struct AsIs {
  static unsigned int key(Unit unit) { return unit; }
  Window operator()(Window x, Window y) const { return _mm_and_si128(x, scan::equal<Unit>(x, y)); }
};

// Kept: my_stricmp(), my_strnicmp(), my_wcsicmp() and my_wcsnicmp() compare (unit AND 0xDF), for
// letters and all other units, so '[' equals '{' and 0x0141 equals 'A' (test Strings.Rows)
template <typename Unit>
struct Folded {
  static constexpr Unit kMask = 0xDF;

  static unsigned int key(Unit unit) { return unit & kMask; }
  Window operator()(Window x, Window y) const {
    const Window mask = scan::repeat(kMask);
    const Window same = scan::equal<Unit>(_mm_and_si128(x, mask), _mm_and_si128(y, mask));
    return _mm_andnot_si128(scan::isZero<Unit>(y), _mm_and_si128(same, x));
  }
};

// Kept: my_wcscmp(), like all comparisons of strings or blocks, returns 1 if either argument or
// both are null, and otherwise exactly -1, 0 or 1 (test Strings.Rows)
template <template <typename> class Rule, typename Unit>
[[gnu::always_inline]] inline int compare(const Unit* a, const Unit* b, std::size_t count) {
  if (!a || !b) return 1;
  const std::size_t at = scan::firstStop(a, b, count, Rule<Unit>{});
  if (at == count) return 0;
  if (!a[at] || !b[at]) return static_cast<int>(a[at] != 0) - static_cast<int>(b[at] != 0);
  return Rule<Unit>::key(a[at]) > Rule<Unit>::key(b[at]) ? 1 : -1;
}

const unsigned char* bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

}  // namespace

int my_stricmp(const char* a, const char* b) {
  return compare<Folded>(bytes(a), bytes(b), scan::kNoLimit);
}

int my_strnicmp(const char* a, const char* b, unsigned int count) {
  return compare<Folded>(bytes(a), bytes(b), count);
}

int my_wcscmp(const unsigned short* a, const unsigned short* b) {
  return compare<AsIs>(a, b, scan::kNoLimit);
}

int my_wcsncmp(const unsigned short* a, const unsigned short* b, int count) {
  return compare<AsIs>(a, b, asCount(count));
}

int my_wcsicmp(const unsigned short* a, const unsigned short* b) {
  return compare<Folded>(a, b, scan::kNoLimit);
}

int my_wcsnicmp(const unsigned short* a, const unsigned short* b, unsigned int count) {
  return compare<Folded>(a, b, count);
}

int my_wcscscmp(const unsigned short* wide, const char* narrow) {
  if (!wide || !narrow) return 1;
  for (;; ++wide, ++narrow) {
    // Kept: my_wcscscmp() takes bytes as signed and wide units as unsigned values, so a byte of
    // 0x80 or above is less than every wide unit and equal to none (test Strings.Rows)
    const int difference = *wide - static_cast<signed char>(*narrow);
    if (!*wide || !*narrow) return static_cast<int>(*wide != 0) - static_cast<int>(*narrow != 0);
    if (difference != 0) return difference > 0 ? 1 : -1;
  }
}
