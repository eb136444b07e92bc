#include <algorithm>

#include "strings/length.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

namespace {

template <typename Unit>
Unit* reverse(Unit* text) {
  if (text) std::reverse(text, text + lengthOf(text));
  return text;
}

}  // namespace

char* my_strrev(char* text) {
  return reverse(text);
}

unsigned short* my_wcsrev(unsigned short* text) {
  return reverse(text);
}
