#ifndef ZRCOMMON_PROFILE_ARGUMENT_H
#define ZRCOMMON_PROFILE_ARGUMENT_H

#include <string_view>

#include "base/copy_truncated.h"
#include "profile/line.h"

namespace zrcommon {

/// A section name, key or value as the caller gave it, cut at 256 characters.
class Argument {
 public:
  explicit Argument(const char* text) { copyTruncated(copy_, text); }

  // Kept: emptiness is that of the text as given, so a name of blanks passes and stands for the
  // empty name (test ProfileReading.Entries)
  bool isEmpty() const { return copy_[0] == '\0'; }

  std::string_view text() const { return trimmed(copy_); }

 private:
  char copy_[257];
};

}  // namespace zrcommon

#endif  // ZRCOMMON_PROFILE_ARGUMENT_H
