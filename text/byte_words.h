#ifndef ZRCOMMON_TEXT_BYTE_WORDS_H
#define ZRCOMMON_TEXT_BYTE_WORDS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

/// The same byte eight times.
constexpr std::uint64_t eachByte(unsigned char byte) {
  return byte * UINT64_C(0x0101010101010101);
}

/// Applies @p change, which treats every byte of a word alike, to @p count bytes: eight at a time,
/// so that the compiler can go on to sixteen.
template <typename Change>
void changeBytes(unsigned char* bytes, std::size_t count, Change change) {
  const std::size_t words = count / sizeof(std::uint64_t);
  for (std::size_t i = 0; i < words; ++i) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes + i * sizeof word, sizeof word);
    word = change(word);
    std::memcpy(bytes + i * sizeof word, &word, sizeof word);
  }
  for (std::size_t i = words * sizeof(std::uint64_t); i < count; ++i)
    bytes[i] = static_cast<unsigned char>(change(std::uint64_t{bytes[i]}));
}

/// Rotates every byte of a word left.
template <unsigned kBits>
constexpr std::uint64_t rotateBytesLeft(std::uint64_t word) {
  constexpr unsigned kOthers = 8 - kBits;
  return (word & eachByte(0xFF >> kBits)) << kBits | (word >> kOthers & eachByte(0xFF >> kOthers));
}

#endif  // ZRCOMMON_TEXT_BYTE_WORDS_H
