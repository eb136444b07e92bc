#ifndef ZRCOMMON_CODECS_KEY_TRACK_H
#define ZRCOMMON_CODECS_KEY_TRACK_H

#include <emmintrin.h>

#include <cstddef>
#include <cstring>

#include "zrcommon/codecs.h"

namespace zrcommon {

// Kept: CCrypt::Encrypt() leaves a byte that equals its key byte as it is, in the clear. Their
// exclusive-or is zero and would end the text; CCrypt::Decrypt() leaves the byte alone as well
// (test Codecs.Rows)
inline __m128i mixed(__m128i bytes, __m128i key) {
  const __m128i isSame = _mm_cmpeq_epi8(bytes, key);
  return _mm_xor_si128(bytes, _mm_andnot_si128(isSame, key));
}

/// The key of a CCrypt, written out repeatedly, so that the key bytes for any block of text are in
/// one piece.
class KeyTrack {
 public:
  static constexpr std::size_t kMostAhead = 64;
  static constexpr std::size_t kLeastPeriod = 16;

  static bool isEmpty(const CCrypt& crypt) { return crypt.keyLength_ == 0; }

  /// @param crypt  with a key that is not empty
  /// @param ahead  how many bytes will be read from a place on, at most kMostAhead
  KeyTrack(const CCrypt& crypt, std::size_t ahead) {
    const auto length = static_cast<std::size_t>(crypt.keyLength_);
    static_assert(sizeof crypt.key_ == kKeyBytes, "the copies have a fixed size");
    for (period_ = crypt.keyLength_; period() < kLeastPeriod;) period_ += crypt.keyLength_;
    if (length <= kKeyBytes / 2)
      repeat<kKeyBytes / 2>(crypt.key_, length, period() + ahead);
    else
      repeat<kKeyBytes>(crypt.key_, length, period() + ahead);
  }

  /// A multiple of the key's length, kLeastPeriod or more.
  unsigned period() const { return static_cast<unsigned>(period_); }

  /// The key bytes for the text from this place on, which is below period().
  const char* at(std::size_t place) const { return track_ + place; }

  /// The equal place below period() of one below twice period().
  std::size_t reduced(std::size_t place) const {
    const auto less = static_cast<std::ptrdiff_t>(place) - period_;
    return less < 0 ? place : static_cast<std::size_t>(less);
  }

 private:
  static constexpr std::size_t kKeyBytes = 64;

  // Copies of a fixed size compile to a few moves; each overwrites the surplus of the previous one.
  template <std::size_t kCopyBytes>
  void repeat(const char* key, std::size_t length, std::size_t bytes) {
    char* to = track_;
    do {
      std::memcpy(to, key, kCopyBytes);
      to += length;
    } while (to < track_ + bytes);
  }

  alignas(16) char track_[kKeyBytes + kMostAhead + kKeyBytes];
  std::ptrdiff_t period_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_KEY_TRACK_H
