#ifndef ZRCOMMON_PROFILE_LINE_H
#define ZRCOMMON_PROFILE_LINE_H

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>
#include <string_view>

namespace zrcommon {

/// What a line of a profile means: the rules that the readers, the writer and the tool share.

/// The longest piece in which a line is taken, and a buffer that can hold its text.
inline constexpr std::size_t kPieceLength = 1023;
inline constexpr std::size_t kLineBytes = 1025;

/// isspace() of the process's locale, which can add to the six blanks of every locale but never
/// counts a visible ASCII character as one.
inline bool isBlank(char character) {
  const auto unit = static_cast<unsigned char>(character);
  if (unit > ' ' && unit <= '~') return false;
  return unit == ' ' || (unit >= '\t' && unit <= '\r') || std::isspace(unit) != 0;
}

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

/// How many bytes of @p bytes, which begin with a piece, belong to it.
inline std::size_t pieceLength(std::string_view bytes) {
  const auto lineFeed = bytes.substr(0, kPieceLength).find('\n');
  return lineFeed == std::string_view::npos ? std::min(bytes.size(), kPieceLength) : lineFeed + 1;
}

/// Where the last line of @p bytes begins.
inline std::size_t lastLineStart(std::string_view bytes) {
  const void* const lineFeed = ::memrchr(bytes.data(), '\n', bytes.size());
  if (!lineFeed) return 0;
  return static_cast<std::size_t>(static_cast<const char*>(lineFeed) + 1 - bytes.data());
}

/// The text of a piece: trimmed, and without what a zero byte hides.
inline std::string_view textOf(std::string_view piece) {
  return trimmed(piece.substr(0, piece.find('\0')));
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

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_LINE_H
