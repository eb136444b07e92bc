#ifndef ZRCOMMON_CODECS_BASE64_TABLES_H
#define ZRCOMMON_CODECS_BASE64_TABLES_H

#include <cstdint>

namespace zrcommon {

constexpr unsigned int kLastValue = 63;
constexpr char kPadding = '$';
constexpr char kSymbols[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!";

constexpr unsigned int byteOf(char character) {
  return static_cast<unsigned char>(character);
}

/// What a character stands for; what is no symbol counts as the last one.
constexpr unsigned int valueOf(unsigned int byte) {
  for (unsigned int value = 0; value < kLastValue; ++value)
    if (byteOf(kSymbols[value]) == byte) return value;
  return kLastValue;
}

constexpr bool isAccepted(unsigned int byte) {
  return valueOf(byte) < kLastValue || byte == byteOf(kSymbols[kLastValue]) ||
         byte == byteOf(kPadding);
}

/// The two symbols of every 12 bits, in the order of memory: half the look-ups of single ones.
struct SymbolPairs {
  std::uint16_t of[4096];

  constexpr SymbolPairs() : of() {
    for (unsigned int bits = 0; bits < 4096; ++bits)
      of[bits] = static_cast<std::uint16_t>(byteOf(kSymbols[bits & kLastValue]) << 8U |
                                            byteOf(kSymbols[bits >> 6U]));
  }
};

/// For every character in each of four places, its share of the three bytes that the four stand
/// for, in the order of memory, and in a fourth byte what is special about it there.
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

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_BASE64_TABLES_H
