#include "strings/length.h"

#include "zrcommon/strings.h"

using namespace zrcommon;

unsigned int my_strlen(const char* text) {
  return text ? static_cast<unsigned int>(lengthOf(text)) : 0;
}

unsigned int my_wcslen(const unsigned short* text) {
  return text ? static_cast<unsigned int>(lengthOf(text)) : 0;
}
