#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/file.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kPathBytes = 260;
constexpr std::size_t kExtensionMost = 10;
constexpr int kDraws = 100;

const char* usableExtension(const char* extension) {
  return extension && ::strnlen(extension, kExtensionMost + 1) <= kExtensionMost ? extension
                                                                                 : "tmp";
}

// Draws a name and joins its path. False if the path is too long, as every other draw's would be.
bool draw(char (&path)[kPathBytes], const char* directory, const char* slash, const char* prefix,
          const char* extension) {
  const int first = std::rand() % kDraws;
  const int second = std::rand() % kDraws;
  const int length = std::snprintf(path, sizeof path, "%s%s%s%02d%02d.%s", directory, slash, prefix,
                                   first, second, extension);
  return 0 <= length && static_cast<std::size_t>(length) < sizeof path;
}

}  // namespace

int GetUniqueFileName(const char* directory, const char* prefix, const char* extension,
                      char* name) {
  if (!directory || !prefix || !name) return 0;
  const std::size_t length = std::strlen(directory);
  const char* const slash = length && directory[length - 1] == '/' ? "" : "/";
  char path[kPathBytes];
  // Kept: GetUniqueFileName() draws until it finds a free name, without a limit (test
  // UniqueName.DrawsUntilANameIsFree)
  do {
    if (!draw(path, directory, slash, prefix, usableExtension(extension))) return 0;
  } while (exists(path));
  const char* const drawn = path + length + std::strlen(slash);
  std::memcpy(name, drawn, std::strlen(drawn) + 1);
  return 1;
}
