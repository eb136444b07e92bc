#include "tools/hex.h"

#include <cctype>

#include "tools/refusal.h"

namespace {

constexpr char kDigits[] = "0123456789abcdef";
constexpr std::size_t kBytesInLine = 32;

// Skips white space. Returns the value of the next digit, or -1 at the end.
int nextDigit(const std::string& text, std::size_t& at) {
  while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at]))) ++at;
  if (at == text.size()) return -1;
  const int digit = std::tolower(static_cast<unsigned char>(text[at]));
  const std::size_t value = std::string(kDigits).find(static_cast<char>(digit));
  if (value == std::string::npos)
    throw Refusal("character " + std::to_string(at + 1) + " is no hexadecimal digit");
  ++at;
  return static_cast<int>(value);
}

}  // namespace

std::string hexText(const unsigned char* bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) text += i % kBytesInLine == 0 ? '\n' : ' ';
    text += kDigits[bytes[i] >> 4U];
    text += kDigits[bytes[i] & 15U];
  }
  return text;
}

std::string parseHex(const std::string& text) {
  std::string bytes;
  std::size_t at = 0;
  for (int high = nextDigit(text, at); high >= 0; high = nextDigit(text, at)) {
    const int low = nextDigit(text, at);
    if (low < 0) throw Refusal("the last byte has only one hexadecimal digit");
    bytes.push_back(static_cast<char>(high << 4 | low));
  }
  return bytes;
}
