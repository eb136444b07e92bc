#ifndef ZRCOMMON_CODECS_BASE64_GROUPS_H
#define ZRCOMMON_CODECS_BASE64_GROUPS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "codecs/word.h"

namespace zrcommon {

constexpr std::size_t kTextBytes = 1024;  // of a text in either form, terminator included
constexpr unsigned int kLastValue = 63;
constexpr char kPadding = '$';
constexpr char kSymbols[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!";

constexpr unsigned int byteOf(char character) {
  return static_cast<unsigned char>(character);
}

/// The value of a symbol; every byte that is no symbol has the last value.
constexpr unsigned int valueOf(unsigned int byte) {
  for (unsigned int value = 0; value < kLastValue; ++value)
    if (byteOf(kSymbols[value]) == byte) return value;
  return kLastValue;
}

constexpr bool isAccepted(unsigned int byte) {
  return valueOf(byte) < kLastValue || byte == byteOf(kSymbols[kLastValue]) ||
         byte == byteOf(kPadding);
}

/// The two symbols of each 12-bit value, in the order of memory: half the look-ups that single
/// symbols need.
struct SymbolPairs {
  std::uint16_t of[4096];

  constexpr SymbolPairs() : of() {
    for (unsigned int bits = 0; bits < 4096; ++bits)
      of[bits] = static_cast<std::uint16_t>(byteOf(kSymbols[bits & kLastValue]) << 8U |
                                            byteOf(kSymbols[bits >> 6U]));
  }
};

/// For each character in each of four places: its share of the three bytes that the four symbols
/// stand for, in the order of memory, and in a fourth byte what is special about it.
struct Shares {
  static constexpr std::uint32_t kNoSecondByte = 1U << 24U;
  static constexpr std::uint32_t kNoThirdByte = 2U << 24U;
  static constexpr std::uint32_t kStranger = 4U << 24U;
  static constexpr std::uint32_t kSpecial = kNoSecondByte | kNoThirdByte | kStranger;

  std::uint32_t of[4][256];

  constexpr Shares() : of() {
    for (unsigned int byte = 0; byte < 256; ++byte) {
      const std::uint32_t special = isAccepted(byte) ? 0 : kStranger;
      for (unsigned int place = 0; place < 4; ++place) {
        const std::uint32_t bits = valueOf(byte) << (18 - 6 * place);
        of[place][byte] = bits >> 16U | (bits & 0xFF00U) | (bits & 0xFFU) << 16U | special;
      }
    }
    of[2][byteOf(kPadding)] |= kNoSecondByte;
    of[3][byteOf(kPadding)] |= kNoThirdByte;
  }
};

inline constexpr SymbolPairs kPairs;
inline constexpr Shares kShares;

/// A block is six bytes and their eight symbols. Six bytes at a time take 0.8 of the time of three
/// at a time.
constexpr std::size_t kBlockBytes = 6;
constexpr std::size_t kBlockSymbols = 8;
constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupSymbols = 4;

/// The symbols of the first six bytes of a word.
inline std::uint64_t symbolsOf(std::uint64_t word) {
  const std::uint64_t bytes = __builtin_bswap64(word);
  const auto pair = [bytes](unsigned int shift) {
    return std::uint64_t{kPairs.of[bytes >> shift & 0xFFFU]};
  };
  return pair(52) | pair(40) << 16U | pair(28) << 32U | pair(16) << 48U;
}

inline void storeSymbols(char* to, std::uint64_t word) {
  const std::uint64_t symbols = symbolsOf(word);
  std::memcpy(to, &symbols, sizeof symbols);
}

/// Stores the symbols of the @p count last bytes of a text, 1 to 6, and the padding. The word is
/// zero above them.
/// @return the end of what was stored
inline char* storeLastSymbols(char* to, std::uint64_t word, std::size_t count) {
  std::uint64_t symbols = symbolsOf(word);
  std::memcpy(to, &symbols, kGroupSymbols);
  if (count > kGroupBytes) {
    to += kGroupSymbols;
    symbols >>= 32U;
    std::memcpy(to, &symbols, kGroupSymbols);
    count -= kGroupBytes;
  }
  if (count < 3) to[3] = kPadding;
  if (count < 2) to[2] = kPadding;
  return to + kGroupSymbols;
}

/// The three bytes that four symbols stand for, and after them the marks of Shares. Bytes that
/// padding stands for are zero.
inline std::uint32_t groupOf(const char* symbols) {
  std::uint32_t group = kShares.of[0][byteOf(symbols[0])] | kShares.of[1][byteOf(symbols[1])] |
                        kShares.of[2][byteOf(symbols[2])] | kShares.of[3][byteOf(symbols[3])];
  if (group & Shares::kSpecial) {
    if (group & Shares::kNoSecondByte) group &= ~0xFF00U;
    if (group & Shares::kNoThirdByte) group &= ~0xFF0000U;
  }
  return group;
}

// Kept: CBase64Url::Decode() accepts a text of any length; symbols that its last four lack count
// as 'A', a value of 0 (test Codecs.Rows)
//
// Not inlined: commands of one-letter pairs take 0.95 of the time so.
[[gnu::noinline]] inline std::uint32_t incompleteGroupOf(std::string_view symbols) {
  char four[] = {'A', 'A', 'A', 'A'};
  for (std::size_t i = 0; i < symbols.size(); ++i) four[i] = symbols[i];
  return groupOf(four);
}

/// The group of the first four symbols of a text.
inline std::uint32_t groupOf(std::string_view text) {
  return text.size() < kGroupSymbols ? incompleteGroupOf(text) : groupOf(text.data());
}

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_BASE64_GROUPS_H
