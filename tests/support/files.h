#ifndef ZRCOMMON_TESTS_SUPPORT_FILES_H
#define ZRCOMMON_TESTS_SUPPORT_FILES_H

#include <string>

/// Where the library expects the product's files, with the slash.
inline const std::string kInstallation = "/usr/lib/Valdrix/Valdrix/";

/// Creates or replaces a file. Fails the test if it cannot.
void putFile(const std::string& path, const std::string& content, unsigned int mode = 0644);

/// The whole file; empty if there is none.
std::string getFile(const std::string& path);

bool isThere(const std::string& path);

/// Permission bits, such as 0644.
unsigned int modeOf(const std::string& path);

/// A fresh, empty directory, removed with all it holds at the end of the scope.
class ScratchDirectory {
 public:
  ScratchDirectory();
  ~ScratchDirectory();
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  /// The path of an entry of this name.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// A real file system of @p bytes (a few pages), mounted for the scope: it fills up.
class TinyFileSystem {
 public:
  explicit TinyFileSystem(unsigned int bytes);
  ~TinyFileSystem();
  TinyFileSystem(const TinyFileSystem&) = delete;
  TinyFileSystem& operator=(const TinyFileSystem&) = delete;

  std::string operator/(const std::string& name) const { return directory_ / name; }

 private:
  ScratchDirectory directory_;
};

#endif  // ZRCOMMON_TESTS_SUPPORT_FILES_H
