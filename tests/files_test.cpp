#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zrcommon/system.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "support/child.h"
#include "support/files.h"
#include "support/guarded.h"

namespace {

const std::string kInstalled = "/usr/lib/Valdrix/Valdrix";

std::string bytes(std::size_t count) {
  std::string text(count, '\0');
  for (std::size_t i = 0; i < count; ++i) text[i] = static_cast<char>(i * 31 + i / 256);
  return text;
}

std::string executable() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

TEST(Paths, InstallationDirectoryOnlyIfItIsThere) {
  Guarded buffer(26);
  ASSERT_EQ(0, ::rename(kInstalled.c_str(), "/usr/lib/Valdrix/away"));
  EXPECT_EQ(0, GetZrPath(buffer.data()));
  EXPECT_EQ(std::string(26, '#'), buffer.bytes());
  ASSERT_EQ(0, ::rename("/usr/lib/Valdrix/away", kInstalled.c_str()));
  EXPECT_EQ(1, GetZrPath(buffer.data()));
  EXPECT_EQ(std::string("/usr/lib/Valdrix/Valdrix/\0", 26), buffer.bytes());
  EXPECT_EQ(0, GetZrPath(nullptr));
}

// Every size up to one that holds the path and its terminator, for zeroed buffers and for buffers
// whose old text has a slash of its own.
TEST(Paths, AppPathStaysInsideItsBuffer) {
  const std::string path = executable();
  for (const char fill : {'\0', '/'}) {
    for (std::size_t size = 1; size <= path.size() + 2; ++size) {
      Guarded buffer(size);
      std::memset(buffer.data(), fill, size);
      std::string expected = (path + std::string(2, fill)).substr(0, size);
      const std::size_t slash = expected.rfind('/');
      if (slash + 1 < size) expected[slash + 1] = '\0';
      EXPECT_EQ(1, GetAppPath(buffer.data(), static_cast<int>(size)));
      EXPECT_EQ(expected, buffer.bytes()) << size;
    }
  }
  char untouched = '#';
  for (const int size : {0, -1}) EXPECT_EQ(0, GetAppPath(&untouched, size));
  EXPECT_EQ('#', untouched);
  EXPECT_EQ(0, GetAppPath(nullptr, 100));
}

TEST(Paths, ModulePathIsTheSameTerminated) {
  const std::string expected = directoryOf(executable());
  Guarded buffer(expected.size() + 1);
  EXPECT_EQ(1, GetModulePath(buffer.data()));
  EXPECT_STREQ(expected.c_str(), buffer.data());
  EXPECT_EQ(0, GetModulePath(nullptr));
}

// A program in a directory of so many characters prints what it is told.
TEST(Paths, ModulePathCutsTheExecutablesPath) {
  const ScratchDirectory scratch;
  const std::string parent = scratch / std::string(200, 'd') + "/";
  for (const std::size_t length : {258, 259, 260, 261}) {
    const std::string directory = parent + std::string(length - parent.size() - 1, 'e') + "/";
    std::filesystem::create_directories(directory);
    std::filesystem::copy(ZR_BUILD_DIR "/zrtool", directory + "z");
    const std::string module = length <= 259 ? directory : length == 260 ? "" : parent;
    const Outcome outcome = run({directory + "z", "paths"});
    EXPECT_EQ(module.empty() ? 1 : 0, outcome.status) << outcome.err;
    EXPECT_EQ("installation  " + kInstalled + "/\napplication   " + directory + "\n" +
                  (module.empty() ? "" : "module        " + module + "\n"),
              outcome.out);
  }
}

TEST(Paths, ValidIsWhatExists) {
  const ScratchDirectory scratch;
  putFile(scratch / "file", "", 0);
  ASSERT_EQ(0, ::symlink("nothing", (scratch / "dangling").c_str()));
  EXPECT_EQ(1, IsValidPath(scratch.path().c_str()));
  EXPECT_EQ(1, IsValidPath((scratch / "file").c_str()));
  EXPECT_EQ(0, IsValidPath((scratch / "dangling").c_str()));
  EXPECT_EQ(0, IsValidPath(""));
  EXPECT_EQ(0, IsValidPath(nullptr));
}

TEST(Copy, CopiesEverySize) {
  const ScratchDirectory scratch;
  const std::string source = scratch / "source";
  ::umask(0);
  for (const std::size_t size : {0, 1, 1023, 1024, 1025, 5000}) {
    putFile(source, bytes(size));
    for (const bool isNew : {true, false}) {
      const std::string plain = scratch / "plain";
      const std::string open = scratch / "open";
      for (const std::string& target : {plain, open}) {
        std::filesystem::remove(target);
        if (!isNew) putFile(target, bytes(9000), 0640);
      }
      EXPECT_EQ(1, ZRCopyFile(source.c_str(), plain.c_str()));
      EXPECT_EQ(1, CopyFile(source.c_str(), open.c_str()));
      EXPECT_EQ(bytes(size), getFile(plain)) << size;
      EXPECT_EQ(bytes(size), getFile(open)) << size;
      EXPECT_EQ(isNew ? 0600U : 0640U, modeOf(plain));
      EXPECT_EQ(0777U, modeOf(open));
    }
  }
  ::umask(022);
}

// By a full file system (the last write fails) and by a size limit (it is short).
TEST(Copy, TheEndsDifferWhenTheTargetFillsUp) {
  const TinyFileSystem tiny(8192);
  const ScratchDirectory scratch;
  const std::string source = scratch / "source";
  putFile(source, bytes(9000));
  errno = 0;
  EXPECT_EQ(0, CopyFile(source.c_str(), (tiny / "target").c_str()));
  EXPECT_EQ(ENOSPC, errno);
  EXPECT_FALSE(isThere(tiny / "target"));
  EXPECT_EQ(0, ZRCopyFile(source.c_str(), (tiny / "target").c_str()));
  EXPECT_EQ(bytes(8192), getFile(tiny / "target"));
  const Outcome limited = runForked([&] {
    const rlimit limit = {1500, 1500};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return ZRCopyFile(source.c_str(), (scratch / "plain").c_str()) |
           CopyFile(source.c_str(), (scratch / "open").c_str());
  });
  EXPECT_EQ(0, limited.status);
  EXPECT_EQ(bytes(1500), getFile(scratch / "plain"));
  EXPECT_FALSE(isThere(scratch / "open"));
}

TEST(Copy, ReadErrorIsTheEndOfTheSource) {
  const ScratchDirectory scratch;
  putFile(scratch / "target", "old");
  EXPECT_EQ(1, ZRCopyFile(scratch.path().c_str(), (scratch / "target").c_str()));
  EXPECT_EQ("", getFile(scratch / "target"));
}

TEST(Copy, NothingHappensWithoutBothFiles) {
  const ScratchDirectory scratch;
  putFile(scratch / "target", "old");
  putFile(scratch / "secret", "x", 0);
  const std::string target = scratch / "target";
  for (const auto copy : {ZRCopyFile, CopyFile}) {
    EXPECT_EQ(0, copy((scratch / "none").c_str(), target.c_str()));
    EXPECT_EQ(0, copy(nullptr, target.c_str()));
    EXPECT_EQ(0, copy(target.c_str(), nullptr));
    EXPECT_EQ(0, copy(target.c_str(), scratch.path().c_str()));
    EXPECT_EQ(0, runForked([&] {
                   dropPrivileges();
                   return copy((scratch / "secret").c_str(), target.c_str());
                 }).status);
  }
  EXPECT_EQ("old", getFile(target));
}

TEST(UniqueName, DrawsUntilANameIsFree) {
  const struct {
    const char* extension;
    const char* expected;
  } rows[] = {
      {nullptr, "tmp"}, {"", ""}, {"0123456789", "0123456789"}, {"0123456789a", "tmp"}, {"d", "d"}};
  for (const auto& row : rows) {
    const ScratchDirectory scratch;
    for (const int taken : {0, 1, 3}) {
      std::string expected;
      ::srand(7);
      for (int i = 0; i <= taken; ++i) {
        char digits[8];
        const int first = ::rand() % 100;
        std::snprintf(digits, sizeof digits, "%02d%02d", first, ::rand() % 100);
        expected = std::string("upd") + digits + "." + row.expected;
        if (i < taken) putFile(scratch / expected, "");
      }
      for (const char* slash : {"", "/"}) {
        GuardedText name(std::string(expected.size(), '#'));
        ::srand(7);
        EXPECT_EQ(1, GetUniqueFileName((scratch.path() + slash).c_str(), "upd", row.extension,
                                       name.data()));
        EXPECT_STREQ(expected.c_str(), name.data());
      }
    }
  }
}

TEST(UniqueName, RefusesWhatDoesNotFit) {
  char name[260] = "untouched";
  EXPECT_EQ(0, GetUniqueFileName(nullptr, "p", "e", name));
  EXPECT_EQ(0, GetUniqueFileName("/", nullptr, "e", name));
  EXPECT_EQ(0, GetUniqueFileName("/", "p", "e", nullptr));
  const std::string directory(100, 'd');
  for (const std::size_t prefix : {153, 100000})
    EXPECT_EQ(0, GetUniqueFileName(directory.c_str(), std::string(prefix, 'p').c_str(), "e", name));
  EXPECT_STREQ("untouched", name);
  EXPECT_EQ(1, GetUniqueFileName(directory.c_str(), std::string(152, 'p').c_str(), "e", name));
  EXPECT_EQ(158U, std::strlen(name));
}
