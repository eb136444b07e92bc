#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

#include "tools/commands.h"
#include "tools/profile.h"

namespace {

struct Entry {
  explicit Entry(const std::string& path) : isThere(::lstat(path.c_str(), &status) == 0) {}
  bool isFile() const { return isThere && S_ISREG(status.st_mode); }

  struct stat status = {};
  bool isThere;
};

void require(bool isDone, const std::string& what) {
  if (!isDone) throw Refusal(what + ": " + std::strerror(errno));
}

// The profile goes before its copy does, so while it is there it is whole, and the copy need not
// be.
void keep(const std::string& file, const std::string& copy, const Entry& left, bool discard) {
  const std::string state = file + " is whole, as it was before an interrupted change; " + copy;
  if (!left.isFile()) throw Refusal(state + " is no regular file and stays");
  if (!discard) throw Refusal(state + ", what that change left, may be a part only (--discard)");
  require(std::remove(copy.c_str()) == 0, copy);
  std::cout << file << " is whole; " << copy << " is removed\n";
}

// An empty copy comes of a machine that went down, not of a writer that was ended.
void finish(const std::string& file, const std::string& copy, const Entry& left) {
  if (!left.isFile()) throw Refusal(file + " is missing, and " + copy + " is no regular file");
  if (left.status.st_size == 0) throw Refusal(file + " is missing, and " + copy + " is empty");
  require(::renameat2(AT_FDCWD, copy.c_str(), AT_FDCWD, file.c_str(), RENAME_NOREPLACE) == 0,
          "renaming " + copy);
  std::cout << file << " was missing; " << copy << ", which was whole, took its place\n";
}

}  // namespace

void recoverProfile(const std::string& file, bool discard) {
  const std::string copy = file + ".tmp";
  const Entry profile(file);
  const Entry left(copy);
  if (!profile.isThere && !left.isThere) throw Refusal(file + " and " + copy + " are both missing");
  if (!profile.isThere) return finish(file, copy, left);
  if (left.isThere) return keep(file, copy, left, discard);
  std::cout << file << " is whole, and no change of it was interrupted\n";
}
