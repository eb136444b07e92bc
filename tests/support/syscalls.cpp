#include "support/syscalls.h"

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <map>

namespace {

// No system call has this number; making it marks where the traced part begins and ends.
constexpr long kMarker = 100000;

std::string nameOf(long number) {
  static const std::map<long, std::string> names = {
      {SYS_access, "access"}, {SYS_openat, "open"},      {SYS_open, "open"},
      {SYS_creat, "open"},    {SYS_read, "read"},        {SYS_write, "write"},
      {SYS_lseek, "lseek"},   {SYS_close, "close"},      {SYS_chmod, "chmod"},
      {SYS_unlink, "unlink"}, {SYS_rename, "rename"},    {SYS_socket, "socket"},
      {SYS_bind, "bind"},     {SYS_sendmsg, "sendmsg"},  {SYS_recvmsg, "recvmsg"},
      {SYS_getpid, "getpid"}, {SYS_readlink, "readlink"}};
  const auto found = names.find(number);
  return found == names.end() ? std::to_string(number) : found->second;
}

[[noreturn]] void runTraced(const std::function<void()>& body) {
  ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  ::raise(SIGSTOP);
  ::syscall(kMarker);
  body();
  ::syscall(kMarker);
  ::_exit(0);
}

// Lets the child go on to its next entry into or return from a system call; false when it ended.
bool proceed(pid_t child) {
  int status = 0;
  ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
  ::waitpid(child, &status, 0);
  return WIFSTOPPED(status);
}

}  // namespace

std::string systemCallsOf(const std::function<void()>& body) {
  const pid_t child = ::fork();
  if (child == 0) runTraced(body);
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSTOPPED(status)) << "tracing is not allowed here";
  std::string calls;
  int markers = 0;
  while (proceed(child)) {
    user_regs_struct registers = {};
    ::ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    const long number = static_cast<long>(registers.orig_rax);
    if (number == kMarker)
      ++markers;
    else if (markers == 1)
      calls += (calls.empty() ? "" : " ") + nameOf(number);
    if (!proceed(child)) break;
  }
  EXPECT_EQ(2, markers);
  return calls;
}
