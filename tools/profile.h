#ifndef ZRCOMMON_TOOLS_PROFILE_H
#define ZRCOMMON_TOOLS_PROFILE_H

#include <string>
#include <vector>

/// A line of a profile of which people expect something else than the reader makes of it.
struct Remark {
  std::size_t line;
  std::string text;
};

/// Says what the reader makes of a profile, where that is surprising. Throws Refusal if the file
/// cannot be opened.
std::vector<Remark> lintProfile(const std::string& path);

/// Tells what an interrupted change left of a profile and its temporary copy. Puts the copy in the
/// place of a profile that is missing; removes it beside one that is not, if @p discard is set.
/// Throws Refusal if anything is left to do.
void recoverProfile(const std::string& file, bool discard);

#endif  // ZRCOMMON_TOOLS_PROFILE_H
