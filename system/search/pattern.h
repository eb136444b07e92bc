#ifndef ZRCOMMON_SYSTEM_SEARCH_PATTERN_H
#define ZRCOMMON_SYSTEM_SEARCH_PATTERN_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "system/search/skip_table.h"

namespace zrcommon {

/// A byte pattern to look for in one or more buffers, in time linear in their size.
///
/// The fastest way that suits begins. Each way but the last keeps account of what it does in vain,
/// and where a text does not suit it hands the rest on: the skip table to the probe, the probe to
/// the C library's memmem().
class Pattern {
 public:
  /// @param bytes     the pattern, which must outlive this
  /// @param toSearch  how many bytes will be searched in all: decides what preparation pays
  Pattern(std::string_view bytes, std::size_t toSearch);

  /// The lowest offset of the pattern in @p text, or npos.
  std::size_t find(std::string_view text) const;

 private:
  std::string_view bytes_;
  std::optional<SkipTable> table_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_PATTERN_H
