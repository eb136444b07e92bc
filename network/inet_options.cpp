#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "base/file.h"
#include "base/install_path.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

constexpr InstallPath kOptionsFile("zrinet.opt");
constexpr std::size_t kPathBytes = 256;
constexpr ssize_t kRecordBytes = sizeof(tagInetSettings);

enum Result : unsigned int { kBadArgument = 0, kDone = 1, kNoFile = 2 };
enum SaveResult : unsigned int { kShortWrite = 3 };
enum ReadResult : unsigned int { kUnreadable = 3, kShortRead = 4 };

bool isTooLong(const char* path) {
  return ::strnlen(path, kPathBytes) == kPathBytes;
}

int openForSaving(const char* path) {
  const int existing = openFile(path, O_RDWR);
  return existing >= 0 ? existing : openFile(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
}

// errno stays that of the write or read before it.
void shareWithAllUsers(const char* path) {
  const ErrnoKeeper keeper;
  ::chmod(path, 0666);
}

void discard(const char* path) {
  const ErrnoKeeper keeper;
  ::unlink(path);
}

}  // namespace

unsigned int SaveInetOptions(const char* path, tagInetSettings* settings) {
  if (!path || !settings) return kBadArgument;
  if (isTooLong(path)) return kNoFile;
  ssize_t written = 0;
  {
    const Fd file(openForSaving(path));
    if (!file) return kNoFile;
    written = writeOnce(file.get(), settings, sizeof *settings);
  }
  shareWithAllUsers(path);
  if (written == kRecordBytes) return kDone;
  discard(path);
  return kShortWrite;
}

unsigned int ReadInetOptions(const char* path, tagInetSettings* settings) {
  if (!path || !settings) return kBadArgument;
  if (isTooLong(path) || !exists(path)) return kNoFile;
  tagInetSettings staging;
  ssize_t got = 0;
  {
    const Fd file(openFile(path, O_RDONLY));
    if (!file) return kUnreadable;
    got = ::read(file.get(), &staging, sizeof staging);
  }
  // Kept: reading widens the mode too, so that the components of every user share the settings
  // (test InetOptions.EveryOpenWidensTheMode)
  shareWithAllUsers(path);
  if (got != kRecordBytes) return kShortRead;
  *settings = staging;
  return kDone;
}

unsigned int ZRGetInetConfig(tagZRINETCONFIG* config, unsigned int* error) {
  if (!config || !error) return 0;
  tagInetSettings settings = {};
  // Kept: a missing or damaged file means zeros and success, for which the internet library has
  // its defaults (test InetOptions.ConfigIsZerosWithoutAWholeFile)
  (void)ReadInetOptions(kOptionsFile.get(), &settings);
  std::memcpy(config, &settings, sizeof *config);
  return 1;
}
