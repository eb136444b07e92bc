#ifndef ZRCOMMON_SYSTEM_SEARCH_SKIP_TABLE_H
#define ZRCOMMON_SYSTEM_SEARCH_SKIP_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "system/search/probe.h"

namespace zrcommon {

/// Finds a pattern by looking up the four bytes under its end, after Horspool: bytes that the
/// pattern holds nowhere let it move on by nearly its own length, so most of a text is never read.
class SkipTable {
 public:
  /// @param pattern  at least 5 bytes; must outlive this
  explicit SkipTable(std::string_view pattern);

  /// The first match. Gives up where it cannot move on by much.
  Progress find(std::string_view text) const;

 private:
  static constexpr unsigned int kBits = 11;

  static std::size_t slot(const char* gram);

  std::string_view pattern_;
  std::size_t lastGram_;    // where the pattern's last four bytes begin in it
  std::size_t reach_;       // how many of the places for four bytes are in the table
  std::size_t skipAtLast_;  // how far to move on from the last four bytes
  // For each four bytes where they are in the pattern last, counted from reach_ places before its
  // last four; 0 if nowhere there.
  std::array<std::uint8_t, std::size_t{1} << kBits> places_ = {};
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_SKIP_TABLE_H
