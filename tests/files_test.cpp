#include <zrcommon/system.h>

#include "support/test.h"

namespace {

S bytes(std::size_t count) {
  S text(count, '\0');
  for (std::size_t i = 0; i < count; ++i) text[i] = static_cast<char>(i * 31 + i / 256);
  return text;
}

}  // namespace

TEST(Paths, InstallationDirectoryOnlyIfItIsThere) {
  Guarded buffer(26);
  ASSERT_EQ(0, ::rename(kInstallation.c_str(), "/usr/lib/Valdrix/away"));
  EXPECT_EQ(0, GetZrPath(buffer.data()));
  EXPECT_EQ(S(26, '#'), buffer.bytes());
  ASSERT_EQ(0, ::rename("/usr/lib/Valdrix/away", kInstallation.c_str()));
  EXPECT_EQ(1, GetZrPath(buffer.data()));
  EXPECT_EQ(kInstallation + '\0', buffer.bytes());
  EXPECT_EQ(0, GetZrPath(nullptr));
}

// Every size up to one that holds the path and more, for zeroed buffers and for buffers whose old
// text has a slash of its own.
TEST(Paths, AppPathStaysInsideItsBuffer) {
  const S path = std::filesystem::read_symlink("/proc/self/exe");
  for (const S& old : {S(2, '\0'), S("//"), S("\0/", 2)})
    for (std::size_t size = 1; size <= path.size() + 2; ++size) {
      Guarded buffer(size);
      (S(path.size(), old[0]) + old).copy(buffer.data(), size);
      S expected = (path + old).substr(0, size);
      const std::size_t slash = expected.substr(0, expected.find('\0')).rfind('/');
      if (slash + 1 < size) expected[slash + 1] = '\0';
      EXPECT_EQ(1, GetAppPath(buffer.data(), static_cast<int>(size)));
      EXPECT_EQ(expected, buffer.bytes()) << size;
    }
  char untouched = '#';
  EXPECT_EQ(0, GetAppPath(&untouched, 0) + GetAppPath(&untouched, -1) + GetAppPath(nullptr, 100));
  EXPECT_EQ('#', untouched);
  const S module = path.substr(0, path.rfind('/') + 1);
  GuardedText buffer(S(module.size(), '#'));
  EXPECT_EQ(1, GetModulePath(buffer.get()) + GetModulePath(nullptr));
  EXPECT_EQ(module, buffer.text());
}

// A program in a directory of so many characters prints what it is told.
TEST(Paths, ModulePathCutsTheExecutablesPath) {
  const ScratchDirectory scratch;
  const S parent = scratch / S(200, 'd') + "/";
  for (const std::size_t length : {258, 259, 260, 261}) {
    const S directory = parent + S(length - parent.size() - 1, 'e') + "/";
    std::filesystem::create_directories(directory);
    std::filesystem::copy(ZR_BUILD_DIR "/zrtool", directory + "z");
    const S module = length <= 259 ? directory : length == 260 ? "" : parent;
    const Outcome outcome = run({directory + "z", "paths"});
    EXPECT_EQ(module.empty() ? 1 : 0, outcome.status) << outcome.err;
    EXPECT_EQ("installation  " + kInstallation + "\napplication   " + directory + "\n" +
                  (module.empty() ? "" : "module        " + module + "\n"),
              outcome.out);
  }
}

TEST(Paths, ValidIsWhatExists) {
  const ScratchDirectory scratch;
  putFile(scratch / "file", "", 0);
  ASSERT_EQ(0, ::symlink("nothing", (scratch / "dangling").c_str()));
  for (const auto& [path, result] :
       Rows<S, int>{{scratch / ".", 1}, {scratch / "file", 1}, {scratch / "dangling", 0}, {"", 0}})
    EXPECT_EQ(result, IsValidPath(path.c_str())) << path;
  EXPECT_EQ(0, IsValidPath(nullptr));
}

TEST(Copy, CopiesEverySize) {
  const ScratchDirectory scratch;
  const S source = scratch / "source", target = scratch / "target";
  ::umask(0);
  for (const std::size_t size : {0, 1, 1023, 1024, 1025, 5000})
    for (const bool isNew : {true, false})
      for (const auto copy : {ZRCopyFile, CopyFile}) {
        putFile(source, bytes(size));
        putFile(target, bytes(9000), 0640);
        if (isNew) std::filesystem::remove(target);
        EXPECT_EQ(1, copy(source.c_str(), target.c_str()));
        EXPECT_EQ(bytes(size), getFile(target)) << size;
        EXPECT_EQ(copy == CopyFile ? 0777U : isNew ? 0600U : 0640U, modeOf(target)) << size;
      }
  ::umask(022);
}

// By a full file system (the last write fails) and by a size limit (it is short).
TEST(Copy, TheEndsDifferWhenTheTargetFillsUp) {
  const TinyFileSystem tiny(8192);
  const ScratchDirectory scratch;
  const S source = scratch / "source";
  putFile(source, bytes(9000));
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

TEST(Copy, NothingHappensWithoutBothFiles) {
  const ScratchDirectory scratch;
  putFile(scratch / "target", "old");
  putFile(scratch / "secret", "x", 0);
  const S target = scratch / "target", secret = scratch / "secret", none = scratch / "none";
  for (const auto copy : {ZRCopyFile, CopyFile}) {
    EXPECT_EQ(0, copy(none.c_str(), target.c_str()) + copy(nullptr, target.c_str()) +
                     copy(target.c_str(), nullptr) + copy(target.c_str(), scratch.path().c_str()));
    EXPECT_EQ(0, runForked([&] {
                   dropPrivileges();
                   return copy(secret.c_str(), target.c_str());
                 }).status);
  }
  EXPECT_EQ("old", getFile(target));
  // A source that opens and cannot be read is empty.
  EXPECT_EQ(1, ZRCopyFile(scratch.path().c_str(), target.c_str()));
  EXPECT_EQ("", getFile(target));
}

TEST(UniqueName, DrawsUntilANameIsFree) {
  for (const auto& [extension, used] : Rows<const char*, S>{
           {nullptr, "tmp"}, {"", ""}, {"0123456789", "0123456789"}, {"0123456789a", "tmp"}})
    for (const int taken : {0, 1, 3}) {
      const ScratchDirectory scratch;
      S expected;
      ::srand(7);
      for (int i = 0; i <= taken; ++i) {
        char digits[8];
        const int first = ::rand() % 100;
        std::snprintf(digits, sizeof digits, "%02d%02d", first, ::rand() % 100);
        expected = S("upd") + digits + "." + used;
        if (i < taken) putFile(scratch / expected, "");
      }
      for (const char* slash : {"", "/"}) {
        GuardedText name(S(expected.size(), '#'));
        ::srand(7);
        EXPECT_EQ(
            1, GetUniqueFileName((scratch.path() + slash).c_str(), "upd", extension, name.get()));
        EXPECT_EQ(expected, name.text());
      }
    }
}

TEST(UniqueName, RefusesWhatDoesNotFit) {
  char name[260] = "untouched";
  const S directory(100, 'd'), longest(152, 'p'), farTooLong(100000, 'p');
  EXPECT_EQ(0, GetUniqueFileName(nullptr, "p", "e", name) +
                   GetUniqueFileName("/", nullptr, "e", name) +
                   GetUniqueFileName("/", "p", "e", nullptr));
  for (const S& prefix : {longest + "p", farTooLong})
    EXPECT_EQ(0, GetUniqueFileName(directory.c_str(), prefix.c_str(), "e", name));
  EXPECT_STREQ("untouched", name);
  EXPECT_EQ(1, GetUniqueFileName(directory.c_str(), longest.c_str(), "e", name));
  EXPECT_EQ(158U, std::strlen(name));
}
