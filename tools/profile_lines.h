#ifndef ZRCOMMON_TOOLS_PROFILE_LINES_H
#define ZRCOMMON_TOOLS_PROFILE_LINES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Why the reader never returns what a line holds.
struct Hidden {
  const char* code;
  /// A sentence. If it ends in a blank, the number of a line belongs there.
  const char* why;
};

/// A line of a profile, or a part of one that is longer than the reader's lines, as the reader sees
/// it. The views point into the bytes that were read.
struct ProfileLine {
  bool isHeader() const;
  bool isEntry() const;
  std::string whyHidden() const;

  std::size_t number = 0;
  bool isRest = false;
  std::string_view bytes;
  std::string_view text;
  /// The section that the line begins or belongs to.
  std::string_view section;
  std::string_view key;
  std::optional<std::string_view> value;
  /// Null if readers find the line.
  const Hidden* hidden = nullptr;
  /// The line that is read instead, or the header above.
  std::size_t because = 0;
};

/// Every line of a profile, in the order of the file.
std::vector<ProfileLine> profileLines(std::string_view bytes);

#endif  // ZRCOMMON_TOOLS_PROFILE_LINES_H
