#ifndef ZRCOMMON_TESTS_SUPPORT_CALLS_H
#define ZRCOMMON_TESTS_SUPPORT_CALLS_H

#include <sys/time.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

/// Stands between the library and the C library: open(), read() and the others that this program
/// defines are the ones that the library finds.

/// What happens to one of the calls that the library makes.
struct Fault {
  enum Kind { kNone, kFails, kIsShort, kWritesNothing } kind = kNone;
  std::size_t place = 0;         ///< of the call; 0 is the first
  int error = 0;                 ///< errno of a call that fails; a close happens all the same
  std::string alsoFailing = {};  ///< later calls of these names fail too, with EIO
  std::size_t bytes = 1;         ///< for how many a short call is made
};

/// The calls that were made: "open-r", "read", "close". An open or a socket says where programs
/// that the host starts would inherit the descriptor: "open-r inherited".
struct Calls {
  std::vector<std::string> names;
  int descriptorsLeft = 0;  ///< opened and not closed

  std::string text() const;
};

Calls watch(const std::function<void()>& body, const Fault& fault = {});

/// What recvmsg() gives next instead of asking the kernel; kReceiveFails stands for a failure.
extern std::deque<std::string> datagrams;
inline const std::string kReceiveFails = "receive fails";

extern std::string lastSent;          ///< by sendmsg()
extern std::size_t lastReceiveBytes;  ///< the size of recvmsg()'s buffer
extern const timeval* testClock;  ///< what gettimeofday() gives, if not null; a tv_usec of -1 fails
extern std::string testLink;      ///< what readlink() gives, if not empty
extern int allocationsUntilFailure;  ///< how many succeed before one fails; negative: none fails

#endif  // ZRCOMMON_TESTS_SUPPORT_CALLS_H
