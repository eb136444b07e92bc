#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <limits>
#include <string_view>

#include "system/search/pattern.h"
#include "zrcommon/strings.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kChunkBytes = 2048;
// Chunks overlap by this much more than the pattern's length.
constexpr int kOverlapBeyondPattern = 5;
constexpr int kPatternMost = static_cast<int>(kChunkBytes) - kOverlapBeyondPattern - 1;

// One chunk of a file at a time, in upper case.
class Chunk {
 public:
  explicit Chunk(int file) : file_(file) {}

  // Reads the chunk at this place, which is relative to whence. False if there is no such place or
  // the read returns fewer bytes than the least.
  bool read(off_t place, int whence, ssize_t least) {
    position_ = ::lseek(file_, place, whence);
    if (position_ < 0) return false;
    const ssize_t got = ::read(file_, bytes_, sizeof bytes_);
    if (got < least) return false;
    length_ = static_cast<std::size_t>(got);
    strUpr(bytes_, static_cast<int>(got));
    return true;
  }

  std::string_view text() const { return {bytes_, length_}; }
  off_t position() const { return position_; }

 private:
  int file_;
  off_t position_ = 0;
  std::size_t length_ = 0;
  char bytes_[kChunkBytes];
};

}  // namespace

long long SearchInFile(int file, const unsigned char* pattern, int patternLength,
                       long long startOffset) {
  if (file == -1 || !pattern || startOffset < 0) return -1;
  if (patternLength < 1 || patternLength > kPatternMost) return -1;
  const Pattern search(
      {reinterpret_cast<const char*>(pattern), static_cast<std::size_t>(patternLength)},
      std::numeric_limits<std::size_t>::max());
  const int overlap = patternLength + kOverlapBeyondPattern;
  Chunk chunk(file);
  // Kept: SearchInFile() compares upper-cased bytes of the file with the pattern as it is, so a
  // pattern with lower-case letters is never found (test
  // SearchInFile.FindsAcrossTheBordersOfChunks)
  for (bool more = chunk.read(startOffset, SEEK_SET, 1); more;
       more = chunk.read(-overlap, SEEK_CUR, overlap + 1)) {
    const std::size_t found = search.find(chunk.text());
    if (found != std::string_view::npos) return chunk.position() + static_cast<off_t>(found);
  }
  return -1;
}
