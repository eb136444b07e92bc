#ifndef ZRCOMMON_STRINGS_LENGTH_H
#define ZRCOMMON_STRINGS_LENGTH_H

#include <cstddef>
#include <cstring>

#include "strings/scan.h"

namespace zrcommon {

using WideUnit = unsigned short;

/// The number of units before the terminator.
inline std::size_t lengthOf(const char* text) {
  return std::strlen(text);
}

/// The same, at most @p limit, of which no more units are used.
inline std::size_t lengthWithin(const WideUnit* text, std::size_t limit) {
  return scan::firstStop(text, limit, [](scan::Window units) { return units; });
}

inline std::size_t lengthOf(const WideUnit* text) {
  return lengthWithin(text, scan::kNoLimit);
}

/// Counts are unsigned 32-bit numbers, even where a signature says int: -1 is the largest one.
inline std::size_t asCount(int count) {
  return static_cast<unsigned int>(count);
}

}  // namespace zrcommon

#endif  // ZRCOMMON_STRINGS_LENGTH_H
