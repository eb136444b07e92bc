#include "support/child.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace {

// Output goes through memory files, so that neither side ever waits for the other.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& content = "") : fd_(::memfd_create("child", MFD_CLOEXEC)) {
    EXPECT_EQ(static_cast<ssize_t>(content.size()), ::write(fd_, content.data(), content.size()));
    ::lseek(fd_, 0, SEEK_SET);
  }
  ~MemoryFile() { ::close(fd_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  int get() const { return fd_; }
  std::string content() const {
    std::string text(static_cast<std::size_t>(::lseek(fd_, 0, SEEK_END)), '\0');
    EXPECT_EQ(static_cast<ssize_t>(text.size()), ::pread(fd_, text.data(), text.size(), 0));
    return text;
  }

 private:
  int fd_;
};

Outcome runWith(const std::string& input, const std::function<int()>& body) {
  const MemoryFile in(input);
  const MemoryFile out;
  const MemoryFile err;
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(in.get(), 0);
    ::dup2(out.get(), 1);
    ::dup2(err.get(), 2);
    const int result = body();
    std::fflush(nullptr);
    ::_exit(result);
  }
  int status = 0;
  EXPECT_EQ(child, ::waitpid(child, &status, 0));
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.content(),
          err.content()};
}

}  // namespace

Outcome run(const std::vector<std::string>& command, const std::string& input) {
  std::vector<char*> arguments;
  for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
  arguments.push_back(nullptr);
  return runWith(input, [&] {
    ::execvp(arguments[0], arguments.data());
    std::perror(arguments[0]);
    return 127;
  });
}

Outcome runForked(const std::function<int()>& body) {
  return runWith("", body);
}

void dropPrivileges() {
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  const __user_cap_data_struct none[2] = {};
  if (::syscall(SYS_capset, &header, none) != 0) std::abort();
}
