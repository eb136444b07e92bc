#ifndef ZRCOMMON_PROFILE_ARGUMENT_H
#define ZRCOMMON_PROFILE_ARGUMENT_H

#include <cstring>
#include <string_view>

#include "profile/line.h"

namespace zrcommon {

/// A section name, key or value as the caller gave it, truncated to 256 characters.
class Argument {
 public:
  explicit Argument(const char* text) : text_(text, ::strnlen(text, 256)) {}

  // Kept: GetPrivateProfileString() and the other profile functions check whether a name is empty
  // before they trim it: a name of blanks is accepted and means the empty name
  // (test ProfileReading.Entries)
  bool isEmpty() const { return text_.empty(); }

  std::string_view text() const { return trimmed(text_); }

 private:
  std::string_view text_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_ARGUMENT_H
