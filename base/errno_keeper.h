#ifndef ZRCOMMON_BASE_ERRNO_KEEPER_H
#define ZRCOMMON_BASE_ERRNO_KEEPER_H

#include <cerrno>

namespace zrcommon {

/// Gives errno back as it was, for clean-up: callers read errno through GetLastError(), and what
/// they want to know is why the call failed, not how its clean-up went.
class ErrnoKeeper {
 public:
  ErrnoKeeper() noexcept : saved_(errno) {}
  ~ErrnoKeeper() { errno = saved_; }
  ErrnoKeeper(const ErrnoKeeper&) = delete;
  ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;

 private:
  int saved_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_BASE_ERRNO_KEEPER_H
