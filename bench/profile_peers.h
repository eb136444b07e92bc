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

/// Enters the installed peers, or the one that is named: each reads the last entry from the file.
void enterReadingPeers(const std::string& operation, const std::string& size,
                       const ProfileSample& sample, const std::string& only = "");

/// The same for peers that can write: each loads the file, sets "setting19" of the section in the
/// middle and replaces the file by the result.
void enterChangingPeers(const std::string& operation, const std::string& size,
                        const ProfileSample& sample);

/// Writes a temporary copy, not forced to the disk, and renames it.
void replaceFile(const std::string& path, const char* text, std::size_t length);

#endif  // ZRCOMMON_BENCH_PROFILE_PEERS_H
