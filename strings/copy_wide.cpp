#include <cstddef>
#include <cstring>

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
  // Kept: my_wcsncpy() always terminates, after count units if needed, and never pads
  // (test Strings.Rows)
  to[length] = 0;
  return to;
}

unsigned short* my_wcsncat(unsigned short* to, const unsigned short* from, int count) {
  if (!to || !from) return nullptr;
  const std::size_t length = lengthWithin(from, asCount(count));
  // Kept: my_wcsncat() writes no terminator if the count ends the copy (test Strings.Rows)
  copyUnits(to + lengthOf(to), from, length < asCount(count) ? length + 1 : length);
  return to;
}
