// The searches in memory and in files, against the walk from place to place.
#include <fcntl.h>
#include <unistd.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include "fuzz/support.h"

namespace {

constexpr char kPath[] = "/scratch/searched";
constexpr std::size_t kMostText = 20000;
constexpr std::size_t kMostWalked = 6000;
constexpr std::size_t kLongestInFiles = 2042;

// The middle of a pattern of odd length stands for anything.
template <typename Text>
bool isAt(const Text& text, std::size_t at, const Text& pattern) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool isMiddle = i == pattern.size() - 1 - i;
    if (!isMiddle && text[at + i] != pattern[i]) return false;
  }
  return true;
}

template <typename Text>
std::size_t walk(const Text& text, const Text& pattern) {
  for (std::size_t at = 0; at + pattern.size() <= text.size(); ++at)
    if (isAt(text, at, pattern)) return at;
  return Text::npos;
}

// So that what differs between two units is in the upper half, in the lower half or in both.
std::u16string widen(const std::string& text) {
  std::u16string wide;
  for (const char byte : text) {
    const unsigned int unit = static_cast<unsigned char>(byte);
    wide += static_cast<char16_t>(unit < 0x80 ? unit : unit < 0xC0 ? unit << 8U : unit & 0x3FU);
  }
  return wide.c_str();
}

void checkStrings(const std::string& text, const std::string& pattern, PageEnd& texts,
                  PageEnd& patterns) {
  const char* const in = texts.put(text);
  const char* const found = my_strstr(in, patterns.put(pattern));
  const std::size_t at = walk(text, pattern);
  expect(found == (at == text.npos ? nullptr : in + at), "my_strstr");
  const std::u16string wide = widen(text);
  const std::u16string widePattern = widen(pattern);
  const unsigned short* const wideIn = texts.put(wide);
  const unsigned short* const wideFound = my_wcsstr(wideIn, patterns.put(widePattern));
  const std::size_t wideAt = walk(wide, widePattern);
  expect(wideFound == (wideAt == wide.npos ? nullptr : wideIn + wideAt), "my_wcsstr");
}

const unsigned char* bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

void checkBytes(const std::string& text, const std::string& pattern, PageEnd& texts,
                PageEnd& patterns) {
  const int found = SearchFor(bytes(texts.putBytes(text)), static_cast<int>(text.size()),
                              bytes(patterns.putBytes(pattern)), static_cast<int>(pattern.size()));
  const std::size_t at = pattern.empty() ? text.npos : text.find(pattern);
  expect(found == (at == text.npos ? -1 : static_cast<int>(at)), "SearchFor");
}

void checkFile(std::string text, const std::string& pattern, unsigned int start) {
  putFile(kPath, text);
  const int file = ::open(kPath, O_RDONLY | O_CLOEXEC);
  const long long found =
      SearchInFile(file, bytes(pattern.data()), static_cast<int>(pattern.size()), start);
  ::close(file);
  for (char& byte : text)
    if (byte >= 'a' && byte <= 'z') byte = static_cast<char>(byte - 'a' + 'A');
  const bool isFit = !pattern.empty() && pattern.size() <= kLongestInFiles;
  const std::size_t at = isFit ? text.find(pattern, start) : text.npos;
  expect(found == (at == text.npos ? -1 : static_cast<long long>(at)), "SearchInFile");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static PageEnd texts;
  static PageEnd patterns;
  Input input(data, size);
  const unsigned int times = input.numberUpTo(255);
  const unsigned int start = input.numberUpTo(5000);
  const std::string pattern = input.take(input.numberUpTo(4096));
  const std::string tail = input.line();
  const std::string once = input.rest();
  std::string text;
  for (unsigned int i = 0; i < times && text.size() + once.size() < kMostText; ++i) text += once;
  text += tail;
  checkStrings(visible(text.substr(0, kMostWalked)), visible(pattern), texts, patterns);
  checkBytes(text, pattern, texts, patterns);
  // A pattern nearly as long as a piece makes little progress with each.
  checkFile(text.substr(0, pattern.size() < 1000 ? kMostText : 3000), pattern, start);
  return 0;
}
