#ifndef ZRCOMMON_TESTS_SUPPORT_SYSCALLS_H
#define ZRCOMMON_TESTS_SUPPORT_SYSCALLS_H

#include <functional>
#include <map>
#include <string>
#include <vector>

/// What befalls a system call of a traced child.
struct Fault {
  /// kFails: it is not made, and gives @p error (a close is made, as the kernel's is even then).
  /// kShort: it is asked for one byte only. kKills: the child ends instead of making it.
  enum Kind { kFails, kShort, kKills } kind = kFails;
  int error = 0;
};

/// Faults by the number of the call, from 0 on.
using Faults = std::map<std::size_t, Fault>;

/// How a traced child fared.
struct Trace {
  std::vector<std::string> calls;  ///< "open", "read"; a call without a name here as its number,
                                   ///< one that leaves its descriptor to others as "open inherited"
  int signal = 0;                  ///< what ended it, if it did not end by itself
  int descriptorsLeft = 0;         ///< opened and not closed
};

/// Runs @p body in a traced child, with faults. A child that still waits after three seconds is
/// ended by SIGALRM.
Trace trace(const std::function<void()>& body, const Faults& faults = {});

/// The system calls that @p body makes, in order, as words between blanks: "open read close".
std::string systemCallsOf(const std::function<void()>& body);

#endif  // ZRCOMMON_TESTS_SUPPORT_SYSCALLS_H
