#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "base/copy_truncated.h"
#include "base/file.h"
#include "zrcommon/logging.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kMessageBytes = 4096;

bool isFiltered(unsigned int levelMask) {
  return (levelMask & g_dwCurrentTraceLevel__) == 0;
}

// Not inlined, so that a filtered message does not set up the buffer on the stack.
[[gnu::noinline]] void writeFormatted(CZRLogger& logger, const char* format, va_list arguments) {
  char message[kMessageBytes];
  (void)std::vsnprintf(message, sizeof message, format, arguments);
  logger.WriteToFile(message);
}

}  // namespace

CZRLogger::CZRLogger(const char* logFile, const char* appName, const char* component) {
  SetLogVariables(logFile, appName, component);
}

CZRLogger::CZRLogger(const char* component) {
  SetLogVariables(nullptr, nullptr, component);
}

void CZRLogger::SetLogVariables(const char* logFile, const char* appName, const char* component) {
  copyTruncated(m_szLogFileName, logFile ? logFile : g_szLogFileName__);
  copyTruncated(m_szAppName, appName ? appName : g_szAppName__);
  copyTruncated(m_szComponent, component ? component : "UNKNOWN");
}

void CZRLogger::WriteToLog(unsigned int levelMask, const char* format, ...) {
  if (!format || isFiltered(levelMask)) return;
  va_list arguments;
  va_start(arguments, format);
  writeFormatted(*this, format, arguments);
  va_end(arguments);
}

void CZRLogger::WriteToLog(unsigned int levelMask, unsigned int bufferSize, const char* format,
                           ...) {
  if (!format || bufferSize == 0 || isFiltered(levelMask)) return;
  const std::unique_ptr<char[]> message(new (std::nothrow) char[bufferSize]);
  if (!message) return;
  va_list arguments;
  va_start(arguments, format);
  (void)std::vsnprintf(message.get(), bufferSize, format, arguments);
  va_end(arguments);
  WriteToFile(message.get());
}

void CZRLogger::WriteToFile(const char* message) {
  if (!message) return;
  const int flags = exists(m_szLogFileName) ? O_RDWR : O_RDWR | O_CREAT;
  const Fd file(openFile(m_szLogFileName, flags, 0600));
  if (!file) return;
  // Kept: CZRLogger::WriteToFile() seeks to the end of the file and writes the parts of the line
  // with separate calls; it does not use append mode (test Robustness.EveryCallFails)
  (void)::lseek(file.get(), 0, SEEK_END);
  const std::size_t length = std::strlen(message);
  writeOnce(file.get(), m_szComponent, std::strlen(m_szComponent));
  writeOnce(file.get(), " ", 1);
  // Kept: CZRLogger::WriteToFile() writes no line ending after a message that was not written
  // whole; the next message then continues the same line (test Robustness.EveryCallFails)
  if (writeOnce(file.get(), message, length) == static_cast<ssize_t>(length))
    writeOnce(file.get(), "\r\n", 2);
}
