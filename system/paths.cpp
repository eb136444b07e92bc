#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "base/file.h"
#include "base/install_path.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kPathBytes = 260;
constexpr std::size_t kProcPathBytes = sizeof "/proc/-2147483648/exe";

}  // namespace

int GetZrPath(char* buffer) {
  if (!buffer || !exists(kInstallDirectory)) return 0;
  std::memcpy(buffer, kInstallDirectory, sizeof kInstallDirectory);
  return 1;
}

// Kept: the link's text is not terminated and what the buffer held behind it counts as text, for
// callers zero the buffer and take what fits (test Paths.AppPathStaysInsideItsBuffer)
int GetAppPath(char* buffer, int bufferSize) {
  if (!buffer) return 0;
  const auto size = static_cast<std::size_t>(bufferSize);
  if (::readlink("/proc/self/exe", buffer, size) < 1) return 0;
  char* const end = buffer + size;
  auto* const slash = static_cast<char*>(::memrchr(buffer, '/', ::strnlen(buffer, size)));
  if (slash && slash + 1 < end) slash[1] = '\0';
  return 1;
}

// Kept: a longer path is cut to 260 bytes, which can give a directory further up; only what the
// caller's buffer would not hold is refused (test Paths.ModulePathCutsTheExecutablesPath)
int GetModulePath(char* buffer) {
  if (!buffer) return 0;
  char link[kProcPathBytes];
  (void)std::snprintf(link, sizeof link, "/proc/%d/exe", static_cast<int>(::getpid()));
  char path[kPathBytes + 1] = {};
  if (::readlink(link, path, kPathBytes) < 0) return 0;
  char* const slash = std::strrchr(path, '/');
  if (!slash || slash + 1 == path + kPathBytes) return 0;
  const auto length = static_cast<std::size_t>(slash + 1 - path);
  std::memcpy(buffer, path, length);
  buffer[length] = '\0';
  return 1;
}

int IsValidPath(const char* path) {
  return path && exists(path);
}
