#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>

#include "base/file.h"
#include "base/product_files.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr ssize_t kRecordBytes = sizeof(tagZR_FEATURE);

enum Code : unsigned int { kSuccess = 0, kNoFile = 2 };

}  // namespace

int GetZRFeaturesSetting(tagZR_FEATURE* feature, unsigned int* error) {
  if (!feature || !error) return 0;
  *error = kSuccess;
  // Not an Fd, whose closing keeps errno: the error is what errno holds after the close.
  const int file = openFile(kFeaturePath.get(), O_RDONLY);
  if (file < 0) {
    // Kept: GetZRFeaturesSetting() reports 2 whatever the reason for which the file cannot be
    // opened (test Features.Files)
    *error = kNoFile;
    return 0;
  }
  const bool isWhole = ::read(file, feature, sizeof *feature) == kRecordBytes;
  ::close(file);
  if (isWhole) return 1;
  // Kept: GetZRFeaturesSetting() reports errno for a file that is too short as well, which no call
  // sets then, and the record keeps the bytes that were read (test Features.Files)
  *error = static_cast<unsigned int>(errno);
  return 0;
}
