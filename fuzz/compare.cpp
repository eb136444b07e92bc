// The comparisons and the case-blind fold, against a few lines that say what they do.
#include <zrcommon/strings.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "fuzz/support.h"

namespace {

constexpr unsigned int kNoLimit = std::numeric_limits<unsigned int>::max();

unsigned int asIs(unsigned int unit) {
  return unit;
}

unsigned int folded(unsigned int unit) {
  return unit & 0xDFU;
}

int order(long long a, long long b) {
  return a == b ? 0 : a > b ? 1 : -1;
}

template <typename Unit>
int compare(const Unit* a, const Unit* b, unsigned int count, unsigned int (*key)(unsigned int)) {
  for (; count > 0 && *a && *b; ++a, ++b, --count)
    if (key(*a) != key(*b)) return order(key(*a), key(*b));
  return count == 0 ? 0 : order(*a != 0, *b != 0);
}

int compareMixed(const unsigned short* wide, const char* narrow) {
  for (; *wide && *narrow; ++wide, ++narrow) {
    const int byte = static_cast<signed char>(*narrow);
    if (*wide != byte) return order(*wide, byte);
  }
  return order(*wide != 0, *narrow != 0);
}

std::u16string units(const std::string& bytes) {
  std::u16string wide(bytes.size() / 2, u'\0');
  std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(char16_t));
  return wide;
}

void checkNarrow(const char* a, const char* b, unsigned int count) {
  const auto* const x = reinterpret_cast<const unsigned char*>(a);
  const auto* const y = reinterpret_cast<const unsigned char*>(b);
  expect(my_stricmp(a, b) == compare(x, y, kNoLimit, folded), "my_stricmp");
  expect(my_strnicmp(a, b, count) == compare(x, y, count, folded), "my_strnicmp");
}

void checkWide(const unsigned short* a, const unsigned short* b, unsigned int count) {
  const int signedCount = static_cast<int>(count);
  expect(my_wcscmp(a, b) == compare(a, b, kNoLimit, asIs), "my_wcscmp");
  expect(my_wcsncmp(a, b, signedCount) == compare(a, b, count, asIs), "my_wcsncmp");
  expect(my_wcsicmp(a, b) == compare(a, b, kNoLimit, folded), "my_wcsicmp");
  expect(my_wcsnicmp(a, b, count) == compare(a, b, count, folded), "my_wcsnicmp");
}

void checkBlocks(const std::u16string& a, const std::u16string& b, PageEnd& first,
                 PageEnd& second) {
  const std::size_t count = std::min(a.size(), b.size());
  const int result = my_wmemcmp(first.put(a), second.put(b), static_cast<int>(count));
  expect(result == order(a.compare(0, count, b, 0, count), 0), "my_wmemcmp");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static PageEnd first;
  static PageEnd second;
  Input input(data, size);
  const auto count = static_cast<unsigned int>(input.number());
  const std::string one = input.line();
  const std::string other = input.rest();
  checkNarrow(first.put(visible(one)), second.put(visible(other)), count);
  const std::u16string wide = units(one);
  const std::u16string otherWide = units(other);
  checkBlocks(wide, otherWide, first, second);
  checkWide(first.put(wide.c_str()), second.put(otherWide.c_str()), count);
  const char* const narrow = second.put(visible(other));
  const auto* const wideText = first.put(wide.c_str());
  expect(my_wcscscmp(wideText, narrow) == compareMixed(wideText, narrow), "my_wcscscmp");
  return 0;
}
