#ifndef ZRCOMMON_CODECS_WORD_H
#define ZRCOMMON_CODECS_WORD_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zrcommon {

/// Eight bytes, the first of them in the low places.
inline std::uint64_t load(const char* eightBytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, eightBytes, sizeof word);
  return word;
}

/// The last @p count bytes of a text, 1 to 7, in the low places of a word, and zeros above. Reads
/// nothing outside of the text, whose length is 1 or more.
inline std::uint64_t loadLast(const char* end, std::size_t length, std::size_t count) {
  if (length >= sizeof(std::uint64_t)) return load(end - sizeof(std::uint64_t)) >> (64 - 8 * count);
  std::uint64_t word = 0;
  for (const char* byte = end; byte > end - count;)
    word = word << 8U | static_cast<unsigned char>(*--byte);
  return word;
}

/// Stores the first @p count bytes of a word, 0 to 7, and no other.
/// @return the end of what was stored
inline char* storeFirst(char* to, std::uint64_t word, std::size_t count) {
  constexpr std::size_t kHalf = sizeof word / 2;
  if (count >= kHalf) {
    const std::uint64_t last = word >> 8 * (count - kHalf);
    std::memcpy(to, &word, kHalf);
    std::memcpy(to + count - kHalf, &last, kHalf);
  } else {
    for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<char>(word >> 8 * i);
  }
  return to + count;
}

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_WORD_H
