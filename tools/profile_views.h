#ifndef ZRCOMMON_TOOLS_PROFILE_VIEWS_H
#define ZRCOMMON_TOOLS_PROFILE_VIEWS_H

#include <string>

#include "tools/output.h"

/// Prints sections, keys and values as the reader sees them, and what it does not see as comments
/// that say why. An empty name stands for all. Throws Refusal if there is nothing of that name.
void showProfile(const std::string& file, const std::string& section, const std::string& key,
                 Output& out);

/// Prints the entries that readers find in one profile only, or with another value. Throws Refusal
/// if there are any.
void diffProfiles(const std::string& before, const std::string& after, Output& out);

/// Tells what an interrupted change left of a profile and its temporary copy. Puts the copy in the
/// place of a profile that is missing; removes it beside one that is not, if @p discard is set.
/// Throws Refusal if anything is left to do.
void recoverProfile(const std::string& file, bool discard, Output& out);

#endif  // ZRCOMMON_TOOLS_PROFILE_VIEWS_H
