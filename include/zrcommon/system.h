#ifndef ZRCOMMON_SYSTEM_H
#define ZRCOMMON_SYSTEM_H

#include <cstddef>
#include <ctime>
#include <type_traits>

#include <zrcommon/export.h>

/// @file
/// System services: modules, paths, files, services, time, the feature record.
///
/// Every file is opened and closed within the call, nothing is kept between calls, and all
/// functions are re-entrant unless stated otherwise. Functions without an error argument leave the
/// reason for a failed system call in errno (GetLastError()).

/// A calendar date and time of day, in the layout of the Windows SYSTEMTIME record.
struct tagSYSTEMTIME {
  unsigned short wYear;          ///< all digits, such as 2026
  unsigned short wMonth;         ///< 1 to 12
  unsigned short wDayOfWeek;     ///< 0 Sunday to 6 Saturday
  unsigned short wDay;           ///< 1 to 31
  unsigned short wHour;          ///< 0 to 23
  unsigned short wMinute;        ///< 0 to 59
  unsigned short wSecond;        ///< 0 to 60
  unsigned short wMilliseconds;  ///< 0 to 999
};

/// The product's feature settings: an opaque block; the component that writes it defines its
/// meaning.
struct tagZR_FEATURE {
  unsigned char bytes[11];  ///< as the feature file holds them
};

static_assert(sizeof(tagSYSTEMTIME) == 16, "components share this record");
static_assert(offsetof(tagSYSTEMTIME, wYear) == 0 && offsetof(tagSYSTEMTIME, wMonth) == 2 &&
                  offsetof(tagSYSTEMTIME, wDayOfWeek) == 4 && offsetof(tagSYSTEMTIME, wDay) == 6 &&
                  offsetof(tagSYSTEMTIME, wHour) == 8 && offsetof(tagSYSTEMTIME, wMinute) == 10 &&
                  offsetof(tagSYSTEMTIME, wSecond) == 12 &&
                  offsetof(tagSYSTEMTIME, wMilliseconds) == 14,
              "components share this record");
static_assert(sizeof(tagZR_FEATURE) == 11, "the feature file is this record");
static_assert(std::is_trivially_copyable<tagSYSTEMTIME>::value &&
                  std::is_trivially_copyable<tagZR_FEATURE>::value,
              "copied as bytes");

/// What HandleService() asks of a service.
enum ServiceAction {
  kServiceStart = 1,
  kServiceRestart = 2,
  kServiceStop = 3,
  kServiceStatus = 4,
};

extern "C" {

/// Loads a shared module and binds all its symbols immediately: a module with a missing dependency
/// fails here and not at its first call.
///
/// On failure a line is appended to "/zrcommon.log" (see WriteToLog): "ZRLoadLibrary: Invalid
/// parameters" for a null name, otherwise "In ZRLoadLibrary(): dlopen Error!!!" followed by the
/// loader's message, formatted in szErrMsg and truncated to 2047 bytes. If two threads fail at the
/// same moment, their texts may mix in that buffer; everything else is thread-safe.
///
/// @param name  a path with a slash, used as given; or a bare file name, which the loader looks for
///              in LD_LIBRARY_PATH, then in /usr/lib/Valdrix/Valdrix, then in its default places
/// @return a handle for ZRGetProcAddress(), to be released once with ZRFreeLibrary(); null on
///         failure
ZRCOMMON_API void* ZRLoadLibrary(const char* name);

/// Finds a symbol of a loaded module.
///
/// @param module  a handle from ZRLoadLibrary()
/// @param name    as the module exports it
/// @return its address; null if there is none or an argument is null. Logs nothing.
ZRCOMMON_API void* ZRGetProcAddress(void* module, const char* name);

/// Releases a module handle. A failure of the loader is not reported.
///
/// @param module  a handle from ZRLoadLibrary(), not to be used afterwards; if null, nothing
///                happens
ZRCOMMON_API void ZRFreeLibrary(void* module);

/// Gets the directory of the running executable, with its trailing slash.
///
/// The path itself is not terminated: pass a zero-filled buffer that is larger than the path.
///
/// @param buffer      gets the executable's path, truncated to @p bufferSize bytes. A zero is
///                    written after the last slash if it still fits. What the buffer already holds
///                    after the path, up to the first zero, counts as part of the path. Nothing
///                    after @p bufferSize bytes is read or written.
/// @param bufferSize  bytes at @p buffer
/// @return 1, also if there is no slash; 0 if the path cannot be read, if @p buffer is null or
///         @p bufferSize is below 1, with @p buffer untouched
ZRCOMMON_API int GetAppPath(char* buffer, int bufferSize);

/// Tells whether a file or directory of this name exists, readable or not. A dangling symbolic link
/// does not count.
///
/// @param path  null counts as a path that does not exist
/// @return 1 it exists; 0 it does not
ZRCOMMON_API int IsValidPath(const char* path);

/// Copies the bytes of a file, 1024 at a time.
///
/// An existing target is truncated first and keeps its mode; a new one gets mode 0600 (less the
/// umask). A read error counts as the end of the source: the result is then still 1. A write that
/// fails or is short ends the copy and leaves the partial target in place.
///
/// @param source  path
/// @param target  path of a different file: a copy onto itself empties the file
/// @return 1 copied; 0 not copied, also if a path is null
ZRCOMMON_API int ZRCopyFile(const char* source, const char* target);

/// Finds a name that is free in a directory: @p prefix, four random digits, a dot and the
/// extension, such as "upd0742.tmp". Nothing is created: another process may take the name
/// afterwards.
///
/// The digits come from rand(), which the process seeds; names are drawn until one is free. If all
/// 10,000 names are taken, the call does not return.
///
/// @param directory  with or without a trailing slash; an empty text counts as "/"
/// @param prefix     of any length that fits
/// @param extension  without the dot; null, or more than 10 characters, means "tmp"
/// @param name       gets the bare name, strlen(prefix) + 5 + strlen(extension) characters and the
///                   terminator, without a bound; written only if the result is 1
/// @return 1; 0 if @p directory, @p prefix or @p name is null, or if the directory, its slash and
///         the name together have more than 259 characters
/// @note Threads: as safe as rand().
ZRCOMMON_API int GetUniqueFileName(const char* directory, const char* prefix, const char* extension,
                                   char* name);

/// Finds the first occurrence of @p pattern in @p buffer, byte for byte.
///
/// The time is proportional to @p bufferLength, whatever the bytes are. Allocates no memory.
///
/// @param buffer         searched
/// @param bufferLength   bytes at @p buffer
/// @param pattern        searched for
/// @param patternLength  bytes at @p pattern
/// @return the lowest offset; -1 if there is none, if an argument is null or a length below 1, or
///         if the pattern is longer than the buffer
ZRCOMMON_API int SearchFor(const unsigned char* buffer, int bufferLength,
                           const unsigned char* pattern, int patternLength);

/// Finds the first occurrence of @p pattern, at or after @p startOffset, in the upper-cased text of
/// an open file.
///
/// The file's bytes are upper-cased by strUpr() before the comparison, the pattern is not: an
/// upper-case letter in the pattern matches both cases, and a lower-case letter matches nothing.
///
/// Reads chunks of 2048 bytes, seeks back by @p patternLength + 5 bytes after each chunk, and stops
/// if a read returns fewer than @p patternLength + 6 bytes. The file position stays where the
/// search stopped: after the chunk that holds the match, or at the end. If the pattern is nearly as
/// long as a chunk, each read makes little progress: prefer short patterns.
///
/// @param file           descriptor, readable and seekable; stays open
/// @param pattern        searched for
/// @param patternLength  bytes at @p pattern, 1 to 2042
/// @param startOffset    from the start of the file, not below 0
/// @return the offset of the match in the file; -1 if there is none or if reading or seeking fails.
///         Also -1, with the file position untouched, if @p file is -1, @p pattern is null, or a
///         number is out of range.
ZRCOMMON_API long long SearchInFile(int file, const unsigned char* pattern, int patternLength,
                                    long long startOffset);

/// Fills the calendar fields of @p broken from @p time: year, month, day of week, day, hour, minute
/// and second. All other fields (day of the year, daylight saving, zone) stay as they are; set them
/// to zero first. Values are not checked, and the milliseconds are dropped.
///
/// @param time    the source; must not be null
/// @param broken  must not be null
/// @return @p broken
ZRCOMMON_API struct tm* SystemTimeToTm(const tagSYSTEMTIME* time, struct tm* broken);

/// Fills all fields of @p time from @p broken; the milliseconds become 0. Each value is reduced to
/// its low 16 bits and not checked.
///
/// @param broken  the source; must not be null
/// @param time    must not be null
/// @return @p time
ZRCOMMON_API tagSYSTEMTIME* TmToSystemTime(const struct tm* broken, tagSYSTEMTIME* time);

}  // extern "C"

/// Gets the path of the installation directory, "/usr/lib/Valdrix/Valdrix/", if it exists.
///
/// @param buffer  gets these 25 characters and the terminator
/// @return 1; 0 if there is no such directory, with @p buffer untouched, or if @p buffer is null
ZRCOMMON_API int GetZrPath(char* buffer);

/// Gets the directory of the running executable, with its trailing slash, always terminated.
///
/// Only the first 260 characters of the executable's path count: if the directory alone is longer,
/// the result is a directory further up.
///
/// @param buffer  at least 260 bytes
/// @return 1; 0 if the path cannot be read or the result and its terminator do not fit 260 bytes,
///         with @p buffer untouched, or if @p buffer is null
ZRCOMMON_API int GetModulePath(char* buffer);

/// Copies a file as ZRCopyFile() does, with a different end: on success the target gets mode 0777,
/// whatever its previous mode; a target that could not be written whole is deleted.
///
/// @param source  path
/// @param target  path of a different file: a copy onto itself empties the file
/// @return 1 copied; 0 not copied, also if a path is null
ZRCOMMON_API int CopyFile(const char* source, const char* target);

/// Runs the init script of a service through the system shell and waits until it ends.
///
/// The script is /etc/init.d/rc.d/NAME if that exists, otherwise /etc/init.d/NAME. It runs with the
/// caller's user, environment and standard error; its standard output is discarded. Its exit status
/// is ignored: the result is 1 even if the service does not start, or is not running when asked for
/// its status.
///
/// @param serviceName  the script's bare name, without a slash and without what a shell interprets:
///                     space, tab, line feed and " $ & ' ( ) * ; < > ? [ \ ` { |. Must not be
///                     empty, "." or "..", and must not be null.
/// @param action       a ServiceAction
/// @param error        0; 120 there is no such script, or the name is refused; 121 the script
///                     exists, but the action is not a ServiceAction. Must not be null.
/// @return 1 the command was passed to the shell; 0 nothing was run
ZRCOMMON_API int HandleService(const char* serviceName, int action, unsigned int* error);

/// Gets the local time in the process's time zone; the environment variable TZ is read at every
/// call.
///
/// @param time  all 16 bytes are filled
/// @return 1; 0 if the system has no time or cannot convert it, with @p time untouched, or if @p
///         time is null
/// @note Not thread-safe: the result of the C library's localtime() is one static record, so two
///       threads may get each other's result.
ZRCOMMON_API int GetLocalTime(tagSYSTEMTIME* time);

/// A placeholder: does nothing and finds no process.
///
/// @param processName  not read; may be null
/// @param processId    neither read nor written; may be null
/// @return always 0
ZRCOMMON_API int GetPid(char* processName, int* processId);

/// Reads the product's feature record, the first 11 bytes of
/// /usr/lib/Valdrix/Valdrix/zrfeature.dat.
///
/// @param feature  filled byte for byte from the file; a shorter file replaces only as many bytes
///                 as it has
/// @param error    0; 2 if the file cannot be opened, whatever the reason; otherwise errno after
///                 the close. A file that is too short does not set errno, so the value may be 0:
///                 rely on the result.
/// @return 1 read; 0 not read. Also 0 if an argument is null, with both untouched.
ZRCOMMON_API int GetZRFeaturesSetting(tagZR_FEATURE* feature, unsigned int* error);

#endif  // ZRCOMMON_SYSTEM_H
