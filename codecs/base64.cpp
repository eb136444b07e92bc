#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "codecs/base64_groups.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

// From the last block to the first, so that the text can grow in its own place.
void encodeInPlace(char* text, std::size_t length) {
  std::size_t block = (length - 1) / kBlockBytes;
  const std::size_t last = length - block * kBlockBytes;
  const std::uint64_t lastBytes = loadLast(text + length, length, last);
  *storeLastSymbols(text + block * kBlockSymbols, lastBytes, last) = '\0';
  while (block-- > 0) storeSymbols(text + block * kBlockSymbols, load(text + block * kBlockBytes));
}

// Decodes a text into a work area, and from there over the text if all of it is accepted.
class Decoder {
 public:
  Decoder(char* text, std::size_t length, std::size_t capacity)
      : text_(text), length_(length), capacity_(capacity) {}

  bool run() {
    std::string_view symbols(text_, length_);
    char* end = bytes_;
    for (; end && symbols.size() >= kBlockSymbols; symbols.remove_prefix(kBlockSymbols))
      end = addBlock(end, groupOf(symbols), groupOf(symbols.substr(kGroupSymbols)));
    for (; end && !symbols.empty(); symbols.remove_prefix(std::min(symbols.size(), kGroupSymbols)))
      end = addGroup(end, groupOf(symbols));
    if (!end) return false;
    // Kept: CBase64Url::Decode() writes nothing after the text's terminator, where the third byte
    // of a text of one symbol would be (test Codecs.Rows)
    const std::size_t count = std::min(static_cast<std::size_t>(end - bytes_), length_ + 1);
    // The zeros come first: 16 bytes take 18 ns so, and 23 the other way round.
    if (count < capacity_) std::memset(text_ + count, 0, capacity_ - count);
    std::memcpy(text_, bytes_, count);
    return true;
  }

 private:
  // Both return the end of what was added; null if one of the characters is not accepted.
  char* addBlock(char* to, std::uint64_t first, std::uint64_t second) {
    if ((first | second) & Shares::kSpecial) {
      char* const middle = addGroup(to, static_cast<std::uint32_t>(first));
      return middle ? addGroup(middle, static_cast<std::uint32_t>(second)) : nullptr;
    }
    const std::uint64_t block = first | second << 24U;
    std::memcpy(to, &block, sizeof block);
    return to + kBlockBytes;
  }

  char* addGroup(char* to, std::uint32_t group) {
    if (group & Shares::kStranger) return nullptr;
    std::memcpy(to, &group, sizeof group);
    if (group & Shares::kNoSecondByte) restore(to + 1);
    if (group & Shares::kNoThirdByte) restore(to + 2);
    return to + kGroupBytes;
  }

  // Kept: CBase64Url::Decode() leaves a byte that padding stands for as it was, where it is beyond
  // the capacity; within the capacity the byte becomes zero (test Codecs.Rows)
  void restore(char* byte) {
    const auto place = static_cast<std::size_t>(byte - bytes_);
    if (place >= capacity_) *byte = text_[place];
  }

  char* text_;
  std::size_t length_;
  std::size_t capacity_;
  char bytes_[kTextBytes / 4 * 3 + 1];  // and the marks after the last group
};

}  // namespace

bool CBase64Url::Encode(char* buffer, unsigned int capacity) {
  if (!buffer || capacity == 0) return false;
  const std::size_t length = ::strnlen(buffer, kTextBytes);
  if (length == 0 || length == kTextBytes) return false;
  // Kept: CBase64Url::Encode() ignores any capacity but 0; the buffer must have room for the
  // encoded text (test Codecs.Rows)
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
