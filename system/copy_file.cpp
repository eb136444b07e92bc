#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>

#include "base/errno_keeper.h"
#include "base/file.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kChunkBytes = 1024;

enum class PartialTarget { kStays, kIsRemoved };

// Kept: ZRCopyFile() and CopyFile() take a read error for the end of the source and return 1 (test
// Robustness.EveryCallFails)
bool copyBytes(int source, int target) {
  char chunk[kChunkBytes];
  for (;;) {
    const ssize_t got = ::read(source, chunk, sizeof chunk);
    if (got <= 0) return true;
    if (writeOnce(target, chunk, static_cast<std::size_t>(got)) != got) return false;
  }
}

bool copy(const char* sourcePath, const char* targetPath, PartialTarget partialTarget) {
  if (!sourcePath || !targetPath) return false;
  const Fd source(openFile(sourcePath, O_RDONLY));
  if (!source) return false;
  {
    const Fd target(openFile(targetPath, O_RDWR | O_CREAT | O_TRUNC, 0600));
    if (!target) return false;
    if (copyBytes(source.get(), target.get())) return true;
  }
  const ErrnoKeeper keepsThatOfTheWrite;
  if (partialTarget == PartialTarget::kIsRemoved) (void)std::remove(targetPath);
  return false;
}

}  // namespace

// Kept: ZRCopyFile() leaves a partial target in place, CopyFile() removes it (test
// Copy.TheEndsDifferWhenTheTargetFillsUp)
int ZRCopyFile(const char* source, const char* target) {
  return copy(source, target, PartialTarget::kStays);
}

int CopyFile(const char* source, const char* target) {
  if (!copy(source, target, PartialTarget::kIsRemoved)) return 0;
  // Kept: CopyFile() gives the finished target mode 0777 (test Copy.CopiesEverySize)
  ::chmod(target, 0777);
  return 1;
}
