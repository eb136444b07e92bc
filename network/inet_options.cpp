#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

#include "base/errno_keeper.h"
#include "base/file.h"
#include "base/product_files.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kPathBytes = 256;
constexpr ssize_t kRecordBytes = sizeof(tagInetSettings);

enum Result : unsigned int { kBadArgument = 0, kSuccess = 1, kNoFile = 2 };
enum SaveResult : unsigned int { kShortWrite = 3 };
enum ReadResult : unsigned int { kUnreadable = 3, kShortRead = 4 };

bool isTooLong(const char* path) {
  return ::strnlen(path, kPathBytes) == kPathBytes;
}

int openForSaving(const char* path) {
  const int existing = openFile(path, O_RDWR);
  return existing >= 0 ? existing : openFile(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
}

void shareWithAllUsers(const char* path) {
  ::chmod(path, 0666);
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
  const ErrnoKeeper keepsThatOfTheWrite;
  shareWithAllUsers(path);
  if (written == kRecordBytes) return kSuccess;
  ::unlink(path);
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
  const ErrnoKeeper keepsThatOfTheRead;
  // Kept: ReadInetOptions() gives every file that it could open mode 0666, as SaveInetOptions()
  // does (test InetOptions.EveryOpenWidensTheMode)
  shareWithAllUsers(path);
  if (got != kRecordBytes) return kShortRead;
  *settings = staging;
  return kSuccess;
}

unsigned int ZRGetInetConfig(tagZRINETCONFIG* config, unsigned int* error) {
  if (!config || !error) return 0;
  tagInetSettings settings = {};
  // Kept: ZRGetInetConfig() returns 1 and zeros if the options file is missing or cannot be read
  // whole (test InetOptions.ConfigIsZerosWithoutAWholeFile)
  (void)ReadInetOptions(kInetOptionsPath.get(), &settings);
  std::memcpy(config, &settings, sizeof *config);
  return 1;
}
