#ifndef ZRCOMMON_CODECS_SECURE_TEXT_H
#define ZRCOMMON_CODECS_SECURE_TEXT_H

#include <cstddef>
#include <cstring>
#include <string_view>

#include "zrcommon/codecs.h"

namespace zrcommon {

/// Bytes that a text to be converted may have in either form, terminator included.
constexpr std::size_t kTextBytes = 1024;

/// One text on its way from one form to the other. Takes only what fits, and has room for the
/// secure form of the longest text that it takes.
class SecureText {
 public:
  SecureText(CBase64Url& base64, CCrypt& crypt) : base64_(base64), crypt_(crypt) {}

  bool take(std::string_view text) {
    if (text.size() >= kTextBytes) return false;
    length_ = text.size();
    std::memcpy(text_, text.data(), length_);
    text_[length_] = '\0';
    return true;
  }
  bool take(const char* text) { return take({text, ::strnlen(text, kTextBytes)}); }

  bool toSecure() { return crypt_.Encrypt(text_) && base64_.Encode(text_, kSecureBytes); }

  // The capacity ends the decoded text; what lies behind it is nobody's.
  bool toPlain() {
    return base64_.Decode(text_, static_cast<unsigned int>(length_ + 1)) && crypt_.Decrypt(text_);
  }

  const char* text() const { return text_; }

 private:
  static constexpr std::size_t kSecureBytes = (kTextBytes - 1 + 2) / 3 * 4 + 1;

  CBase64Url& base64_;
  CCrypt& crypt_;
  std::size_t length_ = 0;
  char text_[kSecureBytes];
};

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_SECURE_TEXT_H
