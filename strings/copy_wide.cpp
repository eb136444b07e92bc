#include "strings/length.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

namespace {

void copyUnits(WideUnit* to, const WideUnit* from, std::size_t count) {
  std::memmove(to, from, count * sizeof(WideUnit));
}

}  // namespace

unsigned short* my_wcscpy(unsigned short* to, const unsigned short* from) {
  if (!to || !from) return nullptr;
  copyUnits(to, from, lengthOf(from) + 1);
  return to;
}

unsigned short* my_wcscat(unsigned short* to, const unsigned short* from) {
  if (!to || !from) return nullptr;
  copyUnits(to + lengthOf(to), from, lengthOf(from) + 1);
  return to;
}

unsigned short* my_wcsncpy(unsigned short* to, const unsigned short* from, int count) {
  if (!to || !from) return nullptr;
  const std::size_t length = lengthWithin(from, asCount(count));
  copyUnits(to, from, length);
  // Kept: always terminated, behind count units where need be, and never padded; the C library
  // does neither (test Copy.Counted)
  to[length] = 0;
  return to;
}

unsigned short* my_wcsncat(unsigned short* to, const unsigned short* from, int count) {
  if (!to || !from) return nullptr;
  const std::size_t length = lengthWithin(from, asCount(count));
  // Kept: no terminator where the count ends the copy; callers build text in pieces over memory
  // that they filled themselves (test Copy.Counted)
  copyUnits(to + lengthOf(to), from, length < asCount(count) ? length + 1 : length);
  return to;
}
