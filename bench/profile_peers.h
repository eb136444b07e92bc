#ifndef ZRCOMMON_BENCH_PROFILE_PEERS_H
#define ZRCOMMON_BENCH_PROFILE_PEERS_H

#include <string>

/// A profile to measure with, and what to look for in it.
struct ProfileSample {
  std::string path;
  std::string middleSection;
  std::string lastSection;
  std::string lastKey;
};

/// Enters those peers that are installed: they read the entry from the file.
void enterReadingPeers(const std::string& row, const ProfileSample& sample,
                       const std::string& section, const std::string& key);

/// The same for peers that can write: they load the file, set "setting19" of the section in the
/// middle and put the result in the file's place.
void enterChangingPeers(const std::string& row, const ProfileSample& sample);

/// Writes a temporary copy, not forced to the disk, and renames it.
void replaceFile(const std::string& path, const char* text, std::size_t length);

#endif  // ZRCOMMON_BENCH_PROFILE_PEERS_H
