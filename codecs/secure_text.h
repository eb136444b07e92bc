#ifndef ZRCOMMON_CODECS_SECURE_TEXT_H
#define ZRCOMMON_CODECS_SECURE_TEXT_H

#include <cstddef>
#include <string_view>

#include "codecs/base64_groups.h"
#include "codecs/key_track.h"

namespace zrcommon {

/// Bytes that must be readable after a text that is converted to its secure form.
constexpr std::size_t kReadAhead = 8;

/// Mixes and encodes a text in one pass, which takes a third of the time of CCrypt and then
/// CBase64Url for names of four bytes.
///
/// @param text  1 to kTextBytes - 1 bytes, none of them zero
/// @return the end of the secure form, which is not terminated
char* toSecure(const KeyTrack& key, std::string_view text, char* to);

/// Decodes and mixes a secure form in one pass.
///
/// @param secure  any text
/// @return the end of the text, which is not terminated; null if the secure form is empty or too
///         long, is no Base64 or stands for an empty text. Then a part of it may have been written
char* toPlain(const KeyTrack& key, std::string_view secure, char* to);

}  // namespace zrcommon

#endif  // ZRCOMMON_CODECS_SECURE_TEXT_H
