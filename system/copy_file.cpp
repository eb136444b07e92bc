#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "base/file.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kChunkBytes = 1024;

enum class Copied { kNothing, kPart, kAll };

// Kept: a read error ends the source as its end does, so that what can be read is saved (test
// Copy.NothingHappensWithoutBothFiles)
Copied copyBytes(int source, int target) {
  char chunk[kChunkBytes];
  for (;;) {
    const ssize_t got = ::read(source, chunk, sizeof chunk);
    if (got <= 0) return Copied::kAll;
    if (writeOnce(target, chunk, static_cast<std::size_t>(got)) != got) return Copied::kPart;
  }
}

Copied copy(const char* sourcePath, const char* targetPath) {
  if (!sourcePath || !targetPath) return Copied::kNothing;
  const Fd source(openFile(sourcePath, O_RDONLY));
  if (!source) return Copied::kNothing;
  const Fd target(openFile(targetPath, O_RDWR | O_CREAT | O_TRUNC, 0600));
  return target ? copyBytes(source.get(), target.get()) : Copied::kNothing;
}

// errno stays that of the write before it.
void discard(const char* path) {
  const ErrnoKeeper keeper;
  (void)std::remove(path);
}

}  // namespace

// Kept: a partial target stays, unlike CopyFile's, and components look at how far it came (test
// Copy.TheEndsDifferWhenTheTargetFillsUp)
int ZRCopyFile(const char* source, const char* target) {
  return copy(source, target) == Copied::kAll;
}

int CopyFile(const char* source, const char* target) {
  const Copied copied = copy(source, target);
  if (copied == Copied::kPart) discard(target);
  if (copied != Copied::kAll) return 0;
  // Kept: open to all users and executable, since components install modules and scripts with it
  // (test Copy.CopiesEverySize)
  ::chmod(target, 0777);
  return 1;
}
