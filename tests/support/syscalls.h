#ifndef ZRCOMMON_TESTS_SUPPORT_SYSCALLS_H
#define ZRCOMMON_TESTS_SUPPORT_SYSCALLS_H

#include <functional>
#include <string>

/// The system calls that @p body makes, in order, as words between blanks: "openat read close".
/// Runs it in a traced child; a call without a name here appears as its number.
std::string systemCallsOf(const std::function<void()>& body);

#endif  // ZRCOMMON_TESTS_SUPPORT_SYSCALLS_H
