#include "codecs/secure_text.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zrcommon {

namespace {

constexpr std::uint64_t kGroupMask = 0xFFFFFF;

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

// The bytes of the block of eight symbols that begins here, or of what is left of it; where symbols
// are missing the bytes are zero.
std::uint64_t blockOf(std::string_view symbols) {
  if (symbols.size() >= kBlockSymbols)
    return (groupOf(symbols.data()) & kGroupMask) |
           std::uint64_t{groupOf(symbols.data() + kGroupSymbols) & kGroupMask} << 24U;
  if (symbols.size() <= kGroupSymbols) return lastGroupOf(symbols) & kGroupMask;
  return (groupOf(symbols.data()) & kGroupMask) |
         std::uint64_t{lastGroupOf(symbols.substr(kGroupSymbols)) & kGroupMask} << 24U;
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
  if (secure.size() >= kTextBytes || !isBase64(secure)) return nullptr;
  char* const begin = to;
  std::size_t place = 0;
  for (; !secure.empty(); place = key.reduced(place + kBlockBytes)) {
    const std::uint64_t block = blockOf(secure);
    const std::size_t count = bytesBeforeZero(block);
    const std::uint64_t bytes = mixedWord(block, key.at(place));
    if (count < kBlockBytes) {
      for (std::size_t i = 0; i < count; ++i) *to++ = static_cast<char>(bytes >> 8 * i);
      break;
    }
    std::memcpy(to, &bytes, kBlockBytes);
    to += kBlockBytes;
    secure.remove_prefix(std::min(secure.size(), kBlockSymbols));
  }
  return to == begin ? nullptr : to;
}

}  // namespace zrcommon
