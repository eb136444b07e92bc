#include <cctype>

#include "zrcommon/strings.h"

int strUpr(char* text, int length) {
  for (int i = 0; i < length; ++i)
    text[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
  return 1;
}
