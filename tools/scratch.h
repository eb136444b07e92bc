#ifndef ZRCOMMON_TOOLS_SCRATCH_H
#define ZRCOMMON_TOOLS_SCRATCH_H

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "tools/refusal.h"

/// A directory for temporary files, removed at the end of the scope. Signals that end a process
/// wait until then.
class Scratch {
 public:
  Scratch() {
    const sigset_t ending = endingSignals();
    ::sigprocmask(SIG_BLOCK, &ending, &before_);
    if (!::mkdtemp(path_.data())) throw systemRefusal("making " + path_);
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
    ::sigprocmask(SIG_SETMASK, &before_, nullptr);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  static sigset_t endingSignals() {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) ::sigaddset(&set, signal);
    return set;
  }

  std::string operator/(const std::string& name) const { return path_ + '/' + name; }
  void put(const std::string& name, std::string_view content) const {
    std::ofstream file(path_ + '/' + name, std::ios::binary);
    file << content;
    file.close();
    if (!file) throw systemRefusal("writing to " + path_);
  }
  const sigset_t& signalsBefore() const { return before_; }

 private:
  std::string path_ = std::filesystem::temp_directory_path() / "zrtool-XXXXXX";
  sigset_t before_;
};

#endif  // ZRCOMMON_TOOLS_SCRATCH_H
