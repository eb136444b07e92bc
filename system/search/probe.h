#ifndef ZRCOMMON_SYSTEM_SEARCH_PROBE_H
#define ZRCOMMON_SYSTEM_SEARCH_PROBE_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zrcommon {

/// How far one way of searching came: to a result, or to the offset before which nothing matches.
struct Progress {
  bool isDone = false;
  std::size_t offset = 0;

  static Progress found(std::size_t at) { return {true, at}; }
  static Progress nothing() { return {true, std::string_view::npos}; }
  static Progress gaveUp(std::size_t at) { return {false, at}; }
};

/// Finds a pattern by four of its bytes, at 64 places at a time: its first two, and the byte that
/// it has fewest of with the one before. (What a pattern repeats, a text is likely to repeat as
/// well.)
class Probe {
 public:
  static constexpr std::size_t kLeastPattern = 2;

  /// @param pattern   at least kLeastPattern bytes; must outlive this
  /// @param toSearch  how many bytes will be searched in all
  Probe(std::string_view pattern, std::size_t toSearch);

  /// The first match at or after @p from. Gives up where too many places look like one.
  Progress find(std::string_view text, std::size_t from) const;

 private:
  static constexpr std::size_t kPlaces = 64;

  std::size_t skipBlocks(const char* text, std::size_t at, std::size_t lastBlock) const;
  std::size_t findIn(const char* block, std::ptrdiff_t& credit) const;

  std::string_view pattern_;
  std::size_t second_;
  std::uint16_t firstPair_;
  std::uint16_t secondPair_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_PROBE_H
