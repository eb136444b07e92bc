#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "codecs/key_track.h"
#include "codecs/secure_text.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

static_assert(sizeof(CBase64Url) == 1 && sizeof(CUTF8) == 1, "no state");
static_assert(std::is_trivially_copyable<CCrypt>::value &&
                  std::is_trivially_copyable<CPHPOperations>::value,
              "copied as bytes");

CPHPOperations::CPHPOperations(const char* key) : base64_(), crypt_(key) {
  static_assert(offsetof(CPHPOperations, crypt_) == 4, "components embed it by value");
}

bool CPHPOperations::ConvertToSecureString(char* text, unsigned int capacity) {
  if (!text || capacity == 0 || ::strnlen(text, kTextBytes) == kTextBytes) return false;
  return crypt_.Encrypt(text) && base64_.Encode(text, capacity);
}

bool CPHPOperations::ConvertToPlainString(const char* secure, char* to, unsigned int capacity) {
  if (!secure || !to || capacity == 0 || KeyTrack::isEmpty(crypt_)) return false;
  char plain[kTextBytes];
  const char* const end =
      toPlain(KeyTrack(crypt_, kReadAhead), {secure, ::strnlen(secure, kTextBytes)}, plain);
  if (!end) return false;
  const auto length = static_cast<std::size_t>(end - plain);
  // Kept: CPHPOperations::ConvertToPlainString() fills the capacity with zeros, and copies the
  // whole text even if it is longer (test Codecs.Rows)
  std::memset(to, 0, capacity);
  std::memcpy(to, plain, length);
  to[length] = '\0';
  return true;
}

bool CPHPOperations::ConvertToPlainString(char* text, unsigned int capacity) {
  return ConvertToPlainString(text, text, capacity);
}

bool CPHPOperations::ConvertToSecureKeyValuePair(const char* name, const char* value, char* to,
                                                 unsigned int capacity) {
  if (!name || !value || !to || capacity == 0) return false;
  std::memmove(to, name, std::strlen(name) + 1);
  if (!ConvertToSecureString(to, capacity)) return false;
  char* const end = to + std::strlen(to);
  std::memcpy(end, "=", 2);
  // Kept: CPHPOperations::ConvertToSecureKeyValuePair() fails for an empty value and leaves the
  // name and its '=' in place (test Codecs.Rows)
  const std::size_t length = ::strnlen(value, kTextBytes);
  if (length == 0 || length == kTextBytes) return false;
  char copy[kTextBytes + kReadAhead];
  std::memcpy(copy, value, length);
  *toSecure(KeyTrack(crypt_, kReadAhead), {copy, length}, end + 1) = '\0';
  return true;
}
