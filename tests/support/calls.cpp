#include "support/calls.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

std::deque<std::string> datagrams;
std::string lastSent;
std::size_t lastReceiveBytes = 0;
const timeval* testClock = nullptr;
std::string testLink;
int allocationsUntilFailure = -1;

namespace {

Calls* watched = nullptr;
Fault fault;
Fault::Kind fateOf(const std::string& name) {
  if (!watched) return Fault::kNone;
  const std::size_t place = watched->names.size();
  watched->names.push_back(name);
  if (place == fault.place) {
    errno = fault.error;
    return fault.kind;
  }
  const bool fails = place > fault.place && fault.alsoFailing.find(name) != std::string::npos;
  if (fails) errno = EIO;
  return fails ? Fault::kFails : Fault::kNone;
}

template <typename... Arguments>
int pass(const std::string& name, long number, Arguments... arguments) {
  return fateOf(name) == Fault::kFails ? -1 : static_cast<int>(::syscall(number, arguments...));
}

template <typename Bytes>
long passBytes(const char* name, long number, int fd, Bytes* bytes, std::size_t count) {
  const Fault::Kind fate = fateOf(name);
  if (fate == Fault::kFails) return -1;
  if (fate == Fault::kWritesNothing) return 0;
  return ::syscall(number, fd, bytes, fate == Fault::kIsShort ? fault.bytes : count);
}

int counted(int descriptor) {
  if (watched && descriptor >= 0) ++watched->descriptorsLeft;
  return descriptor;
}

}  // namespace

std::string Calls::text() const {
  std::string words;
  for (const std::string& name : names) words += (words.empty() ? "" : " ") + name;
  return words;
}

Calls watch(const std::function<void()>& body, const Fault& wanted) {
  Calls calls;
  fault = wanted;
  watched = &calls;
  body();
  watched = nullptr;
  return calls;
}

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  constexpr const char* kNames[] = {"open-r", "open-w", "open-rw"};
  const std::string inherited = flags & O_CLOEXEC ? "" : " inherited";
  return counted(pass(kNames[flags & O_ACCMODE] + inherited, SYS_open, path, flags, mode));
}
int socket(int domain, int type, int protocol) noexcept {
  const char* const name = type & SOCK_CLOEXEC ? "socket" : "socket inherited";
  return counted(pass(name, SYS_socket, domain, type, protocol));
}
int close(int fd) {
  if (watched) --watched->descriptorsLeft;
  const int result = static_cast<int>(::syscall(SYS_close, fd));
  return fateOf("close") == Fault::kFails ? -1 : result;
}
ssize_t read(int fd, void* bytes, std::size_t count) {
  return passBytes("read", SYS_read, fd, bytes, count);
}
ssize_t write(int fd, const void* bytes, std::size_t count) {
  return passBytes("write", SYS_write, fd, bytes, count);
}
off_t lseek(int fd, off_t offset, int from) noexcept {
  return pass("lseek", SYS_lseek, fd, offset, from);
}
int access(const char* path, int kind) noexcept {
  return pass("access", SYS_access, path, kind);
}
int chmod(const char* path, mode_t mode) noexcept {
  return pass("chmod", SYS_chmod, path, mode);
}
int unlink(const char* path) noexcept {
  return pass("unlink", SYS_unlink, path);
}
int remove(const char* path) noexcept {
  const int result = pass("remove", SYS_unlink, path);
  return result < 0 && errno == EISDIR ? ::rmdir(path) : result;
}
int rename(const char* from, const char* to) noexcept {
  return pass("rename", SYS_rename, from, to);
}
ssize_t readlink(const char* path, char* text, std::size_t size) noexcept {
  if (testLink.empty()) return pass("readlink", SYS_readlink, path, text, size);
  return static_cast<ssize_t>(testLink.copy(text, size));
}
int bind(int fd, const sockaddr* address, socklen_t size) noexcept {
  return pass("bind", SYS_bind, fd, address, size);
}
ssize_t sendmsg(int fd, const msghdr* message, int flags) {
  lastSent.assign(static_cast<const char*>(message->msg_iov->iov_base), message->msg_iov->iov_len);
  return pass("sendmsg", SYS_sendmsg, fd, message, flags);
}
ssize_t recvmsg(int fd, msghdr* message, int flags) {
  lastReceiveBytes = message->msg_iov->iov_len;
  if (datagrams.empty()) return pass("recvmsg", SYS_recvmsg, fd, message, flags);
  const std::string datagram = datagrams.front();
  datagrams.pop_front();
  if (datagram == kReceiveFails) return -1;
  datagram.copy(static_cast<char*>(message->msg_iov->iov_base), lastReceiveBytes);
  return static_cast<ssize_t>(datagram.size());
}
int gettimeofday(timeval* now, void* zone) noexcept {
  if (!testClock) return pass("gettimeofday", SYS_gettimeofday, now, zone);
  *now = *testClock;
  return now->tv_usec < 0 ? -1 : 0;
}

#ifndef __SANITIZE_ADDRESS__  // which has allocation functions of its own
void* __libc_malloc(std::size_t size);

void* malloc(std::size_t size) {
  const bool fails = allocationsUntilFailure >= 0 && allocationsUntilFailure-- == 0;
  return fails ? nullptr : __libc_malloc(size);
}
#endif

}  // extern "C"
