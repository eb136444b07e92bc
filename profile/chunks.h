#ifndef ZRCOMMON_PROFILE_CHUNKS_H
#define ZRCOMMON_PROFILE_CHUNKS_H

#include <emmintrin.h>

#include <cstddef>
#include <string_view>

#include "base/blank.h"
#include "profile/line.h"
#include "profile/places.h"

namespace zrcommon {

/// Goes through whole chunks, one after the other. The whole windows of Places around them must be
/// readable.
class Chunks {
 public:
  explicit Chunks(std::string_view bytes)
      : next_(bytes.data()),
        end_(next_ + bytes.size()),
        lineFeeds_(bytes, '\n'),
        hasZeros_(bytes.find('\0') != std::string_view::npos) {}

  /// Moves on to the next chunk; false at the end.
  bool next() {
    if (next_ == end_) return false;
    const char* const lineFeed = lineFeeds_.next();
    std::size_t length = static_cast<std::size_t>(lineFeed - next_) + (lineFeed != end_ ? 1 : 0);
    if (length > kChunkLength)
      length = kChunkLength;
    else
      lineFeeds_.pop();
    chunk_ = {next_, length};
    next_ += length;
    return true;
  }

  /// Moves on to the next chunk that is not just its text and a line feed; false at the end.
  bool nextUntrimmed() {
    do {
      if (!hasZeros_) skipTrimmedWindows();
      if (!next()) return false;
    } while (isTrimmedLine());
    return true;
  }

  /// The chunk, with its line feed if it has one.
  std::string_view chunk() const { return chunk_; }

  /// The text of the chunk.
  std::string_view text() const { return hasZeros_ ? textOf(chunk_) : trimmed(chunk_); }

  /// True if the chunk is just its text and a line feed.
  bool isTrimmedLine() const {
    if (hasZeros_ || chunk_.back() != '\n') return false;
    return chunk_.size() == 1 || !(isBlank(chunk_.front()) || isBlank(chunk_[chunk_.size() - 2]));
  }

 private:
  // Skips the lines that end in the next windows, until a line feed has a possible blank beside it:
  // 1 ns for a line of 24 bytes, and 4 ns one by one.
  void skipTrimmedWindows() {
    const __m128i space = _mm_set1_epi8(' ');
    while (const char* const window = lineFeeds_.nextWindow()) {
      const std::uint64_t ends = lineFeeds_.in(window);
      const std::uint64_t visible =
          Places::bitsWhere(window, [=](__m128i bytes) { return _mm_cmpgt_epi8(bytes, space); });
      const std::uint64_t blanks = ~(ends | visible);
      const std::uint64_t starts = ends << 1 | (window[-1] == '\n' ? 1U : 0U);
      const std::uint64_t afterBlank = blanks << 1 | (window[-1] <= ' ' ? 1U : 0U);
      const char* const lineEnd =
          window + (ends ? __builtin_ctzll(ends) : std::ptrdiff_t{Places::kWindowBytes});
      const bool isLong = lineEnd - next_ >= std::ptrdiff_t{kChunkLength};
      const bool mayBeginBlank = *next_ <= ' ' && *next_ != '\n';
      if (isLong || mayBeginBlank || (starts & blanks) || (ends & afterBlank & ~starts)) return;
      lineFeeds_.popWindow();
      if (ends) next_ = window + Places::kWindowBytes - __builtin_clzll(ends);
    }
  }

  const char* next_;
  const char* end_;
  Places lineFeeds_;
  bool hasZeros_;
  std::string_view chunk_;
};

/// Where the chunk begins that holds the byte at @p at; a chunk begins at @p known.
inline std::size_t chunkStart(std::string_view chunks, std::size_t known, std::size_t at) {
  const std::size_t line = known + lastLineStart(chunks.substr(known, at - known));
  return line + (at - line) / kChunkLength * kChunkLength;
}

/// Where the chunk ends that begins at @p start.
inline std::size_t chunkEnd(std::string_view chunks, std::size_t start) {
  return start + chunkLength(chunks.substr(start));
}

/// Where the first header ends that names the section; npos if none does. Searches for "[" instead
/// of visiting each chunk, and looks at each byte a few times at most.
inline std::size_t findSection(std::string_view chunks, std::string_view section) {
  const NameFilter filter(section, ']');
  std::size_t known = 0;
  for (Places brackets(chunks, '[');; brackets.pop()) {
    const auto bracket = static_cast<std::size_t>(brackets.next() - chunks.data());
    if (bracket == chunks.size()) return std::string_view::npos;
    if (bracket < known) continue;
    const bool startsChunk = bracket == known || chunks[bracket - 1] == '\n';
    const std::string_view name = chunks.substr(bracket + 1);
    if (startsChunk && !name.empty() && filter.rulesOut(name)) {
      known = bracket;
      continue;
    }
    const std::size_t start = startsChunk ? bracket : chunkStart(chunks, known, bracket);
    known = chunkEnd(chunks, start);
    const std::string_view text = textOf(chunks.substr(start, known - start));
    if (isHeader(text) && namesSection(text, section)) return known;
  }
}

/// Recognises the entry of a key in its section.
class KeyMatcher {
 public:
  explicit KeyMatcher(std::string_view key) : key_(key), filter_(key, '=') {}

  /// True for the entry of the key and for the header that ends the section.
  bool stopsAt(const Chunks& chunks) const {
    const std::string_view chunk = chunks.chunk();
    if (chunk.front() != '[' && filter_.rulesOut(chunk)) return false;
    const std::string_view text = chunks.text();
    return isHeader(text) || (!isComment(text) && isSameName(keyOf(text), key_));
  }

 private:
  std::string_view key_;
  NameFilter filter_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_CHUNKS_H
