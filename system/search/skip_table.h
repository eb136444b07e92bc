#ifndef ZRCOMMON_SYSTEM_SEARCH_SKIP_TABLE_H
#define ZRCOMMON_SYSTEM_SEARCH_SKIP_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "system/search/progress.h"

namespace zrcommon {

/// Horspool search over groups of four bytes: looks up the four bytes of the text below the end of
/// the pattern. Where the pattern does not hold them, the search advances by nearly the length of
/// the pattern, so most of the text is never read.
class SkipTable {
 public:
  /// @param pattern  at least 5 bytes; must outlive this
  explicit SkipTable(std::string_view pattern);

  /// The first match. Gives up where it advances by few bytes at a time.
  Progress find(std::string_view text) const;

 private:
  static constexpr unsigned int kBits = 11;

  static std::size_t slot(const char* gram);

  std::string_view pattern_;
  std::size_t lastGram_;    // offset of the pattern's last four bytes
  std::size_t reach_;       // how many offsets before lastGram_ the table covers
  std::size_t skipAtLast_;  // advance after the last four bytes matched and the pattern did not
  // For each four bytes, the offset of their last occurrence in the pattern, counted from
  // lastGram_ - reach_; 0 if there is none. Patterns up to 255 bytes use all of their offsets.
  std::array<std::uint8_t, std::size_t{1} << kBits> places_ = {};
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_SKIP_TABLE_H
