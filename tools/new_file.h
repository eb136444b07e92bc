#ifndef ZRCOMMON_TOOLS_NEW_FILE_H
#define ZRCOMMON_TOOLS_NEW_FILE_H

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "base/file.h"
#include "tools/refusal.h"

/// The new content of a file, kept in a temporary file beside it until commit() renames that over
/// it. Until then the old file is as it was. Without commit(), and on a signal that can be caught,
/// the temporary file is removed.
///
/// A symbolic link stays and its target is replaced. Owner and mode of a replaced file are kept.
/// Throws Refusal for a target that may not be written or is no regular file.
class NewFile {
 public:
  /// @param newMode  the mode, less the umask, if there is no file yet
  explicit NewFile(const std::string& target, mode_t newMode = 0666);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(std::string_view bytes);

  /// A path to the open temporary file, for the library's own writers.
  std::string openPath() const { return "/proc/self/fd/" + std::to_string(file_->get()); }

  /// The status of the file that is replaced; none if there is no such file.
  const std::optional<struct stat>& replaced() const { return replaced_; }

  /// Gives the new file this mode. Says so at once if the file had another one.
  void setMode(mode_t mode);

  /// Puts the new file in the target's place. Tells on standard error if the owner was lost.
  void commit();

 private:
  void open();
  void takeOver();

  std::string name_;
  std::string target_;
  std::string temporary_;
  std::optional<struct stat> replaced_;
  std::optional<zrcommon::Fd> file_;
  mode_t mode_;
};

#endif  // ZRCOMMON_TOOLS_NEW_FILE_H
