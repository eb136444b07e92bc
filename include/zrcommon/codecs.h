#ifndef ZRCOMMON_CODECS_H
#define ZRCOMMON_CODECS_H

#include <zrcommon/export.h>

/// @file
/// Encodings: byte scramblers. They keep text from standing in the clear and are no ciphers.
/// Everything here works in place on the caller's memory, keeps no state and is thread-safe.

extern "C" {

/// Swaps the two 4-bit halves of each of the first @p count bytes; done twice, it restores them.
///
/// @param bytes  null: nothing happens
/// @param count  in bytes; 0 or less: nothing happens
ZRCOMMON_API void Encrypt(unsigned char* bytes, int count);

/// The same as Encrypt(), under the name for the way back.
ZRCOMMON_API void Decrypt(unsigned char* bytes, int count);

}  // extern "C"

#endif  // ZRCOMMON_CODECS_H
