#include <emmintrin.h>

#include <cstddef>
#include <cstring>

#include "strings/length.h"
#include "strings/scan.h"
#include "strings/two_way.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

namespace {

using scan::Window;

inline std::size_t find(const WideUnit* text, WideUnit wanted, std::size_t count) {
  const Window same = scan::repeat(wanted);
  return scan::firstStop(text, count, [=](Window units) { return _mm_xor_si128(units, same); });
}

std::size_t find(const char* text, char wanted, std::size_t count) {
  const void* const place = std::memchr(text, wanted, count);
  return place ? static_cast<std::size_t>(static_cast<const char*>(place) - text) : count;
}

// Compares from both ends, and counts the units that matched from the front.
// Kept: my_strstr() and my_wcsstr() never compare the middle unit of a pattern of odd length, so it
// matches any unit (test Strings.Rows)
template <typename Unit>
bool matchesAt(const Unit* text, const Unit* pattern, std::size_t length, std::size_t& effort) {
  std::size_t front = 0;
  for (std::size_t back = length - 1; front < back; ++front, --back)
    if (text[front] != pattern[front] || text[back] != pattern[back]) break;
  effort += front;
  return front == length / 2;
}

// Searches for the half before the middle and the half after it; both in their places are a match.
// The time is proportional to the length of the text, whatever it holds.
template <typename Unit>
const Unit* searchHalves(const Unit* text, std::size_t textLength, const Unit* pattern,
                         std::size_t length) {
  const std::size_t half = length / 2;
  const std::size_t second = length - half;
  TwoWaySearch<Unit> fronts(text, textLength - second, pattern, half);
  TwoWaySearch<Unit> backs(text + second, textLength - second, pattern + second, half);
  std::size_t front = fronts.next();
  std::size_t back = backs.next();
  while (front != back)
    if (front < back)
      front = fronts.next();
    else
      back = backs.next();
  return front == TwoWaySearch<Unit>::kNone ? nullptr : text + front;
}

// Tries every occurrence of the pattern's first unit. When the comparisons have cost as much as the
// text is long, the rest is left to the search whose time is proportional to that length.
template <typename Unit>
const Unit* search(const Unit* text, const Unit* pattern) {
  if (!text || !pattern) return nullptr;
  const std::size_t textLength = lengthOf(text);
  const std::size_t length = lengthOf(pattern);
  if (textLength < length) return nullptr;
  // Kept: my_strstr() and my_wcsstr() find a pattern of one unit at the start of any text that is
  // not empty (test Strings.Rows)
  if (length < 2) return text;
  const std::size_t last = textLength - length;
  std::size_t effort = 0;
  for (std::size_t at = 0; at <= last; ++at) {
    at += find(text + at, pattern[0], last + 1 - at);
    if (at > last) break;
    if (matchesAt(text + at, pattern, length, effort)) return text + at;
    if (effort > textLength && at < last)
      return searchHalves(text + at + 1, textLength - at - 1, pattern, length);
  }
  return nullptr;
}

}  // namespace

char* my_strstr(const char* text, const char* pattern) {
  // A pattern of even length has no middle, so the C library finds the same.
  if (text && pattern && lengthOf(pattern) % 2 == 0)
    return const_cast<char*>(std::strstr(text, pattern));
  return const_cast<char*>(search(text, pattern));
}

unsigned short* my_wcsstr(const unsigned short* text, const unsigned short* pattern) {
  return const_cast<unsigned short*>(search(text, pattern));
}

unsigned short* my_wcschr(const unsigned short* text, unsigned short wanted) {
  if (!text) return nullptr;
  const Window same = scan::repeat(wanted);
  const std::size_t at = scan::firstStop(text, scan::kNoLimit, [=](Window units) {
    return _mm_andnot_si128(scan::equal<WideUnit>(units, same), units);
  });
  // Kept: my_wcschr() and my_wcsrchr() never find the terminator (test Strings.Rows)
  return text[at] ? const_cast<unsigned short*>(text + at) : nullptr;
}

unsigned short* my_wcsrchr(const unsigned short* text, unsigned short wanted) {
  if (!text) return nullptr;
  for (std::size_t at = lengthOf(text); at-- > 0;)
    if (text[at] == wanted) return const_cast<unsigned short*>(text + at);
  return nullptr;
}

unsigned short* my_wmemchr(const unsigned short* memory, unsigned short wanted, int count) {
  if (!memory) return nullptr;
  const std::size_t at = find(memory, wanted, asCount(count));
  return at < asCount(count) ? const_cast<unsigned short*>(memory + at) : nullptr;
}
