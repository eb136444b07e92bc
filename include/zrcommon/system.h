#ifndef ZRCOMMON_SYSTEM_H
#define ZRCOMMON_SYSTEM_H

#include <zrcommon/export.h>

/// @file
/// System services: modules, paths, files, services, time.

extern "C" {

/// Loads a shared module and binds all its symbols at once, so that a module with a missing
/// dependency fails here and not at its first call.
///
/// On failure a line is appended to "/zrcommon.log" (see WriteToLog): "ZRLoadLibrary: Invalid
/// parameters" for a null name, else "In ZRLoadLibrary(): dlopen Error!!!" followed by the
/// loader's message, formatted in szErrMsg and cut at 2047 bytes. Two threads that fail at once
/// may mix their texts in that buffer; everything else is thread-safe.
///
/// @param name  path with a slash, used as is; or a bare file name, looked for in
///              LD_LIBRARY_PATH, then in /usr/lib/Valdrix/Valdrix, then where the loader always
///              looks
/// @return a handle for the two functions below, to be given to ZRFreeLibrary once; null on failure
ZRCOMMON_API void* ZRLoadLibrary(const char* name);

/// Finds a symbol of a loaded module.
///
/// @return its address; null if there is none or either argument is null. Logs nothing.
ZRCOMMON_API void* ZRGetProcAddress(void* module, const char* name);

/// Releases a module handle. Null is ignored, and a failure of the loader is not reported.
ZRCOMMON_API void ZRFreeLibrary(void* module);

}  // extern "C"

#endif  // ZRCOMMON_SYSTEM_H
