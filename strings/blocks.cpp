#include <cstddef>
#include <cstdint>
#include <cstring>

#include "strings/length.h"
#include "strings/scan.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

int my_wmemcmp(const unsigned short* a, const unsigned short* b, int count) {
  if (!a || !b) return 1;
  const std::size_t at = scan::firstStop(a, b, asCount(count), scan::equal<WideUnit>);
  if (at == asCount(count)) return 0;
  return a[at] > b[at] ? 1 : -1;
}

unsigned short* my_wmemcpy(unsigned short* to, const unsigned short* from, int count) {
  if (!to || !from) return nullptr;
  const std::size_t bytes = asCount(count) * sizeof(WideUnit);
  const auto distance =
      reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from);
  if (distance == 0 || distance >= bytes) {
    std::memmove(to, from, bytes);
    return to;
  }
  // Kept: my_wmemcpy() copies forwards unit by unit, so if the destination begins inside the
  // source, the units before it are repeated (test Strings.Rows)
  for (std::size_t i = 0; i < asCount(count); ++i) to[i] = from[i];
  return to;
}

unsigned short* my_wmemmove(unsigned short* to, const unsigned short* from, unsigned int count) {
  if (!to || !from) return nullptr;
  std::memmove(to, from, std::size_t{count} * sizeof(WideUnit));
  return to;
}
