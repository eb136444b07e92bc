#ifndef ZRCOMMON_STRINGS_H
#define ZRCOMMON_STRINGS_H

#include <zrcommon/export.h>

/// @file
/// Strings: narrow helpers. All are thread-safe and keep no state.

extern "C" {

/// Applies toupper() of the process's locale to exactly @p length bytes, zero bytes included.
///
/// @param text    must not be null
/// @param length  in bytes; 0 or less changes nothing
/// @return always 1
ZRCOMMON_API int strUpr(char* text, int length);

}  // extern "C"

#endif  // ZRCOMMON_STRINGS_H
