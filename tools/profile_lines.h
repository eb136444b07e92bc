#ifndef ZRCOMMON_TOOLS_PROFILE_LINES_H
#define ZRCOMMON_TOOLS_PROFILE_LINES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Why the reader never returns what a line holds.
enum class Hidden {
  kNo,
  kBeforeSections,
  kBrokenHeader,
  kRepeatedSection,
  kRepeatedKey,
  kNoEquals,
  kLongName,
};

/// A line of a profile, or a part of one that is longer than the reader's lines, as the reader sees
/// it. The views point into the bytes that were read.
struct ProfileLine {
  bool isHeader() const;
  bool isEntry() const;

  std::size_t number = 0;
  bool isRest = false;
  std::string_view bytes;
  std::string_view text;
  /// The section that the line begins or belongs to.
  std::string_view section;
  std::string_view key;
  std::optional<std::string_view> value;
  Hidden hidden = Hidden::kNo;
  /// The line that is the reason: what is read instead, or the header above.
  std::size_t because = 0;
};

/// Every line of a profile, in the order of the file.
std::vector<ProfileLine> profileLines(std::string_view bytes);

/// The reason in a word for programs, such as "repeated-key", and as a sentence.
const char* codeOf(Hidden reason);
std::string whyHidden(const ProfileLine& line);

#endif  // ZRCOMMON_TOOLS_PROFILE_LINES_H
