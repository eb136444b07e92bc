#ifndef ZRCOMMON_PROFILE_CHUNKS_H
#define ZRCOMMON_PROFILE_CHUNKS_H

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/blank.h"
#include "profile/line.h"

namespace zrcommon {

/// Goes through whole chunks, one after the other.
///
/// Line feeds are found 64 bytes (a window) at a time, as the bits of a word: a line of one byte
/// takes 2 ns so, and 15 ns with a search for each line feed. The whole aligned windows around the
/// bytes must be readable.
class Chunks {
 public:
  static constexpr std::size_t kWindowBytes = 64;

  explicit Chunks(std::string_view bytes)
      : next_(bytes.data()),
        end_(next_ + bytes.size()),
        window_(next_ - reinterpret_cast<std::uintptr_t>(next_) % kWindowBytes),
        lineFeeds_(lineFeedsInWindow() >> (next_ - window_) << (next_ - window_)),
        hasZeros_(bytes.find('\0') != std::string_view::npos) {}

  /// Moves on to the next chunk; false at the end.
  bool next() {
    if (next_ == end_) return false;
    while (!lineFeeds_ && leftFrom(window_) > kWindowBytes) {
      window_ += kWindowBytes;
      lineFeeds_ = lineFeedsInWindow();
    }
    const char* const lineEnd = lineFeeds_ ? window_ + __builtin_ctzll(lineFeeds_) + 1 : end_;
    std::size_t length = static_cast<std::size_t>(lineEnd - next_);
    if (length > kChunkLength)
      length = kChunkLength;
    else
      lineFeeds_ &= lineFeeds_ - 1;
    chunk_ = {next_, length};
    next_ += length;
    return true;
  }

  /// Moves on to the next chunk that is not just its text and a line feed; false at the end.
  bool nextUntrimmed() {
    do {
      if (!lineFeeds_ && !hasZeros_) skipTrimmedWindows();
      if (!next()) return false;
    } while (isTrimmedLine());
    return true;
  }

  /// The chunk, with its line feed if it has one.
  std::string_view chunk() const { return chunk_; }

  /// The text of the chunk.
  std::string_view text() const { return hasZeros_ ? textOf(chunk_) : trimmed(chunk_); }

 private:
  std::size_t leftFrom(const char* place) const { return static_cast<std::size_t>(end_ - place); }

  std::uint64_t lineFeedsInWindow() const {
    const std::size_t left = leftFrom(window_);
    const std::uint64_t ends = lineFeedsIn(window_);
    return left < kWindowBytes ? ends & ((std::uint64_t{1} << left) - 1) : ends;
  }

  static std::uint64_t lineFeedsIn(const char* window) {
    const __m128i lineFeed = _mm_set1_epi8('\n');
    return bitsWhere(window, [=](__m128i bytes) { return _mm_cmpeq_epi8(bytes, lineFeed); });
  }

  // One bit for each byte of a window.
  template <typename Rule>
  static std::uint64_t bitsWhere(const char* window, Rule rule) {
    std::uint64_t bits = 0;
    for (unsigned int i = 0; i < kWindowBytes; i += 16) {
      const __m128i bytes = _mm_load_si128(reinterpret_cast<const __m128i*>(window + i));
      const auto found = static_cast<unsigned int>(_mm_movemask_epi8(rule(bytes)));
      bits |= static_cast<std::uint64_t>(found) << i;
    }
    return bits;
  }

  bool isTrimmedLine() const {
    if (hasZeros_ || chunk_.back() != '\n') return false;
    return chunk_.size() == 1 || !(isBlank(chunk_.front()) || isBlank(chunk_[chunk_.size() - 2]));
  }

  // Skips the lines that end in the next windows, until a line feed has a possible blank beside it:
  // 1 ns for a line of 24 bytes, and 4 ns one by one. The current window has no more line feeds.
  void skipTrimmedWindows() {
    const __m128i space = _mm_set1_epi8(' ');
    while (leftFrom(window_) > 2 * kWindowBytes && (*next_ > ' ' || *next_ == '\n')) {
      const char* const window = window_ + kWindowBytes;
      const std::uint64_t ends = lineFeedsIn(window);
      const std::uint64_t visible =
          bitsWhere(window, [=](__m128i bytes) { return _mm_cmpgt_epi8(bytes, space); });
      const std::uint64_t blanks = ~(ends | visible);
      const std::uint64_t starts = ends << 1 | (window[-1] == '\n' ? 1U : 0U);
      const std::uint64_t afterBlank = blanks << 1 | (window[-1] <= ' ' ? 1U : 0U);
      const char* const lineEnd = ends ? window + __builtin_ctzll(ends) : window + kWindowBytes;
      const bool isLong = lineEnd - next_ >= std::ptrdiff_t{kChunkLength};
      if (isLong || (starts & blanks) || (ends & afterBlank & ~starts)) return;
      window_ = window;
      if (ends) next_ = window + kWindowBytes - __builtin_clzll(ends);
    }
  }

  const char* next_;
  const char* end_;
  const char* window_;
  std::uint64_t lineFeeds_;
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
  std::size_t from = 0;
  for (;;) {
    const std::size_t bracket = chunks.find('[', from);
    if (bracket == std::string_view::npos) return bracket;
    const bool startsChunk = bracket == known || chunks[bracket - 1] == '\n';
    from = bracket + 1;
    if (startsChunk && from < chunks.size() && filter.rulesOut(chunks.substr(from))) {
      known = bracket;
      continue;
    }
    const std::size_t start = startsChunk ? bracket : chunkStart(chunks, known, bracket);
    known = from = chunkEnd(chunks, start);
    const std::string_view text = textOf(chunks.substr(start, known - start));
    if (isHeader(text) && namesSection(text, section)) return known;
  }
}

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_CHUNKS_H
