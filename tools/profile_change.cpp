#include "tools/profile_change.h"

#include <zrcommon/profile.h>

#include <cstdio>
#include <memory>

#include "profile/error.h"
#include "profile/line.h"
#include "tools/codes.h"
#include "tools/input.h"
#include "tools/scratch.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kLongestArgument = 256;
constexpr std::size_t kRoomForEntry = 2048;

bool hasOneOf(const std::string& text, const char* characters) {
  return text.find_first_of(characters) != text.npos;
}

const char* whyUnreadable(const ProfileChange& change) {
  for (const std::string& each : {change.section, change.key, change.value}) {
    if (each.size() > kLongestArgument) return "the writer truncates to 256 characters";
    if (hasOneOf(each, "\n")) return "a line feed ends the line";
  }
  if (hasOneOf(change.section, "]")) return "the name of a section ends at the first \"]\"";
  if (hasOneOf(change.key, "=")) return "a key ends at the first \"=\"";
  if (hasOneOf(std::string(trimmed(change.key).substr(0, 1)), "#;"))
    return "a line that begins with \"#\" or \";\" is a comment";
  return "a line that begins with \"[\" is a header";
}

// The library does not notice a full disk, so there has to be room for the copy and the change of
// it.
void makeRoom(const Scratch& scratch, std::size_t size) {
  scratch.put("room", std::string(2 * size + kRoomForEntry, ' '));
  std::filesystem::remove(scratch / "room");
}

std::string readBack(const std::string& path, const ProfileChange& change) {
  char value[kChunkLength + 1] = {};
  unsigned int error = 0;
  GetPrivateProfileString(change.section.c_str(), change.key.c_str(), "", value, sizeof value,
                          path.c_str(), &error);
  return error == kSuccess ? value : std::string("\n");
}

}  // namespace

std::string changedProfile(const std::string& profile, const ProfileChange& change) {
  const Scratch scratch;
  const std::string copy = scratch / "profile";
  makeRoom(scratch, profile.size());
  scratch.put("profile", profile);
  unsigned int error = 0;
  WritePrivateProfileString(change.section.c_str(), change.key.c_str(), change.value.c_str(),
                            copy.c_str(), &error);
  if (error == kSuccess && trimmed(change.section).empty()) error = kEmptySection;
  if (error == kSuccess && trimmed(change.key).empty()) error = kEmptyKey;
  if (error != kSuccess) throw refusal(CodeOf::kProfile, error, "nothing was changed");
  if (readBack(copy, change) != trimmed(change.value))
    throw Refusal(std::string("nothing was changed: the entry could not be read back: ") +
                  whyUnreadable(change));
  return InputFile(copy).content();
}

std::string unifiedDiff(const std::string& file, const std::string& before,
                        const std::string& after) {
  if (before == after) return "";
  const Scratch scratch;
  scratch.put("before", before);
  scratch.put("after", after);
  ::setenv("ZRTOOL_SCRATCH", (scratch / "").c_str(), 1);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> diff(
      ::popen("cd \"$ZRTOOL_SCRATCH\" && diff -a -u before after | sed 1,2d", "r"), ::pclose);
  if (!diff) throw systemRefusal("diff");
  std::string lines = "--- " + file + "\n+++ " + file + '\n';
  for (int each = 0; (each = std::fgetc(diff.get())) != EOF;) lines += static_cast<char>(each);
  return lines;
}
