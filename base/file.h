#ifndef ZRCOMMON_BASE_FILE_H
#define ZRCOMMON_BASE_FILE_H

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>

#include "base/errno_keeper.h"

namespace zrcommon {

/// Owns one descriptor, or none. Closing keeps errno.
class Fd {
 public:
  explicit Fd(int fd) noexcept : fd_(fd) {}
  ~Fd() {
    if (fd_ < 0) return;
    const ErrnoKeeper keeper;
    ::close(fd_);
  }
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;

  explicit operator bool() const noexcept { return fd_ >= 0; }
  int get() const noexcept { return fd_; }

 private:
  int fd_;
};

/// open() with close-on-exec: a host may start a program while one of its threads is in this
/// library.
inline int openFile(const char* path, int flags, mode_t mode = 0) {
  return ::open(path, flags | O_CLOEXEC, mode);
}

/// One write() call, never repeated: a short count is one of the defined results. Unlike that of
/// write(), the result may be ignored.
inline ssize_t writeOnce(int fd, const void* bytes, std::size_t count) {
  return ::write(fd, bytes, count);
}

/// True if the path names something that exists, readable or not.
inline bool exists(const char* path) {
  return ::access(path, F_OK) == 0;
}

}  // namespace zrcommon

#endif  // ZRCOMMON_BASE_FILE_H
