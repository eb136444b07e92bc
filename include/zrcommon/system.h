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
/// functions are re-entrant where nothing else is said. Functions without an error argument leave
/// the reason of a failing system call in errno (GetLastError()).

/// A moment of the calendar, local time, in the layout of the Windows record of this name.
struct tagSYSTEMTIME {
  unsigned short wYear;          ///< in full, such as 2026
  unsigned short wMonth;         ///< 1 to 12
  unsigned short wDayOfWeek;     ///< 0 Sunday to 6 Saturday
  unsigned short wDay;           ///< 1 to 31
  unsigned short wHour;          ///< 0 to 23
  unsigned short wMinute;        ///< 0 to 59
  unsigned short wSecond;        ///< 0 to 60
  unsigned short wMilliseconds;  ///< 0 to 999
};

/// The product's feature settings, an opaque block whose meaning is its writer's business.
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
/// @param module  a handle of ZRLoadLibrary()
/// @param name    as the module exports it
/// @return its address; null if there is none or either argument is null. Logs nothing.
ZRCOMMON_API void* ZRGetProcAddress(void* module, const char* name);

/// Releases a module handle. A failure of the loader is not reported.
///
/// @param module  a handle of ZRLoadLibrary(), which is used up; null: nothing happens
ZRCOMMON_API void ZRFreeLibrary(void* module);

/// Puts the directory of the running executable, with its trailing slash, into @p buffer.
///
/// Adds no terminator of its own but the one behind that slash, and that one only if it lies within
/// @p bufferSize bytes: hand in a zero-filled buffer that is larger than the executable's path.
///
/// @param buffer      gets the executable's path, cut at @p bufferSize bytes, with a zero behind
///                    its last slash. What it held beyond the path is taken for a part of it, up
///                    to the first zero. Nothing beyond @p bufferSize is read or written.
/// @param bufferSize  bytes at @p buffer
/// @return 1, also if there is no slash; 0 if the path cannot be read, if @p buffer is null or
///         @p bufferSize is below 1, with @p buffer untouched
ZRCOMMON_API int GetAppPath(char* buffer, int bufferSize);

/// Tells whether a file or directory of this name exists, readable or not. A symbolic link to
/// nothing does not.
///
/// @param path  null: 0
/// @return 1 or 0
ZRCOMMON_API int IsValidPath(const char* path);

/// Copies the bytes of a file, 1024 at a time.
///
/// An existing target is truncated first and keeps its mode; a new one gets mode 0600 (less the
/// umask). A read error counts as the end of the source: the result is then 1 all the same. A write
/// that fails or comes up short ends the copy and leaves the partial target in place.
///
/// @param source  path
/// @param target  path of another file: the source itself would be emptied
/// @return 1 copied; 0 not, also if a path is null
ZRCOMMON_API int ZRCopyFile(const char* source, const char* target);

/// Makes up a name that no entry of a directory has: @p prefix, four random digits, a dot and the
/// extension, such as "upd0742.tmp". Nothing is created, so another process may take the name.
///
/// The digits come from rand(), which the process seeds; names are drawn until one is free. With
/// all 10,000 taken the call does not return.
///
/// @param directory  with or without a slash at its end; an empty one is taken for "/"
/// @param prefix     of any length that fits
/// @param extension  without the dot; null, or more than 10 characters: "tmp"
/// @param name       gets the bare name, strlen(prefix) + 5 + strlen(extension) characters and the
///                   terminator, whatever room there is; written only when the result is 1
/// @return 1; 0 if @p directory, @p prefix or @p name is null, or if the directory, its slash and
///         the name together have more than 259 characters
/// @note Threads: as safe as rand().
ZRCOMMON_API int GetUniqueFileName(const char* directory, const char* prefix, const char* extension,
                                   char* name);

/// Finds the first place where @p pattern lies in @p buffer, byte for byte.
///
/// Takes time in proportion to @p bufferLength, whatever the two hold, and no memory from the heap.
///
/// @param buffer         is searched
/// @param bufferLength   bytes at @p buffer
/// @param pattern        is searched for
/// @param patternLength  bytes at @p pattern
/// @return the lowest offset; -1 if there is none, if an argument is null or a length below 1, or
///         if the pattern is longer than the buffer
ZRCOMMON_API int SearchFor(const unsigned char* buffer, int bufferLength,
                           const unsigned char* pattern, int patternLength);

/// Finds the first place at or after @p startOffset where @p pattern lies in the upper-cased text
/// of an open file.
///
/// The file's bytes are upper-cased by strUpr() before they are compared, the pattern's are not: an
/// upper-case letter in the pattern finds both cases and a lower-case letter finds nothing.
///
/// Reads 2048 bytes at a time, going back by @p patternLength + 5 bytes after each piece, and stops
/// when fewer than @p patternLength + 6 bytes come back. The file position is left where the search
/// stopped: behind the piece that holds the match, or at the end. A pattern nearly as long as a
/// piece makes little progress with each: prefer short ones.
///
/// @param file           descriptor, readable and seekable; stays open and the caller's
/// @param pattern        is searched for
/// @param patternLength  bytes at @p pattern, 1 to 2042
/// @param startOffset    from the start of the file, not below 0
/// @return the offset of the match in the file; -1 if there is none or if reading or seeking fails.
///         Also -1, with the file position untouched, if @p file is -1, @p pattern is null, or a
///         number is out of its range.
ZRCOMMON_API long long SearchInFile(int file, const unsigned char* pattern, int patternLength,
                                    long long startOffset);

/// Fills the calendar fields of @p broken from @p time: year, month, day of week, day, hour, minute
/// and second. All others (day of the year, daylight saving, zone) stay as they are, so zero them
/// first. Values are not checked and the milliseconds are dropped.
///
/// @param time    the source; must not be null
/// @param broken  must not be null
/// @return @p broken
ZRCOMMON_API struct tm* SystemTimeToTm(const tagSYSTEMTIME* time, struct tm* broken);

/// Fills all of @p time from @p broken: milliseconds 0, each value cut to its low 16 bits and not
/// checked.
///
/// @param broken  the source; must not be null
/// @param time    must not be null
/// @return @p time
ZRCOMMON_API tagSYSTEMTIME* TmToSystemTime(const struct tm* broken, tagSYSTEMTIME* time);

}  // extern "C"

/// Gives the installation directory, "/usr/lib/Valdrix/Valdrix/", if it exists.
///
/// @param buffer  gets those 25 characters and the terminator; null: 0
/// @return 1; 0 if there is no such directory, with @p buffer untouched
ZRCOMMON_API int GetZrPath(char* buffer);

/// Gives the directory of the running executable, with its trailing slash, always terminated.
///
/// Only the first 260 characters of the executable's path are looked at: where the directory alone
/// takes more, the result is a directory further up.
///
/// @param buffer  at least 260 bytes; null: 0
/// @return 1; 0 if the path cannot be read or the result would not fit 260 bytes with its
///         terminator, with @p buffer untouched
ZRCOMMON_API int GetModulePath(char* buffer);

/// ZRCopyFile() with another end: on success the target's mode becomes 0777, whatever it was; a
/// target that could not be written whole is deleted.
///
/// @param source  path
/// @param target  path of another file: the source itself would be emptied
/// @return 1 copied; 0 not, also if a path is null
ZRCOMMON_API int CopyFile(const char* source, const char* target);

/// Runs the init script of a service through the system shell and waits for its end.
///
/// The script is /etc/init.d/rc.d/NAME if that exists, else /etc/init.d/NAME. It gets the caller's
/// user, environment and standard error; its standard output is thrown away. Its exit status is not
/// looked at: a service that will not start, or is not running when asked for its status, counts as
/// success.
///
/// @param serviceName  the script's bare name, without a slash and without what a shell interprets:
///                     space, tab, line feed and " $ & ' ( ) * ; < > ? [ \ ` { |. Must not be
///                     empty,
///                     "." or "..", and must not be null.
/// @param action       a ServiceAction
/// @param error        0; 120 there is no such script, or none can have that name; 121 the script
///                     exists but the action is none of these. Must not be null.
/// @return 1 the command was handed to the shell; 0 nothing was run
ZRCOMMON_API int HandleService(const char* serviceName, int action, unsigned int* error);

/// Gives the local time in the process's time zone, which is looked up anew (TZ) at every call.
///
/// @param time  all 16 bytes are filled; null: 0
/// @return 1; 0 if the system gives no time, with @p time untouched
/// @note Not thread-safe: goes through the C library's localtime(), whose result is one static
///       record, so that two threads may get each other's.
ZRCOMMON_API int GetLocalTime(tagSYSTEMTIME* time);

/// Does nothing and finds no process. Kept for the components that link against it.
///
/// @param processName  not looked at; may be null
/// @param processId    neither read nor written; may be null
/// @return always 0
ZRCOMMON_API int GetPid(char* processName, int* processId);

/// Reads the product's feature record, the first 11 bytes of
/// /usr/lib/Valdrix/Valdrix/zrfeature.dat.
///
/// @param feature  filled byte for byte from the file; a shorter file replaces as many bytes as it
///                 has and leaves the rest
/// @param error    0; 2 the file cannot be opened, whatever the reason; errno after a read error.
///                 For a file shorter than 11 bytes it is whatever errno held before the call,
///                 possibly 0: go by the result.
/// @return 1 read; 0 not. Also 0 if an argument is null, with neither touched.
ZRCOMMON_API int GetZRFeaturesSetting(tagZR_FEATURE* feature, unsigned int* error);

#endif  // ZRCOMMON_SYSTEM_H
