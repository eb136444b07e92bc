#include "tools/new_file.h"

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/output.h"

using zrcommon::Fd;

namespace {

// What the signal handler removes; empty if there is nothing.
char leftOver[PATH_MAX];

// All signals are blocked here, and the one raised ends the process when this returns. SA_RESETHAND
// would not do: a second signal could end the process before the file is removed.
void removeAndEnd(int signal) {
  if (leftOver[0] != '\0') ::unlink(leftOver);
  ::signal(signal, SIG_DFL);
  ::raise(signal);
}

// After SIGXFSZ, which a limit on file sizes sends, write() fails with EFBIG.
void goOn(int) {}

void handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
  action.sa_handler = handler;
  ::sigfillset(&action.sa_mask);
  ::sigaction(signal, &action, nullptr);
}

void handleSignals() {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGUSR2,
                           SIGXCPU, SIGVTALRM, SIGPROF, SIGIO})
    handle(signal, removeAndEnd);
  handle(SIGXFSZ, goOn);
}

class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    ::sigfillset(&all);
    ::sigprocmask(SIG_BLOCK, &all, &before_);
  }
  ~SignalsBlocked() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

// Follows symbolic links. A name that does not exist stays as it is.
std::string resolved(const std::string& path) {
  char real[PATH_MAX];
  if (::realpath(path.c_str(), real)) return real;
  struct stat status = {};
  if (errno != ENOENT || ::lstat(path.c_str(), &status) == 0) throw systemRefusal(path);
  return path;
}

std::string directoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == path.npos ? "./" : path.substr(0, slash + 1);
}

std::optional<struct stat> statusOf(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

mode_t withoutUmask(mode_t mode) {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return mode & ~mask;
}

}  // namespace

NewFile::NewFile(const std::string& target, mode_t newMode)
    : name_(target),
      target_(resolved(target)),
      replaced_(statusOf(target_)),
      mode_(replaced_ ? replaced_->st_mode & 07777U : withoutUmask(newMode)) {
  if (replaced_ && S_ISDIR(replaced_->st_mode)) throw systemRefusal(target, EISDIR);
  if (replaced_ && !S_ISREG(replaced_->st_mode))
    throw Refusal(target + " is not a regular file and was left as it is");
  if (replaced_ && ::access(target_.c_str(), W_OK) != 0) throw systemRefusal(target);
  open();
}

NewFile::~NewFile() {
  const SignalsBlocked blocked;
  if (leftOver[0] != '\0') ::unlink(leftOver);
  leftOver[0] = '\0';
}

void NewFile::open() {
  temporary_ = directoryOf(target_) + ".zrtool-XXXXXX";
  if (temporary_.size() >= sizeof leftOver) throw systemRefusal(name_, ENAMETOOLONG);
  handleSignals();
  const SignalsBlocked blocked;
  file_.emplace(::mkostemp(temporary_.data(), O_CLOEXEC));
  if (!*file_) throw systemRefusal("a temporary file in " + directoryOf(target_));
  std::memcpy(leftOver, temporary_.c_str(), temporary_.size() + 1);
}

void NewFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file_->get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw systemRefusal(name_);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void NewFile::setMode(mode_t mode) {
  mode_ = mode;
  if (!replaced_ || (replaced_->st_mode & 07777U) == mode) return;
  char digits[8];
  (void)std::snprintf(digits, sizeof digits, "%04o", mode);
  Output::message(name_ + " gets mode " + digits + ": every local user can change it");
}

void NewFile::takeOver() {
  const bool isOwnerKept =
      !replaced_ || ::fchown(file_->get(), replaced_->st_uid, replaced_->st_gid) == 0;
  if (!isOwnerKept) Output::message(name_ + " now belongs to you: its owner could not be kept");
  if (!isOwnerKept) mode_ &= 0777U;
  if (::fchmod(file_->get(), mode_) != 0) throw systemRefusal(name_);
}

// A file system that cannot sync the directory may lose the rename, but neither file.
void NewFile::commit() {
  takeOver();
  if (::fsync(file_->get()) != 0) throw systemRefusal(name_);
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) throw systemRefusal(name_);
  leftOver[0] = '\0';
  const Fd directory(zrcommon::openFile(directoryOf(target_).c_str(), O_RDONLY | O_DIRECTORY));
  (void)::fsync(directory.get());
}
