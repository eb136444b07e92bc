#include <unistd.h>

#include <cstddef>
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

// Kept: GetAppPath() does not terminate the text of the link; what the buffer already holds after
// it counts as part of the path (test Paths.AppPathStaysInsideItsBuffer)
int GetAppPath(char* buffer, int bufferSize) {
  if (!buffer) return 0;
  const auto size = static_cast<std::size_t>(bufferSize);
  if (::readlink("/proc/self/exe", buffer, size) < 1) return 0;
  char* const end = buffer + size;
  auto* const slash = static_cast<char*>(::memrchr(buffer, '/', ::strnlen(buffer, size)));
  if (slash && slash + 1 < end) slash[1] = '\0';
  return 1;
}

// Kept: GetModulePath() truncates the path of the executable to 260 bytes; the result of a longer
// one can be a directory further up. It fails only if its result does not fit 260 bytes (test
// Paths.ModulePathCutsTheExecutablesPath)
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
