#ifndef ZRCOMMON_TOOLS_PROFILE_LINT_H
#define ZRCOMMON_TOOLS_PROFILE_LINT_H

#include <string>
#include <string_view>
#include <vector>

/// kError: the reader will not see what is meant. kWarning: it may not. kNote: worth knowing.
enum class Severity { kNote, kWarning, kError };

struct Finding {
  std::size_t line;
  Severity severity;
  const char* code;
  std::string message;
};

/// From the least on, so that a severity is the index of its name.
const std::vector<std::string>& severityNames();

/// What the reader makes of a profile, where that may surprise, in the order of the lines.
std::vector<Finding> lintProfile(std::string_view profile);

#endif  // ZRCOMMON_TOOLS_PROFILE_LINT_H
