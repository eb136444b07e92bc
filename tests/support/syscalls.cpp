#include "support/syscalls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace {

// No system call has this number; making it marks where the traced part begins and ends.
constexpr long kMarker = 100000;
constexpr unsigned int kPatience = 3;
constexpr int kSystemCallStop = SIGTRAP | 0x80;

std::string nameOf(long number) {
  static const std::map<long, std::string> names = {
      {SYS_access, "access"},     {SYS_openat, "open"},         {SYS_open, "open"},
      {SYS_creat, "open"},        {SYS_read, "read"},           {SYS_write, "write"},
      {SYS_lseek, "lseek"},       {SYS_close, "close"},         {SYS_chmod, "chmod"},
      {SYS_unlink, "unlink"},     {SYS_rename, "rename"},       {SYS_socket, "socket"},
      {SYS_bind, "bind"},         {SYS_sendmsg, "sendmsg"},     {SYS_recvmsg, "recvmsg"},
      {SYS_getpid, "getpid"},     {SYS_readlink, "readlink"},   {SYS_mmap, "mmap"},
      {SYS_mprotect, "mprotect"}, {SYS_munmap, "munmap"},       {SYS_brk, "brk"},
      {SYS_fstat, "stat"},        {SYS_newfstatat, "stat"},     {SYS_pread64, "read"},
      {SYS_clone, "clone"},       {SYS_clone3, "clone"},        {SYS_vfork, "clone"},
      {SYS_wait4, "wait"},        {SYS_rt_sigaction, "signal"}, {SYS_rt_sigprocmask, "signal"},
      {SYS_futex, "futex"},       {SYS_getrandom, "getrandom"}};
  const auto found = names.find(number);
  return found == names.end() ? std::to_string(number) : found->second;
}

// True for a descriptor that programs started by the host would get too.
bool isInherited(const user_regs_struct& call) {
  if (call.orig_rax == SYS_openat) return !(call.rdx & O_CLOEXEC);
  return call.orig_rax == SYS_socket && !(call.rsi & SOCK_CLOEXEC);
}

// The address sanitizer maps memory when it likes.
bool isUnseen(long number) {
#ifdef __SANITIZE_ADDRESS__
  return number == SYS_mmap || number == SYS_munmap || number == SYS_madvise;
#else
  return number == kMarker;
#endif
}

[[noreturn]] void runTraced(const std::function<void()>& body) {
  ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  ::raise(SIGSTOP);
  ::alarm(kPatience);
  ::syscall(kMarker);
  body();
  ::syscall(kMarker);
  ::_exit(0);
}

class Child {
 public:
  explicit Child(const std::function<void()>& body) : pid_(::fork()) {
    if (pid_ == 0) runTraced(body);
    ::waitpid(pid_, &status_, 0);
    EXPECT_TRUE(WIFSTOPPED(status_)) << "tracing is not allowed here";
    ::ptrace(PTRACE_SETOPTIONS, pid_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  }

  // Lets the child go on to its next entry into or return from a system call; false when it ended.
  bool proceed() {
    long signal = 0;
    do {
      ::ptrace(PTRACE_SYSCALL, pid_, nullptr, signal);
      ::waitpid(pid_, &status_, 0);
      signal = WIFSTOPPED(status_) ? WSTOPSIG(status_) : 0;
    } while (signal != 0 && signal != kSystemCallStop);
    return signal != 0;
  }

  user_regs_struct registers() const {
    user_regs_struct registers = {};
    ::ptrace(PTRACE_GETREGS, pid_, nullptr, &registers);
    return registers;
  }

  // Makes the call at whose entry the child stands, with the fault; false when the child ended.
  bool makeCall(const Fault& fault) {
    user_regs_struct entry = registers();
    const bool isMade = fault.kind == Fault::kShort || entry.orig_rax == SYS_close;
    if (fault.kind == Fault::kKills) ::kill(pid_, SIGKILL);
    if (fault.kind == Fault::kShort && entry.rdx > 1) entry.rdx = 1;
    if (!isMade) entry.orig_rax = static_cast<unsigned long long>(-1);
    ::ptrace(PTRACE_SETREGS, pid_, nullptr, &entry);
    if (!proceed()) return false;
    if (fault.kind == Fault::kShort) return true;
    user_regs_struct result = registers();
    result.rax = static_cast<unsigned long long>(-fault.error);
    ::ptrace(PTRACE_SETREGS, pid_, nullptr, &result);
    return true;
  }

  int countDescriptors() const {
    const std::filesystem::directory_iterator open("/proc/" + std::to_string(pid_) + "/fd");
    return static_cast<int>(std::distance(begin(open), end(open)));
  }

  int signal() const { return WIFSIGNALED(status_) ? WTERMSIG(status_) : 0; }

 private:
  pid_t pid_;
  int status_ = 0;
};

}  // namespace

Trace trace(const std::function<void()>& body, const Faults& faults) {
  Child child(body);
  Trace seen;
  int markers = 0;
  int openBefore = 0;
  while (child.proceed()) {
    const user_regs_struct call = child.registers();
    const long number = static_cast<long>(call.orig_rax);
    if (number == kMarker) {
      const int open = child.countDescriptors();
      seen.descriptorsLeft = markers == 0 ? 0 : open - openBefore;
      openBefore = open;
      ++markers;
    } else if (markers == 1 && !isUnseen(number)) {
      const auto fault = faults.find(seen.calls.size());
      seen.calls.push_back(nameOf(number) + (isInherited(call) ? " inherited" : ""));
      if (fault != faults.end() && child.makeCall(fault->second)) continue;
      if (fault != faults.end()) break;
    }
    if (!child.proceed()) break;
  }
  seen.signal = child.signal();
  EXPECT_TRUE(markers == 2 || seen.signal != 0);
  return seen;
}

std::string systemCallsOf(const std::function<void()>& body) {
  std::string words;
  for (const std::string& call : trace(body).calls) words += (words.empty() ? "" : " ") + call;
  return words;
}
