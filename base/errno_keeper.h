#ifndef ZRCOMMON_BASE_ERRNO_KEEPER_H
#define ZRCOMMON_BASE_ERRNO_KEEPER_H

#include <cerrno>

namespace zrcommon {

/// Restores errno when it goes out of scope. Used around clean-up, so that errno, which callers
/// read through GetLastError(), still tells why the call itself failed.
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
