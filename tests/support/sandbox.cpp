#include "support/sandbox.h"

#include <dirent.h>
#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

namespace {

constexpr char kInside[] = "ZRCOMMON_SANDBOX";
const std::string kRoot = "/mnt";
const std::string kHost = "/host";

[[noreturn]] void refuse(const std::string& what) {
  std::fprintf(stderr,
               "sandbox: %s: %s\n"
               "The tests need unprivileged user namespaces. Allow them with\n"
               "  sysctl kernel.unprivileged_userns_clone=1   (where this setting exists)\n"
               "  sysctl user.max_user_namespaces=10000\n"
               "and, in a container, permit unshare and mount.\n",
               what.c_str(), std::strerror(errno));
  std::exit(3);
}

void require(bool ok, const std::string& what) {
  if (!ok) refuse(what);
}

void writeTo(const char* path, const std::string& text) {
  const int fd = ::open(path, O_WRONLY | O_CLOEXEC);
  require(fd >= 0 && ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
          std::string("writing ") + path);
  ::close(fd);
}

void enterNamespaces() {
  const std::string user = std::to_string(::getuid());
  const std::string group = std::to_string(::getgid());
  require(::unshare(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWNET) == 0, "unshare");
  writeTo("/proc/self/setgroups", "deny");
  writeTo("/proc/self/uid_map", "0 " + user + " 1");
  writeTo("/proc/self/gid_map", "0 " + group + " 1");
}

void bindMount(const std::string& from, const std::string& to, unsigned long flags) {
  require(::mount(from.c_str(), to.c_str(), nullptr, MS_BIND | flags, nullptr) == 0,
          "binding " + from);
}

void makeDirectory(const std::string& path) {
  require(::mkdir((kRoot + path).c_str(), 0755) == 0, "making " + path);
}

bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
  for (const char* each : names)
    if (name == each) return true;
  return false;
}

// Makes the directory in the new root and fills it with links to the machine's entries, but for
// those that the sandbox has of its own.
void mirror(const std::string& directory, std::initializer_list<const char*> ownEntries) {
  const std::string source = kRoot + kHost + directory;
  DIR* entries = ::opendir(source.c_str());
  require(entries != nullptr, "listing " + directory);
  while (const dirent* entry = ::readdir(entries)) {
    const std::string name = entry->d_name;
    if (name == "." || name == ".." || isOneOf(name, ownEntries)) continue;
    char target[4096] = {};
    const std::string link = kRoot + directory + name;
    if (entry->d_type != DT_LNK ||
        ::readlink((source + name).c_str(), target, sizeof target - 1) < 0)
      std::snprintf(target, sizeof target, "%s", (kHost + directory + name).c_str());
    require(::symlink(target, link.c_str()) == 0, "linking " + directory + name);
  }
  ::closedir(entries);
}

// A device of the machine, read-only as a file: several operations chmod or delete what they are
// pointed at, and a run by root must not reach the machine's own node.
void lendDevice(const std::string& path) {
  const std::string inside = kRoot + path;
  const int fd = ::open(inside.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  require(fd >= 0, "making " + path);
  ::close(fd);
  bindMount(kRoot + kHost + path, inside, 0);
  struct statvfs status = {};
  require(::statvfs(inside.c_str(), &status) == 0, "looking at " + path);
  const unsigned long kept =
      status.f_flag & (ST_NOSUID | ST_NODEV | ST_NOEXEC | ST_NOATIME | ST_NODIRATIME | ST_RELATIME);
  require(::mount(nullptr, inside.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | kept,
                  nullptr) == 0,
          "protecting " + path);
}

void buildDevices() {
  makeDirectory("/dev");
  for (const char* device : {"/dev/full", "/dev/null", "/dev/random", "/dev/urandom", "/dev/zero"})
    lendDevice(device);
  makeDirectory("/dev/net");
  if (::access((kRoot + kHost + "/dev/net/tun").c_str(), F_OK) == 0) lendDevice("/dev/net/tun");
  require(::symlink("/proc/self/fd", (kRoot + "/dev/fd").c_str()) == 0, "linking /dev/fd");
}

void buildRoot() {
  require(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "making / private");
  require(::mount("tmpfs", kRoot.c_str(), "tmpfs", 0, "mode=755") == 0, "mounting a scratch root");
  makeDirectory(kHost);
  bindMount("/", kRoot + kHost, MS_REC);
  mirror("/", {"host", "scratch", "usr", "etc", "dev", "zrcommon.log"});
  makeDirectory("/usr");
  mirror("/usr/", {"lib"});
  makeDirectory("/usr/lib");
  mirror("/usr/lib/", {"Valdrix"});
  makeDirectory("/usr/lib/Valdrix");
  makeDirectory("/usr/lib/Valdrix/Valdrix");
  makeDirectory("/etc");
  mirror("/etc/", {"init.d"});
  makeDirectory("/etc/init.d");
  makeDirectory("/etc/init.d/rc.d");
  makeDirectory("/scratch");
  buildDevices();
}

void moveToRoot() {
  char directory[4096] = {};
  require(::getcwd(directory, sizeof directory) != nullptr, "getcwd");
  require(::chroot(kRoot.c_str()) == 0, "chroot");
  require(::chdir((kHost + directory).c_str()) == 0, "chdir");
}

void raiseLoopback() {
  const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request = {};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP;
  require(fd >= 0 && ::ioctl(fd, SIOCSIFFLAGS, &request) == 0, "raising loopback");
  ::close(fd);
}

}  // namespace

void enterSandbox() {
  if (std::getenv(kInside)) return;
  enterNamespaces();
  buildRoot();
  moveToRoot();
  raiseLoopback();
  ::setenv(kInside, "1", 1);
}
