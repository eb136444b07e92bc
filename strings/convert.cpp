#include <cstddef>

#include "strings/length.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

namespace {

// Kept: CopySZToWSZ() and CatSZToWSZ() widen bytes with their sign, 0xE9 to 0xFFE9, without a code
// page (test Strings.Rows)
void widen(WideUnit* to, const char* from) {
  const std::size_t length = lengthOf(from);
  for (std::size_t i = 0; i < length; ++i)
    to[i] = static_cast<WideUnit>(static_cast<signed char>(from[i]));
  to[length] = 0;
}

// Kept: CopyWSZToSZ() and CatWSZToSZ() keep only the low byte of a unit: 0x20AC becomes 0xAC, and
// 0x0100 a zero byte inside the result (test Strings.Rows)
void narrow(char* to, const WideUnit* from) {
  const std::size_t length = lengthOf(from);
  for (std::size_t i = 0; i < length; ++i) to[i] = static_cast<char>(from[i] & 0xFFU);
  to[length] = '\0';
}

}  // namespace

unsigned short* CopySZToWSZ(unsigned short* to, const char* from) {
  if (!to || !from) return nullptr;
  widen(to, from);
  return to;
}

unsigned short* CatSZToWSZ(unsigned short* to, const char* from) {
  if (!to || !from) return nullptr;
  widen(to + lengthOf(to), from);
  return to;
}

char* CopyWSZToSZ(char* to, const unsigned short* from) {
  if (!to || !from) return nullptr;
  narrow(to, from);
  return to;
}

char* CatWSZToSZ(char* to, const unsigned short* from) {
  if (!to || !from) return nullptr;
  narrow(to + lengthOf(to), from);
  return to;
}

// Kept: ConvertToWideChar() and ConvertToMultiByte() check their arguments and convert nothing
// (test Strings.Rows)
bool ConvertToWideChar(const char* from, unsigned short* to, unsigned int capacity) {
  return from && to && capacity != 0;
}

bool ConvertToMultiByte(const unsigned short* from, char* to, unsigned int capacity) {
  return from && to && capacity != 0;
}
