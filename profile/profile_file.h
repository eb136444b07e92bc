#ifndef ZRCOMMON_PROFILE_PROFILE_FILE_H
#define ZRCOMMON_PROFILE_PROFILE_FILE_H

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "base/file.h"
#include "profile/chunks.h"
#include "profile/line.h"
#include "profile/places.h"

namespace zrcommon {

/// A profile opened for reading and, for a change, the copy that replaces it.
///
/// Both share one block of memory on the stack: what is read fills it, and the part that was read
/// and skipped collects what is written. Lines that stay as they are do not even move. Two blocks
/// would not fit into a thread with a stack of 16 KiB.
class ProfileFile {
 public:
  /// @param copyPath  of the copy, created or emptied if the profile can be opened; null for none
  explicit ProfileFile(const char* path, const char* copyPath = nullptr)
      : file_(std::in_place, openFile(path, O_RDONLY)),
        copy_(*file_ && copyPath ? openFile(copyPath, O_WRONLY | O_CREAT | O_TRUNC, 0666) : -1),
        isOpen_(*file_ && (!copyPath || copy_)) {}
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  /// True if everything could be opened.
  explicit operator bool() const { return isOpen_; }

  /// The whole chunks that were read and not yet skipped, at least one; empty at the end of the
  /// file. Reads more only if there is none.
  std::string_view chunks() {
    std::size_t length = 0;
    while ((length = wholeLength()) == 0 && readMore()) continue;
    return {block_ + begin_, length};
  }

  /// Skips that many bytes of chunks(), whole chunks.
  void skip(std::size_t count) { begin_ += count; }

  /// Writes to the copy: skipped chunks, or text from elsewhere. May overwrite chunks that were
  /// skipped before.
  void append(std::string_view bytes) {
    if (bytes.data() != block_ + copyEnd_) {
      makeRoom(bytes.size());
      if (bytes.size() > begin_ - copyEnd_) return write(bytes);
      std::memmove(block_ + copyEnd_, bytes.data(), bytes.size());
    }
    copyEnd_ += bytes.size();
  }

  /// Closes the profile and writes what the copy still lacks.
  void finishCopy() {
    file_.reset();
    flush(copyEnd_ - copyBegin_);
  }

  /// Makes a text inside the block, part of a chunk, a C string.
  const char* terminate(std::string_view text) {
    char* const begin = block_ + (text.data() - block_);
    begin[text.size()] = '\0';
    return begin;
  }

 private:
  // Room for an unfinished chunk, then for what is read: 8 KiB, so that reads begin with a page as
  // long as nothing is written. 1 MiB takes 46 us so, and 54 us by 7 KiB.
  static constexpr std::size_t kReadAt = 1024;
  static constexpr std::size_t kBlockBytes = kReadAt + 8192;
  static_assert(kReadAt >= kChunkLength);

  std::size_t wholeLength() const {
    const std::string_view bytes(block_ + begin_, end_ - begin_);
    if (hasEnded_) return bytes.size();
    const std::size_t lines = lastLineStart(bytes);
    return lines + (bytes.size() - lines) / kChunkLength * kChunkLength;
  }

  // Called when only an unfinished chunk is left; false if nothing can follow.
  bool readMore() {
    if (hasEnded_) return false;
    const std::size_t kept = flushWholePages();
    const std::size_t rest = end_ - begin_;
    const std::size_t readAt = std::max(kReadAt, kept + rest);
    std::memmove(block_ + readAt - rest - kept, block_ + copyBegin_, kept);
    std::memmove(block_ + readAt - rest, block_ + begin_, rest);
    begin_ = copyEnd_ = readAt - rest;
    copyBegin_ = begin_ - kept;
    const ssize_t got = ::read(file_->get(), block_ + readAt, kBlockBytes - readAt);
    hasEnded_ = got <= 0;
    // A failed read ends the file before the chunk that it leaves unfinished.
    end_ = got < 0 ? begin_ : readAt + static_cast<std::size_t>(got);
    return true;
  }

  // Moving what was collected costs less than one more write.
  void makeRoom(std::size_t count) {
    if (count <= begin_ - copyEnd_) return;
    const std::size_t collected = copyEnd_ - copyBegin_;
    std::memmove(block_, block_ + copyBegin_, collected);
    copyBegin_ = 0;
    copyEnd_ = collected;
    if (count > begin_ - copyEnd_) flush(collected);
  }

  // Writes up to the end of a page of the copy and returns how much is left. 1 MiB takes 250 us so,
  // and 360 us by pieces that end within a page.
  std::size_t flushWholePages() {
    constexpr std::size_t kPageBytes = 4096;
    const std::size_t collected = copyEnd_ - copyBegin_;
    const std::size_t left = std::min(collected, (written_ + collected) % kPageBytes);
    flush(collected - left);
    return left;
  }

  void flush(std::size_t count) {
    write({block_ + copyBegin_, count});
    copyBegin_ += count;
    if (copyBegin_ == copyEnd_) copyBegin_ = copyEnd_ = 0;
  }

  // Kept: WritePrivateProfileString() does not detect that the copy cannot be written, and the copy
  // replaces the profile all the same (test Robustness.EveryCallFails)
  void write(std::string_view bytes) {
    written_ += bytes.size();
    while (!bytes.empty()) {
      const ssize_t written = writeOnce(copy_.get(), bytes.data(), bytes.size());
      if (written <= 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  std::optional<Fd> file_;
  Fd copy_;
  bool isOpen_;
  bool hasEnded_ = false;
  std::size_t begin_ = kReadAt;
  std::size_t end_ = kReadAt;
  std::size_t copyBegin_ = 0;
  std::size_t copyEnd_ = 0;
  std::size_t written_ = 0;
  // One byte more than can be read, for terminate(); whole windows, for the search of line feeds.
  alignas(Places::kWindowBytes) char block_[kBlockBytes + Places::kWindowBytes];
};

/// Takes everything through the header of the section: take() receives the chunks, run by run, and
/// skips them. False, at the end of the file, if there is no such section.
template <typename Take>
bool takeThroughHeader(ProfileFile& profile, std::string_view section, Take take) {
  for (auto chunks = profile.chunks(); !chunks.empty(); chunks = profile.chunks()) {
    // Kept: GetPrivateProfileString() and the other profile functions search only the first section
    // of a name (test ProfileReading.Entries)
    const std::size_t end = findSection(chunks, section);
    take(chunks.substr(0, end));
    if (end != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_PROFILE_FILE_H
