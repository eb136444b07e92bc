#include "support/calls.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

std::deque<std::string> datagrams;
const std::string kReceiveFails = "receive fails";
std::string lastSent;
std::size_t lastReceiveBytes = 0;
const Clock* testClock = nullptr;
std::string testLink;

namespace {

Calls* watched = nullptr;
Fault fault;
int allocationsUntilFailure = -1;

Fault::Kind fateOf(const char* name) {
  if (!watched) return Fault::kNone;
  const std::size_t place = watched->names.size();
  watched->names.emplace_back(name);
  if (fault.kind != Fault::kNone && place == fault.place) {
    errno = fault.kind == Fault::kFails ? fault.error : errno;
    return fault.kind;
  }
  const bool alsoFails = place > fault.place && fault.alsoFailing.find(name) != std::string::npos;
  if (alsoFails) errno = EIO;
  return alsoFails ? Fault::kFails : Fault::kNone;
}

// Makes the call for @p count bytes, or what becomes of it.
template <typename Call>
long passBytes(const char* name, std::size_t count, Call call) {
  switch (fateOf(name)) {
    case Fault::kFails:
      return -1;
    case Fault::kWritesNothing:
      return 0;
    case Fault::kEndsTheProcess:
      ::_exit(0);
    case Fault::kIsShort:
      return call(std::min(count, fault.bytes));
    default:
      return call(count);
  }
}

template <typename... Arguments>
int pass(const char* name, long number, Arguments... arguments) {
  const auto call = [&](std::size_t) { return ::syscall(number, arguments...); };
  return static_cast<int>(passBytes(name, 0, call));
}

int counted(int descriptor) {
  if (watched && descriptor >= 0) ++watched->descriptorsLeft;
  return descriptor;
}

bool isAllocationFailing() {
  return allocationsUntilFailure >= 0 && allocationsUntilFailure-- == 0;
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

bool runShortOfMemory(int allocation, const std::function<void()>& body) {
  allocationsUntilFailure = allocation;
  body();
  const bool wasReached = allocationsUntilFailure < 0;
  allocationsUntilFailure = -1;
  return wasReached;
}

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  constexpr const char* kNames[] = {"open-r", "open-w", "open-rw"};
  std::string name = kNames[flags & O_ACCMODE];
  if (!(flags & O_CLOEXEC)) name += " inherited";
  return counted(pass(name.c_str(), SYS_open, path, flags, mode));
}
int socket(int domain, int type, int protocol) noexcept {
  const char* const name = type & SOCK_CLOEXEC ? "socket" : "socket inherited";
  return counted(pass(name, SYS_socket, domain, type, protocol));
}
int close(int fd) {
  if (watched) --watched->descriptorsLeft;
  const long result = ::syscall(SYS_close, fd);
  return static_cast<int>(passBytes("close", 0, [=](std::size_t) { return result; }));
}
ssize_t read(int fd, void* bytes, std::size_t count) {
  return passBytes("read", count,
                   [=](std::size_t most) { return ::syscall(SYS_read, fd, bytes, most); });
}
ssize_t write(int fd, const void* bytes, std::size_t count) {
  return passBytes("write", count,
                   [=](std::size_t most) { return ::syscall(SYS_write, fd, bytes, most); });
}
off_t lseek(int fd, off_t offset, int from) noexcept {
  return passBytes("lseek", 0, [=](std::size_t) { return ::syscall(SYS_lseek, fd, offset, from); });
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
// What follows a scripted datagram in the buffer is the rest of the one before.
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
  if (!testClock) return static_cast<int>(::syscall(SYS_gettimeofday, now, zone));
  *now = testClock->now;
  return testClock->result;
}

// A sanitizer has allocation functions of its own.
#ifndef __SANITIZE_ADDRESS__
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size) {
  return isAllocationFailing() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  return isAllocationFailing() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
  return isAllocationFailing() ? nullptr : __libc_realloc(memory, size);
}
#endif

}  // extern "C"
