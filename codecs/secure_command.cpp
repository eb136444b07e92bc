#include <emmintrin.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "codecs/key_track.h"
#include "codecs/secure_text.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kQueryBytes = 5120;
constexpr std::size_t kWindowBytes = sizeof(__m128i);
static_assert(kWindowBytes >= kReadAhead);
constexpr unsigned char kToSecure = 1;
constexpr unsigned char kToPlain = 0;

// Kept: CPHPOperations::TransformPhpCommand() converts to the secure form only names whose secure
// form can be converted back: 765 bytes at most, while values may have 1,023
// (test Codecs.Rows)
constexpr std::size_t kNameBytes = (kTextBytes - 1) / 4 * 3;
constexpr std::size_t kValueBytes = kTextBytes - 1;

// The place of the first mark in a text, or the size of the text. Reads whole windows. Names and
// values are short: with memchr() instead, 20 pairs there and back take 0.76 us and not 0.68.
std::size_t placeOf(char mark, std::string_view text) {
  const __m128i marks = _mm_set1_epi8(mark);
  for (std::size_t at = 0; at < text.size(); at += kWindowBytes) {
    const __m128i window = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    const auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(window, marks)));
    if (found) return std::min(at + static_cast<unsigned>(__builtin_ctz(found)), text.size());
  }
  return text.size();
}

// Removes the text before the next mark from the rest, with the mark and the marks before it.
// Inlined always: as a call, 20 pairs there and back take 1.1 times the time.
[[gnu::always_inline]] inline std::string_view takeToken(std::string_view& rest, char mark) {
  while (!rest.empty() && rest.front() == mark) rest.remove_prefix(1);
  const std::string_view token = rest.substr(0, placeOf(mark, rest));
  rest.remove_prefix(std::min(token.size() + 1, rest.size()));
  return token;
}

// The caller's query while it is rebuilt. The caller promises the room.
class Rebuilt {
 public:
  Rebuilt(char* query, const KeyTrack& key, bool isToSecure)
      : end_(query), key_(key), isToSecure_(isToSecure) {}

  void append(char mark) { *end_++ = mark; }

  // Kept: CPHPOperations::TransformPhpCommand() takes a name from after any leading '='. The first
  // '=' after the name is written even if no value follows; further ones belong to the value
  // (test Codecs.Rows)
  bool appendPair(std::string_view pair) {
    const std::string_view name = takeToken(pair, '=');
    if (name.empty() || !appendConverted(name, kNameBytes)) return false;
    append('=');
    return pair.empty() || appendConverted(pair, kValueBytes);
  }

 private:
  bool appendConverted(std::string_view text, std::size_t mostToSecure) {
    if (isToSecure_ && text.size() > mostToSecure) return false;
    char* const end = isToSecure_ ? toSecure(key_, text, end_) : toPlain(key_, text, end_);
    if (end) end_ = end;
    return end != nullptr;
  }

  char* end_;
  const KeyTrack& key_;
  bool isToSecure_;
};

bool rebuild(Rebuilt& rebuilt, std::string_view query) {
  std::string_view pair = takeToken(query, '&');
  if (pair.empty()) return false;
  for (;;) {
    if (!rebuilt.appendPair(pair)) return false;
    pair = takeToken(query, '&');
    if (pair.empty()) return true;
    rebuilt.append('&');
  }
}

}  // namespace

bool CPHPOperations::TransformPhpCommand(char* command, unsigned int capacity,
                                         unsigned char direction) {
  if (!command || capacity == 0) return false;
  const std::size_t all = std::strlen(command);
  char* const mark = static_cast<char*>(::memrchr(command, '?', all));
  char* const query = mark ? mark + 1 : command;
  const std::size_t length = all - static_cast<std::size_t>(query - command);
  if (length >= kQueryBytes) return false;
  if (KeyTrack::isEmpty(crypt_)) {
    *query = '\0';
    return false;
  }
  char copy[kQueryBytes + kWindowBytes];
  std::memcpy(copy, query, length);
  std::memset(copy + length, 0, kWindowBytes);
  const KeyTrack key(crypt_);
  Rebuilt rebuilt(query, key, direction == kToSecure);
  const bool isWhole = rebuild(rebuilt, {copy, length});
  rebuilt.append('\0');
  return isWhole;
}

bool CPHPOperations::ConvertToSecurePhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToSecure);
}

bool CPHPOperations::ConvertToPlainPhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToPlain);
}
