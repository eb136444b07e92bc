#ifndef ZRCOMMON_PROFILE_LINE_SOURCE_H
#define ZRCOMMON_PROFILE_LINE_SOURCE_H

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/file.h"
#include "profile/line.h"

namespace zrcommon {

/// A profile opened for reading, taken piece by piece, or in runs of whole pieces where only a few
/// of them matter. The bytes are brought in by blocks, into memory of its own: what it hands out
/// stands until the next call.
class LineSource {
 public:
  explicit LineSource(const char* path) : file_(openFile(path, O_RDONLY)) {}

  explicit operator bool() const { return static_cast<bool>(file_); }

  /// Takes the next piece, its line feed included if it has one; false at the end.
  bool next(std::string_view& piece) {
    std::size_t length = 0;
    while ((length = firstLength()) == 0 && refill()) continue;
    piece = buffered().substr(0, length);
    skip(length);
    return length != 0;
  }

  /// All the whole pieces at hand, at least one; empty at the end.
  std::string_view wholePieces() {
    std::size_t length = 0;
    while ((length = wholeLength()) == 0 && refill()) continue;
    return buffered().substr(0, length);
  }

  /// Takes that many bytes, which must be whole pieces at hand.
  void skip(std::size_t count) { begin_ += count; }

 private:
  // Large enough that system calls count little, small enough for a thread's stack.
  static constexpr std::size_t kBlockBytes = 32768;

  std::string_view buffered() const { return {block_ + begin_, end_ - begin_}; }

  // 0 as long as more bytes must be read to tell.
  std::size_t firstLength() const {
    const std::string_view bytes = buffered();
    const std::size_t length = pieceLength(bytes);
    const bool isWhole =
        hasEnded_ || length == kPieceLength || (length && bytes[length - 1] == '\n');
    return isWhole ? length : 0;
  }

  std::size_t wholeLength() const {
    const std::string_view bytes = buffered();
    if (hasEnded_) return bytes.size();
    const std::size_t lines = lastLineStart(bytes);
    return lines + (bytes.size() - lines) / kPieceLength * kPieceLength;
  }

  // Called when less than a piece is at hand; false once nothing more can come.
  bool refill() {
    if (hasEnded_) return false;
    std::memmove(block_, block_ + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    const ssize_t got = ::read(file_.get(), block_ + end_, kBlockBytes - end_);
    hasEnded_ = got <= 0;
    // A failed read ends the file in front of the piece that it leaves unfinished.
    if (got < 0) end_ = 0;
    if (got > 0) end_ += static_cast<std::size_t>(got);
    return true;
  }

  Fd file_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool hasEnded_ = false;
  char block_[kBlockBytes];
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_LINE_SOURCE_H
