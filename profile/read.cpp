#include <cstdlib>

#include "profile/argument.h"
#include "profile/error.h"
#include "profile/pieces.h"
#include "zrcommon/profile.h"

using namespace zrcommon;

namespace {

// Finds the entry in the section that was entered.
bool findEntry(LineSource& profile, std::string_view key, std::string_view& entry) {
  std::string_view piece;
  while (profile.next(piece)) {
    entry = textOf(piece);
    // Kept: a header without "]" ends the section, too (test ProfileReading.Entries)
    if (isHeader(entry)) return false;
    if (!isComment(entry) && isSameName(keyOf(entry), key)) return true;
  }
  return false;
}

// The walk that both readers share.
ProfileError readValue(const char* section, const char* key, const char* fileName,
                       char (&value)[kLineBytes]) {
  const Argument wantedSection(section);
  if (wantedSection.isEmpty()) return kEmptySection;
  const Argument wantedKey(key);
  if (wantedKey.isEmpty()) return kEmptyKey;
  LineSource profile(fileName);
  if (!profile) return kCannotOpen;
  const auto ignore = [](std::string_view) {};
  if (!takeThroughHeader(profile, wantedSection.text(), ignore)) return kNoSection;
  std::string_view entry;
  if (!findEntry(profile, wantedKey.text(), entry)) return kNoKey;
  const auto found = valueOf(entry);
  if (!found) return kNoValue;
  value[found->copy(value, kLineBytes - 1)] = '\0';
  return kNoError;
}

// Kept: the last byte is never written, so a text that fills the buffer is not terminated; callers
// zero it first (test ProfileReading.OutputKeepsItsLastByte)
void copyOut(char* out, unsigned int outSize, const char* text) {
  if (outSize == 0) return;
  const std::size_t room = outSize - 1;
  const std::size_t length = ::strnlen(text, room);
  std::memmove(out, text, length);
  std::memset(out + length, 0, room - length);
}

}  // namespace

int GetPrivateProfileString(const char* section, const char* key, const char* defaultValue,
                            char* out, unsigned int outSize, const char* fileName,
                            unsigned int* error) {
  if (!section || !key || !defaultValue || !out || !fileName || !error) return -1;
  char value[kLineBytes];
  *error = readValue(section, key, fileName, value);
  copyOut(out, outSize, *error == kNoError ? value : defaultValue);
  return *error == kNoError ? 0 : -1;
}

int GetPrivateProfileInt(const char* section, const char* key, int defaultValue,
                         const char* fileName, unsigned int* error) {
  if (!section || !key || !fileName || !error) return -1;
  char value[kLineBytes];
  *error = readValue(section, key, fileName, value);
  // Kept: an empty value is an error here and a success for the string
  // (test ProfileReading.Numbers)
  if (*error == kNoError && !*value) *error = kNoValue;
  return *error == kNoError ? std::atoi(value) : defaultValue;
}
