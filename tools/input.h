#ifndef ZRCOMMON_TOOLS_INPUT_H
#define ZRCOMMON_TOOLS_INPUT_H

#include <sys/stat.h>

#include <string>

#include "base/file.h"
#include "tools/refusal.h"

/// A regular file, open for reading. Throws Refusal for anything else: opening a named pipe would
/// wait for a writer.
class InputFile {
 public:
  explicit InputFile(const std::string& path);

  const struct stat& status() const { return status_; }
  std::string content() const;
  int descriptor() const { return file_.get(); }

  /// A path to the open file, for the library: the name may belong to another file by then.
  std::string openPath() const { return "/proc/self/fd/" + std::to_string(file_.get()); }

 private:
  std::string path_;
  zrcommon::Fd file_;
  struct stat status_ = {};
};

std::string standardInput();

#endif  // ZRCOMMON_TOOLS_INPUT_H
