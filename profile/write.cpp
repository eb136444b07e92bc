#include <cstdio>
#include <cstring>

#include "profile/argument.h"
#include "profile/error.h"
#include "profile/output_file.h"
#include "profile/pieces.h"
#include "zrcommon/profile.h"

using namespace zrcommon;

namespace {

struct Change {
  std::string_view section;
  std::string_view key;
  std::string_view value;
};

// The name of the copy that takes the profile's place.
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

void appendEntry(OutputFile& copy, const Change& change) {
  copy.append(change.key);
  copy.append("=");
  copy.appendLine(change.value);
}

bool isTrimmedLine(std::string_view piece) {
  if (piece.back() != '\n') return false;
  piece.remove_suffix(1);
  return piece.empty() || !(isBlank(piece.front()) || isBlank(piece.back()));
}

// Runs of lines that are trimmed already go out whole.
// Kept: lines in front of the change are rewritten trimmed and with LF, those behind it are not, so
// files with mixed line ends result (test ProfileWriting.Files)
void appendTrimmed(OutputFile& copy, std::string_view pieces) {
  const bool hasZeros = pieces.find('\0') != std::string_view::npos;
  std::size_t run = 0;
  for (std::size_t start = 0, end = 0; start < pieces.size(); start = end) {
    end = pieceEnd(pieces, start);
    const std::string_view piece = pieces.substr(start, end - start);
    if (!hasZeros && isTrimmedLine(piece)) continue;
    copy.append(pieces.substr(run, start - run));
    copy.appendLine(textOf(piece));
    run = end;
  }
  copy.append(pieces.substr(run));
}

// Copies up to the header of the section; at the end of the file, makes one.
void copyThroughHeader(LineSource& profile, std::string_view section, OutputFile& copy) {
  const auto append = [&](std::string_view pieces) { appendTrimmed(copy, pieces); };
  if (takeThroughHeader(profile, section, append)) return;
  copy.append("[");
  copy.append(section);
  copy.appendLine("]");
}

// Copies up to the entry, whose place the new one takes; else the section's end is its place.
void copyThroughEntry(LineSource& profile, const Change& change, OutputFile& copy) {
  std::string_view piece;
  while (profile.next(piece)) {
    const std::string_view text = textOf(piece);
    if (isHeader(text)) {
      // Kept: the new entry comes behind the blank lines and comments that close the section
      // (test ProfileWriting.Files)
      appendEntry(copy, change);
      return copy.appendLine(text);
    }
    if (!isComment(text) && isSameName(keyOf(text), change.key)) break;
    copy.appendLine(text);
  }
  appendEntry(copy, change);
}

// Kept: a zero byte cuts its piece off, line feed included, so the next line joins it; files with
// zero bytes have always come out so (test ProfileWriting.Files)
void appendVisible(OutputFile& copy, std::string_view pieces) {
  std::size_t known = 0;
  for (std::size_t zero = 0; (zero = pieces.find('\0', known)) != std::string_view::npos;) {
    copy.append(pieces.substr(known, zero - known));
    known = pieceEnd(pieces, pieceStart(pieces, known, zero));
  }
  copy.append(pieces.substr(known));
}

void copyRest(LineSource& profile, OutputFile& copy) {
  for (auto pieces = profile.wholePieces(); !pieces.empty(); pieces = profile.wholePieces()) {
    appendVisible(copy, pieces);
    profile.skip(pieces.size());
  }
}

// The profile is closed before the copy.
bool writeCopy(const char* fileName, const char* copyName, const Change& change) {
  OutputFile copy;
  LineSource profile(fileName);
  if (!profile || !copy.create(copyName)) return false;
  copyThroughHeader(profile, change.section, copy);
  copyThroughEntry(profile, change, copy);
  copyRest(profile, copy);
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
  // Kept: the profile is removed before the copy is renamed, and success is reported whatever comes
  // of either (test ProfileWriting.ReplacesInTheAgreedOrder)
  (void)std::remove(fileName);
  (void)std::rename(copyName.get(), fileName);
  return kNoError;
}

}  // namespace

int WritePrivateProfileString(const char* section, const char* key, const char* value,
                              const char* fileName, unsigned int* error) {
  if (!section || !key || !value || !fileName || !error) return -1;
  *error = changeEntry(section, key, value, fileName);
  return *error == kNoError ? 0 : -1;
}
