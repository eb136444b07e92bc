#include <algorithm>
#include <cstring>

#include "codecs/base64_tables.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kTextBytes = 1024;  // of what either way accepts, terminator included
constexpr SymbolPairs kPairs;
constexpr Shares kShares;

void encodeGroup(char* to, unsigned int bits) {
  const std::uint32_t symbols = kPairs.of[bits >> 12U] | std::uint32_t{kPairs.of[bits & 4095U]}
                                                             << 16U;
  std::memcpy(to, &symbols, sizeof symbols);
}

void encodeLastGroup(char* to, const char* from, std::size_t count) {
  const bool isPair = count == 2;
  encodeGroup(to, byteOf(from[0]) << 16U | (isPair ? byteOf(from[1]) << 8U : 0));
  if (!isPair) to[2] = kPadding;
  to[3] = kPadding;
}

// From the last group to the first, so that the text can grow in its own place.
void encodeInPlace(char* text, std::size_t length) {
  std::size_t group = length / 3;
  const std::size_t left = length % 3;
  text[4 * (group + (left ? 1 : 0))] = '\0';
  if (left) encodeLastGroup(text + 4 * group, text + 3 * group, left);
  while (group-- > 0) {
    const char* const from = text + 3 * group;
    encodeGroup(text + 4 * group, byteOf(from[0]) << 16U | byteOf(from[1]) << 8U | byteOf(from[2]));
  }
}

std::uint32_t sharesOf(const char* symbols) {
  return kShares.of[0][byteOf(symbols[0])] | kShares.of[1][byteOf(symbols[1])] |
         kShares.of[2][byteOf(symbols[2])] | kShares.of[3][byteOf(symbols[3])];
}

// Decodes a text, and puts the bytes in its place if all of it is symbols and padding.
class Decoder {
 public:
  Decoder(char* text, std::size_t length, std::size_t capacity)
      : text_(text), length_(length), capacity_(capacity) {}

  bool run() {
    const char* const lastGroup = text_ + length_ / 4 * 4;
    for (const char* group = text_; group < lastGroup; group += 4)
      if (!decodeGroup(group)) return false;
    if (length_ % 4 && !decodeRest(lastGroup)) return false;
    // The third byte of a text of one symbol would lie behind its terminator, and is zero.
    const std::size_t count = std::min(decoded_, length_ + 1);
    std::memcpy(text_, bytes_, count);
    if (count < capacity_) std::memset(text_ + count, 0, capacity_ - count);
    return true;
  }

 private:
  bool decodeGroup(const char* symbols) {
    const std::uint32_t shares = sharesOf(symbols);
    std::memcpy(bytes_ + decoded_, &shares, sizeof shares);
    if (shares & Shares::kSpecial && !leaveOut(shares)) return false;
    decoded_ += 3;
    return true;
  }

  // Kept: a text may end anywhere, and what its last group lacks counts as 'A', a value of 0
  // (test Base64.DecodesWhatNobodyEncoded)
  bool decodeRest(const char* symbols) {
    char group[4] = {'A', 'A', 'A', 'A'};
    std::memcpy(group, symbols, length_ % 4);
    return decodeGroup(group);
  }

  // Kept: where padding stands for a byte there is a zero within the capacity, and beyond it the
  // text as it was (test Base64.DecodesWhatNobodyEncoded)
  bool leaveOut(std::uint32_t shares) {
    if (shares & Shares::kStranger) return false;
    if (shares & Shares::kNoSecondByte) bytes_[decoded_ + 1] = oldByte(decoded_ + 1);
    if (shares & Shares::kNoThirdByte) bytes_[decoded_ + 2] = oldByte(decoded_ + 2);
    return true;
  }

  char oldByte(std::size_t at) const { return at < capacity_ ? '\0' : text_[at]; }

  char* text_;
  std::size_t length_;
  std::size_t capacity_;
  std::size_t decoded_ = 0;
  char bytes_[kTextBytes / 4 * 3 + 1];  // and the fourth byte of the last group
};

}  // namespace

bool CBase64Url::Encode(char* buffer, unsigned int capacity) {
  if (!buffer || capacity == 0) return false;
  const std::size_t length = ::strnlen(buffer, kTextBytes);
  if (length == 0 || length == kTextBytes) return false;
  // Kept: the capacity bounds nothing; callers pass that of the plain text, in buffers sized for
  // the encoded one (test Codecs.KnownAnswers)
  encodeInPlace(buffer, length);
  return true;
}

bool CBase64Url::Decode(char* buffer, unsigned int capacity) {
  if (!buffer || capacity == 0) return false;
  const std::size_t length = ::strnlen(buffer, kTextBytes);
  if (length == 0 || length == kTextBytes) return false;
  return Decoder(buffer, length, capacity).run();
}

char CBase64Url::GetBase64Symbol(unsigned char value) {
  return kSymbols[std::min<unsigned int>(value, kLastValue)];
}

unsigned char CBase64Url::GetASCIISymbol(char symbol) {
  return static_cast<unsigned char>(valueOf(byteOf(symbol)));
}

bool CBase64Url::IsBase64(const char* text) {
  if (!text) return false;
  for (; *text; ++text)
    if (kShares.of[0][byteOf(*text)] & Shares::kStranger) return false;
  return true;
}
