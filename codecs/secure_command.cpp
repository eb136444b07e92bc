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
constexpr unsigned char kToSecure = 1;
constexpr unsigned char kToPlain = 0;

// Kept: CPHPOperations::TransformPhpCommand() converts to the secure form only names whose secure
// form can be converted back: 765 bytes at most, while values may have 1,023
// (test Codecs.Rows)
constexpr std::size_t kNameBytes = (kTextBytes - 1) / 4 * 3;
constexpr std::size_t kValueBytes = kTextBytes - 1;

// Removes the text before the next mark from the rest, with the mark and the marks before it.
std::string_view takeToken(std::string_view& rest, char mark) {
  const char* begin = rest.data();
  const char* const end = begin + rest.size();
  while (begin < end && *begin == mark) ++begin;
  const auto size = static_cast<std::size_t>(end - begin);
  const auto* const found = static_cast<const char*>(std::memchr(begin, mark, size));
  rest = found ? std::string_view(found + 1, static_cast<std::size_t>(end - found - 1)) : "";
  return {begin, found ? static_cast<std::size_t>(found - begin) : size};
}

// The caller's query while it is rebuilt: always terminated. The caller promises the room.
class Rebuilt {
 public:
  Rebuilt(char* query, const KeyTrack& key, bool isToSecure)
      : end_(query), key_(key), isToSecure_(isToSecure) {
    finish(end_);
  }

  void append(char mark) {
    *end_ = mark;
    finish(end_ + 1);
  }

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
    if (!end) return false;
    finish(end);
    return true;
  }

  void finish(char* end) {
    end_ = end;
    *end_ = '\0';
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
  char* const mark = std::strrchr(command, '?');
  char* const query = mark ? mark + 1 : command;
  const std::size_t length = ::strnlen(query, kQueryBytes);
  if (length == kQueryBytes) return false;
  if (KeyTrack::isEmpty(crypt_)) {
    *query = '\0';
    return false;
  }
  char copy[kQueryBytes + kReadAhead];
  std::memcpy(copy, query, length);
  const KeyTrack key(crypt_);
  Rebuilt rebuilt(query, key, direction == kToSecure);
  return rebuild(rebuilt, {copy, length});
}

bool CPHPOperations::ConvertToSecurePhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToSecure);
}

bool CPHPOperations::ConvertToPlainPhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToPlain);
}
