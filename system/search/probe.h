#ifndef ZRCOMMON_SYSTEM_SEARCH_PROBE_H
#define ZRCOMMON_SYSTEM_SEARCH_PROBE_H

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "system/search/progress.h"

namespace zrcommon {

/// Finds a pattern by four of its bytes, at 64 places at a time: its first two, and its rarest byte
/// with the one before. (What a pattern repeats, a text is likely to repeat as well.)
class Probe {
 public:
  static constexpr std::size_t kLeastPattern = 2;

  /// @param pattern   at least kLeastPattern bytes; must outlive this
  /// @param toSearch  how many bytes will be searched in all
  Probe(std::string_view pattern, std::size_t toSearch);

  /// The first match at or after @p from. Gives up where too many places look like a match.
  Progress find(std::string_view text, std::size_t from) const;

 private:
  std::uint64_t candidates(const char* block) const;

  std::string_view pattern_;
  std::size_t second_;
  __m128i bytes_[4];  // each of the four in all places of a vector
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_PROBE_H
