#ifndef ZRCOMMON_PROFILE_LINE_H
#define ZRCOMMON_PROFILE_LINE_H

#include <strings.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include "base/blank.h"

namespace zrcommon {

/// What a line of a profile means: the rules that the readers, the writer and the tool share.
///
/// A line is taken in chunks of at most 1023 characters, its line feed included, and each chunk is
/// treated as a line of its own.
inline constexpr std::size_t kChunkLength = 1023;

inline std::string_view trimmedLeft(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  return text;
}

inline std::string_view trimmedRight(std::string_view text) {
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

inline std::string_view trimmed(std::string_view text) {
  return trimmedRight(trimmedLeft(text));
}

/// The length of the chunk with which @p bytes begin.
inline std::size_t chunkLength(std::string_view bytes) {
  const auto lineFeed = bytes.substr(0, kChunkLength).find('\n');
  return lineFeed == std::string_view::npos ? std::min(bytes.size(), kChunkLength) : lineFeed + 1;
}

/// Where the last line of @p bytes begins.
inline std::size_t lastLineStart(std::string_view bytes) {
  const void* const lineFeed = ::memrchr(bytes.data(), '\n', bytes.size());
  if (!lineFeed) return 0;
  return static_cast<std::size_t>(static_cast<const char*>(lineFeed) + 1 - bytes.data());
}

/// The text of a chunk: what is before its first zero byte, trimmed.
inline std::string_view textOf(std::string_view chunk) {
  return trimmed(chunk.substr(0, chunk.find('\0')));
}

inline bool isHeader(std::string_view text) {
  return !text.empty() && text.front() == '[';
}

inline bool isComment(std::string_view text) {
  return !text.empty() && (text.front() == '#' || text.front() == ';');
}

/// The section that a header names; none if it has no "]".
inline std::optional<std::string_view> sectionOf(std::string_view header) {
  const auto end = header.find(']');
  if (end == std::string_view::npos) return std::nullopt;
  return trimmed(header.substr(1, end - 1));
}

/// The key of an entry, which is the whole text if it has no "=".
inline std::string_view keyOf(std::string_view entry) {
  return trimmedRight(entry.substr(0, entry.find('=')));
}

/// The value of an entry; none if it has no "=".
inline std::optional<std::string_view> valueOf(std::string_view entry) {
  const auto equals = entry.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  return trimmed(entry.substr(equals + 1));
}

inline bool isSameName(std::string_view one, std::string_view other) {
  return one.size() == other.size() && ::strncasecmp(one.data(), other.data(), one.size()) == 0;
}

inline bool namesSection(std::string_view header, std::string_view section) {
  const auto name = sectionOf(header);
  return name && isSameName(*name, section);
}

/// Rules out most names by their first and last byte, which takes 1 ns instead of 15 for the whole.
class NameFilter {
 public:
  /// @param ifEmpty  the byte that follows an empty name
  NameFilter(std::string_view name, char ifEmpty)
      : length_(name.size()),
        first_(name.empty() ? ifEmpty : name.front()),
        last_(name.empty() ? ifEmpty : name.back()) {}

  /// True if no line in which the name would begin with @p text can have it.
  bool rulesOut(std::string_view text) const {
    if (text.front() == '\n') return length_ > 0;
    if (!isVisible(text.front())) return false;
    return differ(text.front(), first_) ||
           (length_ > 1 && length_ <= text.size() && differ(text[length_ - 1], last_));
  }

 private:
  // Depending on the locale, any letter may equal one that is not in ASCII.
  static bool differ(char a, char b) {
    constexpr int kCaseBit = 0x20;
    return isVisible(a) && isVisible(b) && (a | kCaseBit) != (b | kCaseBit);
  }

  std::size_t length_;
  char first_;
  char last_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_LINE_H
