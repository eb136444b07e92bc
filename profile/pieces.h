#ifndef ZRCOMMON_PROFILE_PIECES_H
#define ZRCOMMON_PROFILE_PIECES_H

#include <cstring>
#include <string_view>

#include "profile/line.h"

/// Places in a run of whole pieces, found without visiting each piece.

/// Where the piece begins that holds the byte at @p at; a piece is known to begin at @p known.
inline std::size_t pieceStart(std::string_view pieces, std::size_t known, std::size_t at) {
  const char* const from = pieces.data() + known;
  const void* const lineFeed = ::memrchr(from, '\n', at - known);
  const auto line =
      lineFeed ? static_cast<std::size_t>(static_cast<const char*>(lineFeed) + 1 - pieces.data())
               : known;
  return line + (at - line) / kPieceLength * kPieceLength;
}

/// Where the piece ends that begins at @p start.
inline std::size_t pieceEnd(std::string_view pieces, std::size_t start) {
  return start + pieceLength(pieces.substr(start));
}

/// Where the first piece begins whose first character that is no blank is "["; npos if none does.
/// Every byte is looked at a bounded number of times, whatever the lines hold.
inline std::size_t findHeader(std::string_view pieces) {
  std::size_t known = 0;
  for (;;) {
    const std::size_t bracket = pieces.find('[', known);
    if (bracket == pieces.npos) return bracket;
    const std::size_t start = pieceStart(pieces, known, bracket);
    if (trimmedLeft(pieces.substr(start, bracket - start)).empty()) return start;
    known = pieceEnd(pieces, start);
  }
}

#endif  // ZRCOMMON_PROFILE_PIECES_H
