#include "codecs/secure_text.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zrcommon {

namespace {

constexpr std::uint64_t kGroupMask = 0xFFFFFF;
constexpr std::uint64_t kStrangerInBlock = std::uint64_t{Shares::kStranger} << 32U;

std::uint64_t mixedWord(std::uint64_t word, const char* key) {
  const __m128i keyBytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(key));
  const __m128i bytes = _mm_cvtsi64_si128(static_cast<long long>(word));
  return static_cast<std::uint64_t>(_mm_cvtsi128_si64(mixed(bytes, keyBytes)));
}

bool isBase64(std::string_view text) {
  std::uint32_t marks = 0;
  for (const char symbol : text) marks |= kShares.of[0][byteOf(symbol)];
  return !(marks & Shares::kStranger);
}

// The bytes of the first eight symbols of a text, zeros where symbols are missing, and after them
// the marks of Shares.
std::uint64_t blockOf(std::string_view text) {
  const std::uint64_t first = groupOf(text);
  const std::uint64_t second =
      text.size() > kGroupSymbols ? groupOf(text.substr(kGroupSymbols)) : 0;
  return (first & kGroupMask) | (second & kGroupMask) << 24U |
         ((first | second) & ~kGroupMask) << 32U;
}

// How many of the six bytes come before a zero byte.
std::size_t bytesBeforeZero(std::uint64_t block) {
  constexpr std::uint64_t kOnes = 0x01010101010101;
  const std::uint64_t zeros = (block - kOnes) & ~block & kOnes << 7U;
  return static_cast<unsigned>(__builtin_ctzll(zeros)) / 8;
}

}  // namespace

char* toSecure(const KeyTrack& key, std::string_view text, char* to) {
  const char* from = text.data();
  std::size_t left = text.size();
  std::size_t place = 0;
  for (; left > kBlockBytes; left -= kBlockBytes) {
    storeSymbols(to, mixedWord(load(from), key.at(place)));
    from += kBlockBytes;
    to += kBlockSymbols;
    place = key.reduced(place + kBlockBytes);
  }
  const std::uint64_t kept = (std::uint64_t{1} << 8 * left) - 1;
  return storeLastSymbols(to, mixedWord(load(from), key.at(place)) & kept, left);
}

char* toPlain(const KeyTrack& key, std::string_view secure, char* to) {
  if (secure.size() >= kTextBytes) return nullptr;
  char* const begin = to;
  for (std::size_t place = 0; !secure.empty(); place = key.reduced(place + kBlockBytes)) {
    const std::uint64_t block = blockOf(secure);
    if (block & kStrangerInBlock) return nullptr;
    secure.remove_prefix(std::min(secure.size(), kBlockSymbols));
    const std::size_t count = bytesBeforeZero(block);
    const std::uint64_t bytes = mixedWord(block, key.at(place));
    if (count < kBlockBytes) {
      to = storeFirst(to, bytes, count);
      if (!isBase64(secure)) return nullptr;
      break;
    }
    to = storeFirst(to, bytes, kBlockBytes);
  }
  return to == begin ? nullptr : to;
}

}  // namespace zrcommon
