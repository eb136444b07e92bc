#include "zrcommon/codecs.h"

// Kept: both only look at their arguments; callers treat the destination as theirs to fill
// (test Strings.PlaceholdersOnlyLookAtTheirArguments)
bool CUTF8::Encode(const unsigned short* from, char* to, unsigned int capacity) {
  return from && to && capacity != 0;
}

bool CUTF8::Decode(const char* from, unsigned short* to, unsigned int capacity) {
  return from && to && capacity != 0;
}
