#ifndef ZRCOMMON_BASE_INSTALL_PATH_H
#define ZRCOMMON_BASE_INSTALL_PATH_H

#include <cstddef>

namespace zrcommon {

inline constexpr char kInstallDirectory[] = "/usr/lib/Valdrix/Valdrix/";

/// The path of a file in the installation directory, joined at compile time. Write the template
/// argument out where a constant is defined: GCC 12 puts a constant whose argument is deduced into
/// writable memory.
template <std::size_t NameSize>
class InstallPath {
 public:
  constexpr explicit InstallPath(const char (&name)[NameSize]) noexcept : text_() {
    for (std::size_t i = 0; i < kDirectoryLength; ++i) text_[i] = kInstallDirectory[i];
    for (std::size_t i = 0; i < NameSize; ++i) text_[kDirectoryLength + i] = name[i];
  }
  constexpr const char* get() const noexcept { return text_; }

 private:
  static constexpr std::size_t kDirectoryLength = sizeof(kInstallDirectory) - 1;
  char text_[kDirectoryLength + NameSize];
};

}  // namespace zrcommon

#endif  // ZRCOMMON_BASE_INSTALL_PATH_H
