#ifndef ZRCOMMON_STRINGS_LENGTH_H
#define ZRCOMMON_STRINGS_LENGTH_H

#include <cstring>

#include "strings/scan.h"

namespace zrcommon {

using WideUnit = unsigned short;

/// Units before the terminator, as the C library counts them.
inline std::size_t lengthOf(const char* text) {
  return std::strlen(text);
}

inline std::size_t lengthOf(const WideUnit* text) {
  return scan::firstStop(text, scan::kNoLimit, scan::isZero<WideUnit>);
}

/// The same, looking at no more than @p limit units.
inline std::size_t lengthWithin(const WideUnit* text, std::size_t limit) {
  return scan::firstStop(text, limit, scan::isZero<WideUnit>);
}

/// Counts are 32 bits wide and unsigned in effect, whatever a signature says: components pass -1
/// for "all of it".
inline std::size_t asCount(int count) {
  return static_cast<unsigned int>(count);
}

}  // namespace zrcommon

#endif  // ZRCOMMON_STRINGS_LENGTH_H
