#include <cstdio>
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

struct Change {
  std::string_view section;
  std::string_view key;
  std::string_view value;
};

// The name of the copy that replaces the profile.
class TemporaryName {
 public:
  // False if the profile's path leaves no room for the suffix.
  bool form(const char* path) {
    const std::size_t length = ::strnlen(path, kBytes);
    if (length + sizeof kSuffix > kBytes) return false;
    std::memcpy(text_, path, length);
    std::memcpy(text_ + length, kSuffix, sizeof kSuffix);
    return true;
  }
  const char* get() const { return text_; }

 private:
  static constexpr std::size_t kBytes = 261;
  static constexpr char kSuffix[] = ".tmp";
  char text_[kBytes];
};

void appendEntry(ProfileFile& profile, const Change& change) {
  profile.append(change.key);
  profile.append("=");
  profile.append(change.value);
  profile.append("\n");
}

// Copies lines as the writer leaves them.
// Kept: WritePrivateProfileString() writes the lines before the change trimmed and with LF and
// leaves those after it as they are, so a file can get mixed line ends (test ProfileWriting.Files)
class TrimmedCopy {
 public:
  TrimmedCopy(ProfileFile& profile, std::string_view chunks)
      : profile_(profile), copied_(chunks.data()) {}

  // Copies the chunk. Lines that are trimmed already are copied later, together.
  void add(const Chunks& chunks) {
    if (chunks.isTrimmedLine()) return;
    const std::string_view chunk = chunks.chunk();
    finish(chunk.data());
    profile_.skip(chunk.size());
    profile_.append(chunks.text());
    profile_.append("\n");
    copied_ = chunk.data() + chunk.size();
  }

  // Copies what was added and is not copied yet, which ends here.
  void finish(const char* end) {
    const std::string_view lines(copied_, static_cast<std::size_t>(end - copied_));
    profile_.skip(lines.size());
    profile_.append(lines);
    copied_ = end;
  }

 private:
  ProfileFile& profile_;
  const char* copied_;
};

void copyTrimmed(ProfileFile& profile, std::string_view bytes) {
  TrimmedCopy copy(profile, bytes);
  for (Chunks chunks(bytes); chunks.nextUntrimmed();) copy.add(chunks);
  copy.finish(bytes.data() + bytes.size());
}

// Copies everything through the header of the section; if there is none, adds it at the end.
void copyThroughHeader(ProfileFile& profile, std::string_view section) {
  const auto copy = [&](std::string_view bytes) { copyTrimmed(profile, bytes); };
  if (takeThroughHeader(profile, section, copy)) return;
  profile.append("[");
  profile.append(section);
  profile.append("]\n");
}

// Copies the section up to the old entry and writes the new one instead of it; if there is none, at
// the end of the section.
void copyThroughEntry(ProfileFile& profile, const Change& change) {
  const KeyMatcher matcher(change.key);
  for (auto bytes = profile.chunks(); !bytes.empty(); bytes = profile.chunks()) {
    TrimmedCopy copy(profile, bytes);
    for (Chunks chunks(bytes); chunks.next(); copy.add(chunks)) {
      if (!matcher.stopsAt(chunks)) continue;
      copy.finish(chunks.chunk().data());
      // Kept: WritePrivateProfileString() puts a new entry after the blank lines and comments that
      // close the section (test ProfileWriting.Files)
      appendEntry(profile, change);
      if (!isHeader(chunks.text())) return profile.skip(chunks.chunk().size());
      copy.add(chunks);
      return copy.finish(chunks.chunk().data() + chunks.chunk().size());
    }
    copy.finish(bytes.data() + bytes.size());
  }
  appendEntry(profile, change);
}

// Kept: WritePrivateProfileString() drops the rest of a chunk after the change from a zero byte on,
// line feed included, so the next line joins it (test ProfileWriting.Files)
void copyRest(ProfileFile& profile) {
  for (auto chunks = profile.chunks(); !chunks.empty(); chunks = profile.chunks()) {
    profile.skip(chunks.size());
    std::size_t known = 0;
    for (std::size_t zero = 0; (zero = chunks.find('\0', known)) != std::string_view::npos;) {
      const std::size_t next = chunkEnd(chunks, chunkStart(chunks, known, zero));
      profile.append(chunks.substr(known, zero - known));
      known = next;
    }
    profile.append(chunks.substr(known));
  }
}

bool writeCopy(const char* fileName, const char* copyName, const Change& change) {
  ProfileFile profile(fileName, copyName);
  if (!profile) return false;
  copyThroughHeader(profile, change.section);
  copyThroughEntry(profile, change);
  copyRest(profile);
  profile.finishCopy();
  return true;
}

ProfileError changeEntry(const char* section, const char* key, const char* value,
                         const char* fileName) {
  const Argument ownSection(section);
  if (ownSection.isEmpty()) return kEmptySection;
  const Argument ownKey(key);
  if (ownKey.isEmpty()) return kEmptyKey;
  const Argument ownValue(value);
  if (ownValue.isEmpty()) return kEmptyValue;
  TemporaryName copyName;
  if (!copyName.form(fileName)) return kCannotOpen;
  if (!writeCopy(fileName, copyName.get(), {ownSection.text(), ownKey.text(), ownValue.text()}))
    return kCannotOpen;
  // Kept: WritePrivateProfileString() removes the profile before it renames the copy, and reports
  // success even if either fails (test ProfileWriting.ReplacesInTheAgreedOrder)
  (void)std::remove(fileName);
  (void)std::rename(copyName.get(), fileName);
  return kSuccess;
}

}  // namespace

int WritePrivateProfileString(const char* section, const char* key, const char* value,
                              const char* fileName, unsigned int* error) {
  if (!section || !key || !value || !fileName || !error) return -1;
  *error = changeEntry(section, key, value, fileName);
  return *error == kSuccess ? 0 : -1;
}
