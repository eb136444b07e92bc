#include <cstring>

#include "zrcommon/codecs.h"

namespace {

constexpr std::size_t kTextBytes = 1024;  // of what either way accepts, terminator included
constexpr unsigned int kLast = 63;
constexpr char kPadding = '$';
constexpr char kSymbols[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!";

// The value of every byte; what is no symbol counts as the last one.
struct Values {
  unsigned char of[256];

  constexpr Values() : of() {
    for (unsigned char& value : of) value = kLast;
    for (unsigned int i = 0; i < kLast; ++i)
      of[static_cast<unsigned char>(kSymbols[i])] = static_cast<unsigned char>(i);
  }
};
constexpr Values kValues;

unsigned int valueOf(char symbol) {
  return kValues.of[static_cast<unsigned char>(symbol)];
}

unsigned int byteOf(char byte) {
  return static_cast<unsigned char>(byte);
}

char symbolOf(unsigned int bits) {
  return kSymbols[bits & kLast];
}

char lowByteOf(unsigned int bits) {
  return static_cast<char>(bits & 0xFFU);
}

bool isWithin(char symbol, char first, unsigned int count) {
  return static_cast<unsigned char>(symbol - first) < count;
}

bool isAccepted(const char* text, std::size_t length) {
  unsigned int strangers = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const char symbol = text[i];
    const auto letter = static_cast<char>(symbol | 0x20);
    strangers |= !(isWithin(letter, 'a', 26) | isWithin(symbol, '0', 10) | (symbol == '_') |
                   (symbol == '!') | (symbol == kPadding));
  }
  return !strangers;
}

void encodeGroup(char* to, unsigned int bits) {
  to[0] = symbolOf(bits >> 18U);
  to[1] = symbolOf(bits >> 12U);
  to[2] = symbolOf(bits >> 6U);
  to[3] = symbolOf(bits);
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

// Decodes a text in its own place: four symbols are read before their three bytes are written, and
// the bytes never catch up with the symbols.
class Decoder {
 public:
  Decoder(char* text, std::size_t length, std::size_t capacity)
      : text_(text), length_(length), capacity_(capacity) {}

  void run() {
    std::size_t group = 0;
    for (; group < length_ / 4; ++group) decodeGroup(3 * group, text_ + 4 * group);
    if (length_ % 4) decodeRest(group++);
    if (3 * group < capacity_) std::memset(text_ + 3 * group, 0, capacity_ - 3 * group);
  }

 private:
  void decodeGroup(std::size_t at, const char* symbols) {
    const bool hasSecond = symbols[2] != kPadding;
    const bool hasThird = symbols[3] != kPadding;
    const unsigned int bits = valueOf(symbols[0]) << 18U | valueOf(symbols[1]) << 12U |
                              valueOf(symbols[2]) << 6U | valueOf(symbols[3]);
    text_[at] = lowByteOf(bits >> 16U);
    put(at + 1, hasSecond, bits >> 8U);
    put(at + 2, hasThird, bits);
  }

  // Kept: a text may end anywhere, and what its last group lacks counts as 'A', a value of 0
  // (test Base64.DecodesWhatNobodyEncoded)
  void decodeRest(std::size_t group) {
    char symbols[4] = {'A', 'A', 'A', 'A'};
    std::memcpy(symbols, text_ + 4 * group, length_ % 4);
    // The third byte of a single symbol is zero and lies behind the terminator.
    if (length_ == 1) symbols[3] = kPadding;
    decodeGroup(3 * group, symbols);
  }

  // Kept: where padding stands for a byte there is a zero within the capacity, and beyond it the
  // text as it was (test Base64.DecodesWhatNobodyEncoded)
  void put(std::size_t at, bool isThere, unsigned int bits) {
    if (isThere)
      text_[at] = lowByteOf(bits);
    else if (at < capacity_)
      text_[at] = '\0';
  }

  char* text_;
  std::size_t length_;
  std::size_t capacity_;
};

}  // namespace

bool CBase64Url::Encode(char* buffer, unsigned int capacity) {
  if (!buffer || capacity == 0) return false;
  const std::size_t length = ::strnlen(buffer, kTextBytes);
  if (length == 0 || length == kTextBytes) return false;
  // Kept: the capacity bounds nothing; callers pass that of the plain text, in buffers sized for
  // the encoded one (test Base64.KnownAnswers)
  encodeInPlace(buffer, length);
  return true;
}

bool CBase64Url::Decode(char* buffer, unsigned int capacity) {
  if (!buffer || capacity == 0) return false;
  const std::size_t length = ::strnlen(buffer, kTextBytes);
  if (length == 0 || length == kTextBytes || !isAccepted(buffer, length)) return false;
  Decoder(buffer, length, capacity).run();
  return true;
}

char CBase64Url::GetBase64Symbol(unsigned char value) {
  return value < kLast ? kSymbols[value] : kSymbols[kLast];
}

unsigned char CBase64Url::GetASCIISymbol(char symbol) {
  return static_cast<unsigned char>(valueOf(symbol));
}

bool CBase64Url::IsBase64(const char* text) {
  return text && isAccepted(text, std::strlen(text));
}
