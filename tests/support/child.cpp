#include "support/child.h"

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace {

// Output goes through memory files, so that neither side ever waits for the other.
int memoryFile(const std::string& content = "") {
  const int fd = ::memfd_create("child", MFD_CLOEXEC);
  EXPECT_EQ(static_cast<ssize_t>(content.size()), ::pwrite(fd, content.data(), content.size(), 0));
  return fd;
}

std::string closeAndRead(int fd) {
  std::string text(static_cast<std::size_t>(::lseek(fd, 0, SEEK_END)), '\0');
  EXPECT_EQ(static_cast<ssize_t>(text.size()), ::pread(fd, text.data(), text.size(), 0));
  ::close(fd);
  return text;
}

Outcome runWith(const std::string& input, const std::function<int()>& body) {
  const int streams[] = {memoryFile(input), memoryFile(), memoryFile()};
  const pid_t child = ::fork();
  if (child == 0) {
    for (int fd = 0; fd < 3; ++fd) ::dup2(streams[fd], fd);
    const int result = body();
    std::fflush(nullptr);
    ::_exit(result);
  }
  int status = 0;
  EXPECT_EQ(child, ::waitpid(child, &status, 0));
  ::close(streams[0]);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          closeAndRead(streams[1]), closeAndRead(streams[2])};
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

Outcome runTool(std::vector<std::string> arguments, const std::string& input) {
  arguments.insert(arguments.begin(), ZR_BUILD_DIR "/zrtool");
  return run(arguments, input);
}

Outcome runForked(const std::function<int()>& body) {
  return runWith("", body);
}

void dropPrivileges() {
  __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
  const __user_cap_data_struct none[2] = {};
  if (::syscall(SYS_capset, &header, none) != 0) std::abort();
}
