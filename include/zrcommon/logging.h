#ifndef ZRCOMMON_LOGGING_H
#define ZRCOMMON_LOGGING_H

#include <zrcommon/export.h>

/// @file
/// Logging: component-tagged lines appended to log files, and the last system error.
///
/// Every call opens, writes and closes its file; nothing stays open and nothing is buffered. Lines
/// have no time stamp and no level, and files are never truncated or rotated. All failures are
/// silent; errno (GetLastError()) is as the failing system call left it.
///
/// Threads: there are no locks. Lines written to one file at the same moment can interleave.

extern "C" {

/// The trace mask, initially 3. CZRLogger writes a message only if its level mask shares a bit with
/// the trace mask. The host may change it at any time; the change applies to the next call.
extern ZRCOMMON_API unsigned int g_dwCurrentTraceLevel__;

/// The log file of a CZRLogger that is given none; initially "/zrcommon.log". The text that the
/// host sets stays the host's. Null counts as an empty path, to which nothing can be written.
extern ZRCOMMON_API const char* g_szLogFileName__;

/// The application name of a CZRLogger that is given none; initially "zrcommon".
extern ZRCOMMON_API const char* g_szAppName__;

/// A log directory that host components can share; initially zeros. The library never uses it.
extern ZRCOMMON_API char g_szLogPath[1024];

/// The buffer in which the library formats a failure text before it logs it, as ZRLoadLibrary()
/// does. Shared by the whole process and not locked.
extern ZRCOMMON_API char szErrMsg[2048];

/// Appends @p text and a line feed to the file @p path.
///
/// A missing file is created; an existing one is opened in append mode. The text and the line feed
/// are one write each. Afterwards the file has mode 0666, whatever the umask and its previous mode.
///
/// @param path  used as given; if null, nothing happens
/// @param text  zero-terminated, of any length; if null, nothing happens
ZRCOMMON_API void WriteToLog(const char* path, const char* text);

/// Tells why the last failed call of a function without an error argument failed.
///
/// @return the calling thread's errno; meaningless after a success
ZRCOMMON_API unsigned int GetLastError();

}  // extern "C"

/// Appends lines of the form "component message\r\n" to one log file.
///
/// A plain value of 780 bytes: three names and no resources. It may be copied freely.
class ZRCOMMON_API CZRLogger {
 public:
  /// Makes a logger with the arguments of SetLogVariables().
  ///
  /// @param logFile    path; null means g_szLogFileName__
  /// @param appName    null means g_szAppName__
  /// @param component  null means "UNKNOWN"
  CZRLogger(const char* logFile, const char* appName, const char* component);

  /// Makes a logger with the default file and application name.
  ///
  /// @param component  null means "UNKNOWN"
  CZRLogger(const char* component);

  /// Sets the file, the application name and the component name; may be called again at any time.
  /// Copies the texts, each truncated to 259 bytes.
  ///
  /// @param logFile    path, used as given; null means the text that g_szLogFileName__ points to
  /// @param appName    stored, but never written; null means the text that g_szAppName__ points to
  /// @param component  starts every line; null means "UNKNOWN"
  void SetLogVariables(const char* logFile, const char* appName, const char* component);

  /// Formats a message as printf does and appends it as one line, if @p levelMask shares a bit
  /// with g_dwCurrentTraceLevel__. A filtered message costs one comparison. The text is truncated
  /// to 4095 bytes. The library is compiled with _FORTIFY_SOURCE: a format with "%n" in writable
  /// memory ends the process.
  ///
  /// @param levelMask  bits that the caller chooses
  /// @param format     as for printf, followed by its arguments; if null, nothing happens
  void WriteToLog(unsigned int levelMask, const char* format, ...)
      __attribute__((format(printf, 3, 4)));

  /// Does the same for longer messages: the text is truncated to @p bufferSize - 1 bytes. The
  /// buffer is allocated for this one call; if there is no memory, nothing is written.
  ///
  /// @param levelMask   bits that the caller chooses
  /// @param bufferSize  in bytes, terminator included; if 0, nothing happens
  /// @param format      as for printf, followed by its arguments; if null, nothing happens
  void WriteToLog(unsigned int levelMask, unsigned int bufferSize, const char* format, ...)
      __attribute__((format(printf, 4, 5)));

  /// Appends the component, a space, @p message, a carriage return and a line feed, whatever the
  /// trace mask.
  ///
  /// A missing file is created with mode 0600 (less the umask); the mode of an existing file stays.
  /// The call seeks to the end of the file and writes the parts of the line one after the other. If
  /// the message could not be written whole, the carriage return and the line feed are not written.
  ///
  /// @param message  if null, nothing happens
  void WriteToFile(const char* message);

 private:
  char m_szLogFileName[260];
  char m_szAppName[260];
  char m_szComponent[260];
};

static_assert(sizeof(CZRLogger) == 780, "components embed loggers by value");

#endif  // ZRCOMMON_LOGGING_H
