#include <cstring>

#include "base/copy_truncated.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kKeyBytes = 64;
constexpr std::size_t kBlockBytes = 64;

// Kept: a byte that equals its key byte stays as it is, in the clear. It would become zero and end
// the text, and left alone it comes back on the way back too (test Codecs.KnownAnswers)
char mixed(char byte, char key) {
  const auto result = static_cast<char>(byte ^ key);
  return result ? result : key;
}

void mix(char* text, const char* key, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) text[i] = mixed(text[i], key[i]);
}

// The key written out again and again, so that a block can be mixed from any place in it on.
class KeyTrack {
 public:
  KeyTrack(const char (&key)[kKeyBytes], std::size_t length)
      : length_(length), step_(static_cast<unsigned>(kBlockBytes) % static_cast<unsigned>(length)) {
    if (length <= kKeyBytes / 2)
      lay<kKeyBytes / 2>(key, length);
    else
      lay<kKeyBytes>(key, length);
  }

  const char* place() const { return track_ + place_; }
  void passBlock() {
    place_ += step_;
    if (place_ >= length_) place_ -= length_;
  }

 private:
  // Whole pieces of a fixed size, what is too much of one overwritten by the next.
  template <std::size_t kPiece>
  void lay(const char* key, std::size_t length) {
    for (std::size_t at = 0; at < length + kBlockBytes; at += length)
      std::memcpy(track_ + at, key, kPiece);
  }

  char track_[kKeyBytes + kBlockBytes + kKeyBytes];
  std::size_t length_;
  std::size_t step_;
  std::size_t place_ = 0;
};

}  // namespace

CCrypt::CCrypt(const char* key) : keyLength_(0), key_() {
  static_assert(sizeof key_ == kKeyBytes, "KeyTrack copies the whole array");
  if (!key) throw 1;
  copyTruncated(key_, key);
  keyLength_ = static_cast<int>(std::strlen(key_));
}

bool CCrypt::Encrypt(char* text) {
  if (!text || !*text || keyLength_ == 0) return false;
  KeyTrack key(key_, static_cast<std::size_t>(keyLength_));
  std::size_t length = std::strlen(text);
  for (; length >= kBlockBytes; text += kBlockBytes, length -= kBlockBytes) {
    mix(text, key.place(), kBlockBytes);
    key.passBlock();
  }
  mix(text, key.place(), length);
  return true;
}

bool CCrypt::Decrypt(char* text) {
  return Encrypt(text);
}
