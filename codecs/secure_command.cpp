#include <algorithm>
#include <cstddef>
#include <string_view>

#include "codecs/key_track.h"
#include "codecs/secure_text.h"
#include "codecs/window.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kQueryBytes = 5120;
// A copy begins with up to a window of other bytes, and a window of zeros follows it.
constexpr std::size_t kCopyBytes = kQueryBytes + 2 * kWindowBytes;
static_assert(kQueryBytes % kWindowBytes == 0 && kWindowBytes >= kReadAhead);
constexpr unsigned char kToSecure = 1;
constexpr unsigned char kToPlain = 0;

// Kept: CPHPOperations::TransformPhpCommand() converts to the secure form only names whose secure
// form can be converted back: 765 bytes at most, while values may have 1,023
// (test Codecs.Rows)
constexpr std::size_t kNameBytes = (kTextBytes - 1) / 4 * 3;
constexpr std::size_t kValueBytes = kTextBytes - 1;

// The query of a command: where it is, and a copy of it.
struct Query {
  char* place;
  const char* copy;
  std::size_t size;
};

// Reads a command once, and copies window after window, from the last '?' on. Zeros follow the
// copy. A query that is too long has its size and only a part of its copy.
//
// One pass: with strlen(), memrchr() and memcpy() instead, one pair there and back takes 1.4 times
// the time.
Query copiedQuery(char* command, char (&copies)[kCopyBytes]) {
  const std::size_t before = placeInWindow(command);
  char* window = command - before;
  char* to = copies;
  Query query{command, copies + before, 0};
  for (unsigned inCommand = ~0U << before;; inCommand = ~0U, window += kWindowBytes) {
    __m128i bytes = loadWindow(window);
    const unsigned ends = placesOf('\0', bytes) & inCommand;
    if (ends) bytes = firstBytes(bytes, firstOf(ends));
    const unsigned marks = placesOf('?', bytes) & inCommand;
    if (marks) {
      query = {window + lastOf(marks) + 1, copies + lastOf(marks) + 1, 0};
      to = copies;
    }
    storeWindow(to, bytes);
    if (to < copies + kCopyBytes - kWindowBytes) to += kWindowBytes;
    if (ends) {
      storeWindow(to, _mm_setzero_si128());
      query.size = static_cast<std::size_t>(window + firstOf(ends) - query.place);
      return query;
    }
  }
}

// The place of the first mark in a text, or the size of the text. Reads as many bytes as a window
// has. Names and values are short: with memchr() instead, 20 pairs there and back take 1.2 times
// the time.
std::size_t placeOf(char mark, std::string_view text) {
  for (std::size_t at = 0; at < text.size(); at += kWindowBytes) {
    const unsigned found = placesOf(mark, loadAnywhere(text.data() + at));
    if (found) return std::min(at + firstOf(found), text.size());
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
  alignas(kWindowBytes) char copies[kCopyBytes];
  const Query query = copiedQuery(command, copies);
  if (query.size >= kQueryBytes) return false;
  if (KeyTrack::isEmpty(crypt_)) {
    *query.place = '\0';
    return false;
  }
  const KeyTrack key(crypt_, kReadAhead);
  Rebuilt rebuilt(query.place, key, direction == kToSecure);
  const bool isWhole = rebuild(rebuilt, {query.copy, query.size});
  rebuilt.append('\0');
  return isWhole;
}

bool CPHPOperations::ConvertToSecurePhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToSecure);
}

bool CPHPOperations::ConvertToPlainPhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToPlain);
}
