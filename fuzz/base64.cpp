// Base64 both ways, against the arithmetic written out, and there and back again.
#include <zrcommon/codecs.h>

#include <algorithm>
#include <vector>

#include "fuzz/support.h"

namespace {

const std::string kSymbols = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!";
constexpr std::size_t kMost = 1023;

unsigned int byteAt(const std::string& text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

std::string encodePlainly(const std::string& text) {
  std::string encoded;
  for (std::size_t i = 0; i < text.size(); i += 3) {
    const unsigned int bits =
        byteAt(text, i) << 16U | byteAt(text, i + 1) << 8U | byteAt(text, i + 2);
    encoded += kSymbols[bits >> 18U];
    encoded += kSymbols[bits >> 12U & 63U];
    encoded += i + 1 < text.size() ? kSymbols[bits >> 6U & 63U] : '$';
    encoded += i + 2 < text.size() ? kSymbols[bits & 63U] : '$';
  }
  return encoded;
}

unsigned int valueAt(const std::string& text, std::size_t at) {
  return at < text.size()
             ? static_cast<unsigned int>(std::min(kSymbols.find(text[at]), kMost)) & 63U
             : 0;
}

// Into the buffer that holds the text.
void decodePlainly(const std::string& text, std::size_t capacity, std::string& buffer) {
  const std::size_t size = buffer.size();
  std::fill_n(buffer.begin(), capacity, '\0');
  buffer.resize(size + 4);
  for (std::size_t i = 0, to = 0; i < text.size(); i += 4, to += 3) {
    unsigned int bits = 0;
    for (std::size_t place = 0; place < 4; ++place) bits = bits << 6U | valueAt(text, i + place);
    buffer[to] = static_cast<char>(bits >> 16U);
    if (i + 2 >= text.size() || text[i + 2] != '$') buffer[to + 1] = static_cast<char>(bits >> 8U);
    if (i + 3 >= text.size() || text[i + 3] != '$') buffer[to + 2] = static_cast<char>(bits);
  }
  buffer.resize(size);
}

std::vector<char> bufferWith(const std::string& text, std::size_t size) {
  std::vector<char> buffer(std::max(size, text.size() + 1), '#');
  std::copy_n(text.c_str(), text.size() + 1, buffer.begin());
  return buffer;
}

void checkEncoding(const std::string& text) {
  CBase64Url base64;
  const std::string expected = encodePlainly(text);
  std::vector<char> buffer = bufferWith(text, expected.size() + 1);
  const bool isFit = !text.empty() && text.size() <= kMost;
  expect(base64.Encode(buffer.data(), 1) == isFit, "what fits is encoded");
  expect(buffer.data() == (isFit ? expected : text), "the encoding is the one expected");
  if (!isFit || expected.size() > kMost) return;
  expect(base64.IsBase64(buffer.data()), "an encoding is one");
  expect(base64.Decode(buffer.data(), static_cast<unsigned int>(buffer.size())), "it is decoded");
  expect(buffer.data() == text, "the text comes back");
}

void checkDecoding(const std::string& text, unsigned int capacity) {
  CBase64Url base64;
  const bool isBase64 = text.find_first_not_of(kSymbols + "$") == std::string::npos;
  expect(base64.IsBase64(text.c_str()) == isBase64, "strangers are told from symbols");
  const bool isFit = isBase64 && capacity > 0 && !text.empty() && text.size() <= kMost;
  std::vector<char> buffer = bufferWith(text, capacity);
  std::string expected(buffer.begin(), buffer.end());
  if (isFit) decodePlainly(text, capacity, expected);
  expect(base64.Decode(buffer.data(), capacity) == isFit, "what is fit is decoded");
  expect(std::string(buffer.begin(), buffer.end()) == expected, "the bytes are those expected");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const unsigned int capacity = input.numberUpTo(1500);
  const std::string text = visible(input.rest());
  checkEncoding(text);
  checkDecoding(text, capacity);
  return 0;
}
