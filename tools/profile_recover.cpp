#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "tools/input.h"
#include "tools/profile_views.h"

namespace {

// False if nothing has this name, throws if that cannot be known or it is no regular file.
bool isThere(const std::string& path) {
  struct stat status = {};
  if (::lstat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) throw systemRefusal(path);
    return false;
  }
  (void)InputFile(path);
  return true;
}

// The writer removes the profile only when the copy is done, so a profile that is there is the old
// one.
void keep(const std::string& file, const std::string& copy, bool discard, Output& out) {
  const std::string state = file + " is as it was before an interrupted change; " + copy;
  if (!discard) throw Refusal(state + ", what that change left, may be a part only (--discard)");
  if (std::remove(copy.c_str()) != 0) throw systemRefusal(copy);
  out.result({{"file", file}, {"state", "discarded"}}, state + " is removed");
}

// An empty copy comes from a machine that went down, not from a writer that was ended.
void finish(const std::string& file, const std::string& copy, Output& out) {
  if (InputFile(copy).status().st_size == 0)
    throw Refusal(file + " is missing, and " + copy + " is empty");
  if (::renameat2(AT_FDCWD, copy.c_str(), AT_FDCWD, file.c_str(), RENAME_NOREPLACE) != 0)
    throw systemRefusal("renaming " + copy);
  out.result({{"file", file}, {"state", "restored"}},
             file + " was missing; " + copy +
                 " took its place. Look at its end: a disk that was full or a machine that went "
                 "down may have truncated it.");
}

}  // namespace

void recoverProfile(const std::string& file, bool discard, Output& out) {
  const std::string copy = file + ".tmp";
  const bool isProfileThere = isThere(file);
  const bool isCopyThere = isThere(copy);
  if (!isProfileThere && !isCopyThere) throw Refusal(file + " and " + copy + " are both missing");
  if (!isProfileThere) return finish(file, copy, out);
  if (isCopyThere) return keep(file, copy, discard, out);
  out.result({{"file", file}, {"state", "clean"}}, file + ": no change was interrupted");
}
