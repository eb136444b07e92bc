#include "system/search/probe.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace zrcommon {

namespace {

// What is spent on blocks and places that only look like a match, measured in blocks that do not.
constexpr std::ptrdiff_t kCredit = 256;
constexpr std::ptrdiff_t kBlockCost = 3;
constexpr std::size_t kBytesComparedForOne = 64;
constexpr std::size_t kSearchedForOneLooked = 128;

std::uint16_t pairAt(const char* bytes) {
  std::uint16_t pair = 0;
  std::memcpy(&pair, bytes, sizeof pair);
  return pair;
}

// The last of the bytes that the pattern's beginning has fewest of. Looking at more of it than this
// would cost more than the search gains.
std::size_t rarest(std::string_view pattern, std::size_t toSearch) {
  const std::size_t looked = std::clamp(toSearch / kSearchedForOneLooked, Probe::kLeastPattern,
                                        std::size_t{std::numeric_limits<std::uint8_t>::max()});
  const std::string_view begin = pattern.substr(0, looked);
  std::array<std::uint8_t, 256> counts = {};
  for (const char byte : begin) ++counts[static_cast<unsigned char>(byte)];
  const auto count = [&](std::size_t at) { return counts[static_cast<unsigned char>(begin[at])]; };
  std::size_t best = 0;
  for (std::size_t at = 1; at < begin.size(); ++at)
    if (count(at) <= count(best)) best = at;
  return best;
}

}  // namespace

Probe::Probe(std::string_view pattern, std::size_t toSearch)
    : pattern_(pattern),
      second_(std::max<std::size_t>(rarest(pattern, toSearch), 1) - 1),
      firstPair_(pairAt(pattern.data())),
      secondPair_(pairAt(pattern.data() + second_)) {}

// Plain loops without calls: the compiler makes vector instructions of them.
std::size_t Probe::skipBlocks(const char* text, std::size_t at, std::size_t lastBlock) const {
  const char a = pattern_[0];
  const char b = pattern_[1];
  const char c = pattern_[second_];
  const char d = pattern_[second_ + 1];
  for (;; at = std::min(at + kPlaces, lastBlock)) {
    const char* const first = text + at;
    const char* const second = first + second_;
    unsigned char hit = 0;
    for (std::size_t i = 0; i < kPlaces; ++i) {
      const int isHit =
          (first[i] == a) & (first[i + 1] == b) & (second[i] == c) & (second[i + 1] == d);
      hit = static_cast<unsigned char>(hit | isHit);
    }
    if (hit) return at;
    if (at == lastBlock) return std::string_view::npos;
  }
}

std::size_t Probe::findIn(const char* block, std::ptrdiff_t& credit) const {
  credit -= kBlockCost;
  for (std::size_t i = 0; i < kPlaces; ++i) {
    if (pairAt(block + i) != firstPair_ || pairAt(block + i + second_) != secondPair_) continue;
    if (std::memcmp(block + i, pattern_.data(), pattern_.size()) == 0) return i;
    credit -= static_cast<std::ptrdiff_t>(1 + pattern_.size() / kBytesComparedForOne);
  }
  return std::string_view::npos;
}

Progress Probe::find(std::string_view text, std::size_t from) const {
  const std::size_t places = text.size() - pattern_.size() + 1;
  if (places < from + kPlaces) return Progress::gaveUp(from);
  const std::size_t lastBlock = places - kPlaces;
  std::ptrdiff_t credit = kCredit;
  for (std::size_t at = from;;) {
    const std::size_t block = skipBlocks(text.data(), at, lastBlock);
    if (block == std::string_view::npos) return Progress::nothing();
    credit += static_cast<std::ptrdiff_t>((block - at) / kPlaces);
    const std::size_t found = findIn(text.data() + block, credit);
    if (found != std::string_view::npos) return Progress::found(block + found);
    if (block == lastBlock) return Progress::nothing();
    at = std::min(block + kPlaces, lastBlock);
    if (credit < 0) return Progress::gaveUp(at);
  }
}

}  // namespace zrcommon
