#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "base/copy_truncated.h"
#include "codecs/key_track.h"
#include "codecs/word.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kWindowBytes = sizeof(__m128i);

// Reads past the end of a text, but never out of its page, as the address is aligned.
[[gnu::no_sanitize_address]] __m128i load(const char* aligned) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(aligned));
}

__m128i keyWindow(const char* key) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(key));
}

void mixByte(char& byte, char key) {
  if (byte != key) byte = static_cast<char>(byte ^ key);
}

// Stores the first count bytes, fewer than 16, and no other.
void storeFirst(char* to, __m128i bytes, unsigned count) {
  if (count & 8U) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), bytes);
    bytes = _mm_unpackhi_epi64(bytes, bytes);
    to += 8;
  }
  zrcommon::storeFirst(to, static_cast<std::uint64_t>(_mm_cvtsi128_si64(bytes)), count & 7U);
}

// Mixes 16 bytes, or those before the text's end. False if the text ends there.
bool mixWindow(char* text, const char* key) {
  const __m128i bytes = load(text);
  const __m128i result = mixed(bytes, keyWindow(key));
  const int ends = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128()));
  if (ends) {
    storeFirst(text, result, static_cast<unsigned>(__builtin_ctz(static_cast<unsigned>(ends))));
    return false;
  }
  _mm_store_si128(reinterpret_cast<__m128i*>(text), result);
  return true;
}

}  // namespace

CCrypt::CCrypt(const char* key) : keyLength_(0), key_() {
  if (!key) throw 1;
  copyTruncated(key_, key);
  keyLength_ = static_cast<int>(std::strlen(key_));
}

// Looks for the end and mixes in one pass: 100 bytes take 14 ns. With strlen() first they take 17,
// because strlen() waits for what was stored to the text just before.
bool CCrypt::Encrypt(char* text) {
  if (!text || !*text || keyLength_ == 0) return false;
  const KeyTrack key(*this);
  std::size_t place = 0;
  static_assert(kWindowBytes <= KeyTrack::kLeastPeriod, "the places before a window need no check");
  for (; reinterpret_cast<std::uintptr_t>(text) % kWindowBytes != 0; ++text, ++place) {
    if (!*text) return true;
    mixByte(*text, *key.at(place));
  }
  const std::size_t step = static_cast<unsigned>(KeyTrack::kBlockBytes) % key.period();
  for (;; text += KeyTrack::kBlockBytes, place = key.reduced(place + step))
    for (std::size_t at = 0; at < KeyTrack::kBlockBytes; at += kWindowBytes)
      if (!mixWindow(text + at, key.at(place) + at)) return true;
}

bool CCrypt::Decrypt(char* text) {
  return Encrypt(text);
}
