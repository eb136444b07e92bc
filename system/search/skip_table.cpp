#include "system/search/skip_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace zrcommon {

namespace {

constexpr std::size_t kGramBytes = 4;
constexpr std::uint32_t kFactor = 2654435761;  // spreads the bytes over the upper bits
constexpr std::size_t kMostReach = std::numeric_limits<std::uint8_t>::max();
// Give up when the search advances fewer than 24 bytes per table hit. A hit takes 5 ns, in which
// the probe passes 70 bytes. With 9, a pattern of 16 in random a and b took 12 times as long; with
// 32, a pattern of 200 in a text of period 200 takes 1.5 times as long.
constexpr std::size_t kLeastAdvance = 24;
// A comparison of the pattern counts as one more hit for each 32 bytes of it.
constexpr std::size_t kBytesComparedForOne = 32;
// The advance that is credited in the beginning. With 1024, 16 KiB of a text of period 8 took twice
// as long.
constexpr std::size_t kCredit = 256;

}  // namespace

std::size_t SkipTable::slot(const char* gram) {
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, gram, sizeof bytes);
  return bytes * kFactor >> (32U - kBits);
}

SkipTable::SkipTable(std::string_view pattern)
    : pattern_(pattern),
      lastGram_(pattern.size() - kGramBytes),
      reach_(std::min(lastGram_, kMostReach)) {
  const char* const base = pattern.data() + lastGram_ - reach_;
  for (std::size_t i = 1; i < reach_; ++i) places_[slot(base + i)] = static_cast<std::uint8_t>(i);
  std::uint8_t& last = places_[slot(base + reach_)];
  skipAtLast_ = reach_ - last;
  last = static_cast<std::uint8_t>(reach_);
}

Progress SkipTable::find(std::string_view text) const {
  const std::size_t end = text.size() - kGramBytes;
  std::size_t spent = 0;
  for (std::size_t at = lastGram_; at <= end;) {
    const std::size_t place = places_[slot(text.data() + at)];
    if (place == 0) {
      at += reach_;
      continue;
    }
    const std::size_t start = at - lastGram_;
    if (spent * kLeastAdvance > start + kCredit) return Progress::gaveUp(start);
    ++spent;
    if (place < reach_) {
      at += reach_ - place;
      continue;
    }
    if (text.compare(start, pattern_.size(), pattern_) == 0) return Progress::found(start);
    spent += pattern_.size() / kBytesComparedForOne;
    at += skipAtLast_;
  }
  return Progress::nothing();
}

}  // namespace zrcommon
