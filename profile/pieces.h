#ifndef ZRCOMMON_PROFILE_PIECES_H
#define ZRCOMMON_PROFILE_PIECES_H

#include <algorithm>
#include <cstring>
#include <string_view>

#include "profile/line_source.h"

namespace zrcommon {

/// Runs of whole pieces, searched without visiting each piece.

/// Where the piece begins that holds the byte at @p at; a piece is known to begin at @p known.
inline std::size_t pieceStart(std::string_view pieces, std::size_t known, std::size_t at) {
  if (at > known && pieces[at - 1] == '\n') return at;
  const std::size_t line = known + lastLineStart(pieces.substr(known, at - known));
  return line + (at - line) / kPieceLength * kPieceLength;
}

/// Where the piece ends that begins at @p start.
inline std::size_t pieceEnd(std::string_view pieces, std::size_t start) {
  return start + pieceLength(pieces.substr(start));
}

/// Where the first header begins, at or behind @p known, where a piece begins; npos if there is
/// none. Jumps from "[" to "[" instead of visiting every piece, and looks at no byte more than a
/// few times, whatever the pieces hold.
inline std::size_t findHeader(std::string_view pieces, std::size_t known) {
  for (;;) {
    const std::size_t bracket = pieces.find('[', known);
    if (bracket == std::string_view::npos) return bracket;
    const std::size_t start = pieceStart(pieces, known, bracket);
    if (trimmedLeft(pieces.substr(start, bracket - start)).empty()) return start;
    known = pieceEnd(pieces, start);
  }
}

/// Where the first header ends that names the section; npos if none does.
inline std::size_t findSection(std::string_view pieces, std::string_view section) {
  for (std::size_t start = 0; (start = findHeader(pieces, start)) != std::string_view::npos;) {
    const std::size_t end = pieceEnd(pieces, start);
    if (namesSection(textOf(pieces.substr(start, end - start)), section)) return end;
    start = end;
  }
  return std::string_view::npos;
}

/// Takes everything through the header of the section, and shows it run by run to @p visit; false,
/// at the end of the file, if there is no such section.
template <typename Visit>
bool takeThroughHeader(LineSource& profile, std::string_view section, Visit visit) {
  for (auto pieces = profile.wholePieces(); !pieces.empty(); pieces = profile.wholePieces()) {
    // Kept: the first section of a name hides all others of that name (test ProfileReading.Entries)
    const std::size_t end = findSection(pieces, section);
    visit(pieces.substr(0, end));
    profile.skip(std::min(end, pieces.size()));
    if (end != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_PIECES_H
