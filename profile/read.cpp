#include <cstdlib>
#include <cstring>
#include <string_view>

#include "profile/argument.h"
#include "profile/chunks.h"
#include "profile/error.h"
#include "profile/line.h"
#include "profile/profile_file.h"
#include "zrcommon/profile.h"

using namespace zrcommon;

namespace {

// Finds the entry in the section whose header was skipped.
bool findEntry(ProfileFile& profile, std::string_view key, std::string_view& entry) {
  const KeyMatcher matcher(key);
  for (auto bytes = profile.chunks(); !bytes.empty(); bytes = profile.chunks()) {
    for (Chunks chunks(bytes); chunks.next();) {
      if (!matcher.stopsAt(chunks)) continue;
      entry = chunks.text();
      // Kept: GetPrivateProfileString() and GetPrivateProfileInt() end the section also at a header
      // without "]" (test ProfileReading.Entries)
      return !isHeader(entry);
    }
    profile.skip(bytes.size());
  }
  return false;
}

// The steps that both readers share; use() receives the value as a C string.
template <typename Use>
ProfileError readValue(const char* section, const char* key, const char* fileName, Use use) {
  const Argument wantedSection(section);
  if (wantedSection.isEmpty()) return kEmptySection;
  const Argument wantedKey(key);
  if (wantedKey.isEmpty()) return kEmptyKey;
  ProfileFile profile(fileName);
  if (!profile) return kCannotOpen;
  const auto skip = [&](std::string_view bytes) { profile.skip(bytes.size()); };
  if (!takeThroughHeader(profile, wantedSection.text(), skip)) return kNoSection;
  std::string_view entry;
  if (!findEntry(profile, wantedKey.text(), entry)) return kNoKey;
  const auto value = valueOf(entry);
  if (!value) return kNoValue;
  return use(profile.terminate(*value));
}

// Kept: GetPrivateProfileString() never writes the last byte of its buffer, so a text that fills
// the buffer is not terminated (test ProfileReading.OutputKeepsItsLastByte)
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
  *error = readValue(section, key, fileName, [&](const char* value) {
    copyOut(out, outSize, value);
    return kSuccess;
  });
  if (*error == kSuccess) return 0;
  copyOut(out, outSize, defaultValue);
  return -1;
}

int GetPrivateProfileInt(const char* section, const char* key, int defaultValue,
                         const char* fileName, unsigned int* error) {
  if (!section || !key || !fileName || !error) return -1;
  int number = defaultValue;
  *error = readValue(section, key, fileName, [&](const char* value) {
    // Kept: GetPrivateProfileInt() fails with an empty value, GetPrivateProfileString() does not
    // (test ProfileReading.Numbers)
    if (!*value) return kNoValue;
    number = std::atoi(value);
    return kSuccess;
  });
  return number;
}
