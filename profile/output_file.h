#ifndef ZRCOMMON_PROFILE_OUTPUT_FILE_H
#define ZRCOMMON_PROFILE_OUTPUT_FILE_H

#include <cstring>
#include <optional>
#include <string_view>

#include "base/file.h"

namespace zrcommon {

/// The temporary copy of a profile, written by blocks from memory of its own.
class OutputFile {
 public:
  OutputFile() = default;
  ~OutputFile() {
    if (file_) flush();
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Creates or empties the file; false if that fails.
  bool create(const char* path) {
    file_.emplace(openFile(path, O_WRONLY | O_CREAT | O_TRUNC, 0666));
    return static_cast<bool>(*file_);
  }

  void append(std::string_view bytes) {
    if (bytes.size() > kBlockBytes - length_) flush();
    if (bytes.size() > kBlockBytes) return write(bytes);
    std::memcpy(block_ + length_, bytes.data(), bytes.size());
    length_ += bytes.size();
  }

  void appendLine(std::string_view text) {
    append(text);
    append("\n");
  }

 private:
  static constexpr std::size_t kBlockBytes = 8192;

  void flush() {
    write({block_, length_});
    length_ = 0;
  }

  // Kept: what cannot be written is lost unnoticed, and the copy takes the profile's place all the
  // same; callers know no such failure (test ProfileWriting.FullDiskGoesUnnoticed)
  void write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = writeOnce(file_->get(), bytes.data(), bytes.size());
      if (written <= 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  std::optional<Fd> file_;
  std::size_t length_ = 0;
  char block_[kBlockBytes];
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_OUTPUT_FILE_H
