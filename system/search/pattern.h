#ifndef ZRCOMMON_SYSTEM_SEARCH_PATTERN_H
#define ZRCOMMON_SYSTEM_SEARCH_PATTERN_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "system/search/probe.h"
#include "system/search/skip_table.h"

namespace zrcommon {

/// A byte pattern to look for in one or more buffers, in time linear in their size.
///
/// The search starts with the fastest way that suits the pattern: the skip table for long patterns,
/// the probe for short ones. Where the text does not suit a way, it gives up, and the next way
/// continues from there: after the skip table the probe, after the probe the C library's memmem().
class Pattern {
 public:
  /// @param bytes     the pattern, which must outlive this
  /// @param toSearch  how many bytes will be searched in all; decides whether a table pays
  Pattern(std::string_view bytes, std::size_t toSearch);

  /// The lowest offset of the pattern in @p text, or npos.
  std::size_t find(std::string_view text) const;

 private:
  std::string_view bytes_;
  std::optional<SkipTable> table_;
  std::optional<Probe> probe_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_PATTERN_H
