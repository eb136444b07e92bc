#ifndef ZRCOMMON_TOOLS_PROFILE_CHANGE_H
#define ZRCOMMON_TOOLS_PROFILE_CHANGE_H

#include <string>

struct ProfileChange {
  std::string section;
  std::string key;
  std::string value;
};

/// What the library makes of a profile when it sets the entry: tried on a copy, and read back.
/// Throws Refusal if the entry cannot be read back as given.
std::string changedProfile(const std::string& profile, const ProfileChange& change);

/// The difference of two texts in the unified format of diff; empty if they are equal.
std::string unifiedDiff(const std::string& file, const std::string& before,
                        const std::string& after);

#endif  // ZRCOMMON_TOOLS_PROFILE_CHANGE_H
