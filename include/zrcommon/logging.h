#ifndef ZRCOMMON_LOGGING_H
#define ZRCOMMON_LOGGING_H

#include <zrcommon/export.h>

/// @file
/// Logging: component-tagged lines appended to log files, and the last system error.
///
/// Every call opens, writes and closes its file; nothing stays open and nothing is buffered. No
/// line carries a time stamp or a level, and no file is ever truncated or rotated. All failures
/// are silent; errno (GetLastError()) is as the failing system call left it.
///
/// Threads: there are no locks. Lines written to one file at the same moment can interleave.

extern "C" {

/// The trace mask, 3 at first. A message of CZRLogger is written only if its level mask shares a
/// bit with it. The host may change it at any time; the next call obeys.
extern ZRCOMMON_API unsigned int g_dwCurrentTraceLevel__;

/// The log file a CZRLogger takes when it is given none; at first "/zrcommon.log". Host-owned once
/// the host sets it; null stands for an empty path, to which nothing can be written.
extern ZRCOMMON_API const char* g_szLogFileName__;

/// The application name a CZRLogger takes when it is given none; at first "zrcommon".
extern ZRCOMMON_API const char* g_szAppName__;

/// Log directory for host components to share, zero-filled. The library never touches it.
extern ZRCOMMON_API char g_szLogPath[1024];

/// The buffer in which the library formats a failure text before it logs it (ZRLoadLibrary does).
/// Shared by the whole process and not locked.
extern ZRCOMMON_API char szErrMsg[2048];

/// Appends @p text and a line feed to the file @p path.
///
/// A missing file is created; an existing one is opened for appending, and text and line feed are
/// one write each. Afterwards the file has mode 0666 whatever the umask and whatever mode it had,
/// so that components of every user can go on with the same log.
///
/// @param path  used as given; null: nothing happens
/// @param text  zero-terminated, of any length; null: nothing happens
ZRCOMMON_API void WriteToLog(const char* path, const char* text);

/// Tells why the last service without an error argument failed.
///
/// @return the calling thread's errno; it means nothing after a success
ZRCOMMON_API unsigned int GetLastError();

}  // extern "C"

/// Appends lines of the form "component message\r\n" to one log file.
///
/// A plain value: 780 bytes, three names, no resources; copy it freely.
class ZRCOMMON_API CZRLogger {
 public:
  /// A logger on the file and the names that SetLogVariables() takes.
  ///
  /// @param logFile    path; null: g_szLogFileName__
  /// @param appName    null: g_szAppName__
  /// @param component  null: "UNKNOWN"
  CZRLogger(const char* logFile, const char* appName, const char* component);

  /// A logger on the default file and application name.
  ///
  /// @param component  null: "UNKNOWN"
  CZRLogger(const char* component);

  /// Names the file, the application and the component; may be called again at any time.
  /// Copies the names, each cut at 259 bytes.
  ///
  /// @param logFile    path, used as given; null: the text g_szLogFileName__ points to
  /// @param appName    kept, but written nowhere; null: the text g_szAppName__ points to
  /// @param component  starts every line; null: "UNKNOWN"
  void SetLogVariables(const char* logFile, const char* appName, const char* component);

  /// Formats a message as printf does and appends it as one line, if @p levelMask shares a bit
  /// with g_dwCurrentTraceLevel__. A filtered message costs one comparison. The text is truncated
  /// to 4095 bytes. The library is compiled with _FORTIFY_SOURCE: a format with "%n" in writable
  /// memory ends the process.
  ///
  /// @param levelMask  bits of the caller's choosing
  /// @param format     as printf takes it, with its arguments behind it; null: nothing happens
  void WriteToLog(unsigned int levelMask, const char* format, ...)
      __attribute__((format(printf, 3, 4)));

  /// The same for longer messages: the text is cut at @p bufferSize - 1 bytes. The buffer comes
  /// from the heap for this one call; where there is no memory nothing is written.
  ///
  /// @param levelMask   bits of the caller's choosing
  /// @param bufferSize  bytes, terminator included; 0: nothing happens
  /// @param format      as printf takes it, with its arguments behind it; null: nothing happens
  void WriteToLog(unsigned int levelMask, unsigned int bufferSize, const char* format, ...)
      __attribute__((format(printf, 4, 5)));

  /// Appends the component, a space, @p message, a carriage return and a line feed, unfiltered.
  ///
  /// A missing file is created with mode 0600 (less the umask); the mode of an existing one stays.
  /// The line is written in four pieces at the end that the file had when it was opened. If the
  /// message could not be written whole, the line is left without its ending.
  ///
  /// @param message  null: nothing happens
  void WriteToFile(const char* message);

 private:
  char m_szLogFileName[260];
  char m_szAppName[260];
  char m_szComponent[260];
};

static_assert(sizeof(CZRLogger) == 780, "components embed loggers by value");

#endif  // ZRCOMMON_LOGGING_H
