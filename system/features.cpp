#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "base/file.h"
#include "base/install_path.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr InstallPath kFeatureFile("zrfeature.dat");
constexpr ssize_t kRecordBytes = sizeof(tagZR_FEATURE);
constexpr unsigned int kNoFile = 2;

int fail(unsigned int* error, unsigned int code) {
  *error = code;
  return 0;
}

}  // namespace

int GetZRFeaturesSetting(tagZR_FEATURE* feature, unsigned int* error) {
  if (!feature || !error) return 0;
  *error = 0;
  const Fd file(openFile(kFeatureFile.get(), O_RDONLY));
  // Kept: 2 for every reason, such as a permission, since callers know only the missing file (test
  // Features.Files)
  if (!file) return fail(error, kNoFile);
  // Kept: a short file fails with an errno that it did not set, and leaves what it had in the
  // record (test Features.Files)
  if (::read(file.get(), feature, sizeof *feature) != kRecordBytes)
    return fail(error, static_cast<unsigned int>(errno));
  return 1;
}
