#include <algorithm>

#include "strings/length.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

unsigned short* my_wcsset(unsigned short* text, unsigned short unit) {
  if (text) std::fill_n(text, lengthOf(text), unit);
  return text;
}

unsigned short* my_wcsnset(unsigned short* text, unsigned short unit, int count) {
  if (text) std::fill_n(text, lengthWithin(text, asCount(count)), unit);
  return text;
}

unsigned short* my_wmemset(unsigned short* memory, unsigned short unit, int count) {
  if (memory) std::fill_n(memory, asCount(count), unit);
  return memory;
}
