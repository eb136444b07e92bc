#include <dlfcn.h>
#include <sys/time.h>
#include <zrcommon/logging.h>
#include <zrcommon/system.h>

#include <climits>

#include "support/calls.h"
#include "support/test.h"

namespace {

const S kModules = ZR_BUILD_DIR "/tests/lib";
const S kSource = kScratch + "source", kTarget = kScratch + "target";

S text(const tagSYSTEMTIME& time) {
  char line[80];
  std::snprintf(line, sizeof line, "%d-%d-%d/%d %d:%d:%d.%d", time.wYear, time.wMonth, time.wDay,
                time.wDayOfWeek, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
  return line;
}

void putScript(const S& path, const S& more = "") {
  putFile(path, "#!/bin/sh\necho out\necho \"$0 $*\" >&2\n" + more, 0755);
}

// Result and code, and what ran. Nothing of the script's standard output is left.
S handle(const S& name, int action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  unsigned int error = 77;
  const int result = HandleService(name.c_str(), action, &error);
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
  return std::to_string(result) + " " + std::to_string(error) + " " +
         testing::internal::GetCapturedStderr();
}

S bytes(std::size_t count) {
  S text(count, '\0');
  for (std::size_t i = 0; i < count; ++i) text[i] = static_cast<char>(i * 31 + i / 256);
  return text;
}

}  // namespace

TEST(Modules, LoadFindAndFree) {
  void* const module = ZRLoadLibrary((kModules + "quiet_inet.so").c_str());
  ASSERT_NE(nullptr, module) << szErrMsg;
  auto* const close = reinterpret_cast<int (*)(void**)>(ZRGetProcAddress(module, "InetCloseFile"));
  EXPECT_TRUE(close && close(nullptr) == 1);
  EXPECT_TRUE(!ZRGetProcAddress(module, "none") && !ZRGetProcAddress(module, nullptr));
  // The loader would look through the program for a null handle.
  EXPECT_EQ(nullptr, ZRGetProcAddress(nullptr, "malloc"));
  EXPECT_EQ(nullptr, ::dlsym(RTLD_DEFAULT, "InetCloseFile")) << "other modules see it";
  ZRFreeLibrary(module);
  ZRFreeLibrary(nullptr);
  EXPECT_EQ(0U, modeOf(kModuleLog));
}

TEST(Modules, FailuresAreLogged) {
  EXPECT_EQ(nullptr, ZRLoadLibrary(nullptr));
  EXPECT_EQ("ZRLoadLibrary: Invalid parameters\n", getFile(kModuleLog));
  // Binding is immediate: the first call would be too late to find out.
  for (const auto& [path, reason] :
       Rows<S, S>{{"/no/such.so",
                   "/no/such.so: cannot open shared object file: No such file or directory"},
                  {kModules + "unresolved_module.so", ""},
                  {"/" + S(3000, 'x'), "/" + S(2048 - 37, 'x')}}) {
    clearPlaces();
    EXPECT_EQ(nullptr, ZRLoadLibrary(path.c_str()));
    const S line = getFile(kModuleLog);
    EXPECT_EQ(szErrMsg + S("\n"), line);
    EXPECT_EQ(0U, line.find("In ZRLoadLibrary(): dlopen Error!!!" + reason)) << line;
  }
  EXPECT_EQ(sizeof szErrMsg - 1, std::strlen(szErrMsg));
}

// Every size up to one that holds the path and more, for zeroed buffers and for buffers whose old
// text has a slash of its own.
TEST(Paths, AppPathStaysInsideItsBuffer) {
  testLink = "/some/program";
  for (const S& old : {S(2, '\0'), S("//"), S("\0/", 2)})
    for (std::size_t size = 1; size <= testLink.size() + 2; ++size) {
      Guarded buffer(size);
      (S(testLink.size(), old[0]) + old).copy(buffer.data(), size);
      S expected = (testLink + old).substr(0, size);
      const std::size_t slash = expected.substr(0, expected.find('\0')).rfind('/');
      if (slash + 1 < size) expected[slash + 1] = '\0';
      EXPECT_EQ(1, GetAppPath(buffer.data(), static_cast<int>(size)));
      EXPECT_EQ(expected, buffer.bytes()) << size;
    }
  testLink.clear();
  char untouched = '#';
  EXPECT_EQ(0, GetAppPath(&untouched, 0) + GetAppPath(&untouched, -1) + GetAppPath(nullptr, 100));
  EXPECT_EQ('#', untouched);
}

TEST(Paths, ModulePathCutsTheExecutablesPath) {
  const S parent = "/" + S(200, 'd') + "/", longest = parent + S(56, 'e') + "/";
  for (const auto& [link, expected] : Rows<S, S>{{"/some/program", "/some/"},
                                                 {longest + "program", longest},
                                                 {parent + S(57, 'e') + "/program", ""},
                                                 {parent + S(58, 'e') + "/program", parent},
                                                 {"program", ""}}) {
    testLink = link;
    GuardedText out(S(expected.size(), '#'));
    EXPECT_EQ(expected.empty() ? 0 : 1, GetModulePath(out.get())) << link;
    EXPECT_EQ(expected, out.text()) << link;
  }
  testLink.clear();
  EXPECT_EQ(0, GetModulePath(nullptr));
}

TEST(Paths, ValidIsWhatExists) {
  const S dangling = kScratch + "dangling";
  putFile(kSource, "", 0);
  ASSERT_EQ(0, ::symlink("nothing", dangling.c_str()));
  for (const auto& [path, result] :
       Rows<S, int>{{kScratch, 1}, {kSource, 1}, {dangling, 0}, {"", 0}})
    EXPECT_EQ(result, IsValidPath(path.c_str())) << path;
  EXPECT_EQ(0, IsValidPath(nullptr) + GetZrPath(nullptr));
}

TEST(Copy, CopiesEverySize) {
  const mode_t mask = ::umask(0);
  for (const std::size_t size : {0, 1023, 1024, 1025, 5000})
    for (const bool isNew : {true, false})
      for (const auto copy : {ZRCopyFile, CopyFile}) {
        putFile(kSource, bytes(size));
        putFile(kTarget, bytes(9000), 0640);
        if (isNew) ::unlink(kTarget.c_str());
        EXPECT_EQ(1, copy(kSource.c_str(), kTarget.c_str()));
        EXPECT_EQ(0, copy(nullptr, kTarget.c_str()) + copy(kTarget.c_str(), nullptr));
        EXPECT_EQ(bytes(size), getFile(kTarget)) << size;
        EXPECT_EQ(copy == CopyFile ? 0777U : isNew ? 0600U : 0640U, modeOf(kTarget)) << size;
      }
  ::umask(mask);
}

// The second write takes a part of its chunk.
TEST(Copy, TheEndsDifferWhenTheTargetFillsUp) {
  putFile(kSource, bytes(9000));
  const auto copyWith = [](auto copy) {
    const auto call = [&] { EXPECT_EQ(0, copy(kSource.c_str(), kTarget.c_str())); };
    return watch(call, {Fault::kIsShort, 5, 0, "", 476}).text();
  };
  EXPECT_EQ("open-r open-rw read write read write close close", copyWith(ZRCopyFile));
  EXPECT_EQ(bytes(1500), getFile(kTarget));
  EXPECT_EQ("open-r open-rw read write read write close remove close", copyWith(CopyFile));
  EXPECT_EQ(0U, modeOf(kTarget));
}

TEST(UniqueName, DrawsUntilANameIsFree) {
  ::srand(7);
  std::vector<S> drawn;
  for (int i = 0; i < 3; ++i) {
    const int first = ::rand() % 100, both = first * 100 + ::rand() % 100;
    drawn.push_back("upd" + std::to_string(10000 + both).substr(1) + ".");
  }
  for (const auto& [extension, used] : Rows<const char*, S>{
           {nullptr, "tmp"}, {"", ""}, {"0123456789", "0123456789"}, {"0123456789a", "tmp"}}) {
    clearPlaces();
    for (const S& free : drawn) {
      for (const char* directory : {"/scratch", "/scratch/"}) {
        GuardedText name(S(free.size() + used.size(), '#'));
        ::srand(7);
        EXPECT_EQ(1, GetUniqueFileName(directory, "upd", extension, name.get()));
        EXPECT_EQ(free + used, name.text());
      }
      putFile(kScratch + free + used, "");
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

TEST(Service, RunsTheScript) {
  putScript(kFirstServices + "both");
  putScript(kServices + "both");
  const S unusual = "A-z_0.9+@,:=%~#!^]}\r\x7F\x80\xC3\xA4";
  putScript(kServices + unusual);
  putScript(kServices + "...", "exit 3\n");
  for (const auto& [name, action, outcome] :
       Rows<S, int, S>{{"both", 1, "1 0 " + kFirstServices + "both start\n"},
                       {"both", 2, "1 0 " + kFirstServices + "both restart\n"},
                       {"both", 3, "1 0 " + kFirstServices + "both stop\n"},
                       {unusual, 4, "1 0 " + kServices + unusual + " status\n"},
                       {"...", 1, "1 0 " + kServices + "... start\n"},
                       {"both", 0, "0 121 "},
                       {"both", 5, "0 121 "},
                       {"both", -1, "0 121 "},
                       {"none", 1, "0 120 "},
                       {"none", 5, "0 120 "}})
    EXPECT_EQ(outcome, handle(name, action)) << name << action;
}

// Where a script of such a name exists it is left alone all the same.
TEST(Service, NamesThatAShellWouldReadAreRefused) {
  for (const S name : {"two words", "semi;colon", "dollar$HOME", "new\nline", "back`tick", "star*",
                       "plain ", "quote'"}) {
    putScript(kServices + name);
    EXPECT_EQ("0 120 ", handle(name, 1)) << name;
  }
  putScript(kServices + "plain");
  for (const S name : {"", ".", "..", "rc.d/../plain", "../init.d/plain"})
    EXPECT_EQ("0 120 ", handle(name, 1)) << name;
  for (const std::size_t length : {255, 300, 1006, 1100, 100000})
    EXPECT_EQ("0 120 ", handle(S(length, 'n'), 5)) << length;
}

TEST(LocalTime, FollowsTheZone) {
  tagSYSTEMTIME time;
  for (const auto& [zone, now, expected] :
       Rows<const char*, timeval, S>{{"UTC0", {0, 0}, "1970-1-1/4 0:0:0.0"},
                                     {"UTC0", {1798761599, 999999}, "2026-12-31/4 23:59:59.999"},
                                     {"EST5", {1798761599, 1000}, "2026-12-31/4 18:59:59.1"},
                                     {"XYZ-10:30", {1798761599, 999}, "2027-1-1/5 10:29:59.0"},
                                     {"UTC0", {-1, 0}, "1969-12-31/3 23:59:59.0"},
                                     {"UTC0", {0, -1}, ""},
                                     {"UTC0", {LONG_MAX, 0}, ""}}) {
    ::setenv("TZ", zone, 1);
    testClock = &now;
    std::memset(&time, 1, sizeof time);
    EXPECT_EQ(expected.empty() ? 0 : 1, GetLocalTime(&time)) << expected;
    EXPECT_EQ(expected.empty() ? "257-257-257/257 257:257:257.257" : expected, text(time));
  }
  EXPECT_EQ(0, GetLocalTime(nullptr));
  testClock = nullptr;
}

TEST(SystemTime, ConvertsTheSharedFieldsOnly) {
  const tagSYSTEMTIME time = {1900, 1, 6, 31, 23, 59, 58, 999};
  struct tm broken;
  std::memset(&broken, 0x55, sizeof broken);
  EXPECT_EQ(&broken, SystemTimeToTm(&time, &broken));
  EXPECT_EQ(0x55555555, broken.tm_yday & broken.tm_isdst);
  tagSYSTEMTIME back;
  EXPECT_EQ(&back, TmToSystemTime(&broken, &back));
  EXPECT_EQ("1900-1-31/6 23:59:58.0", text(back));
  EXPECT_EQ("0 0 31", std::to_string(broken.tm_year) + " " + std::to_string(broken.tm_mon) + " " +
                          std::to_string(broken.tm_mday));
  broken.tm_year = INT_MAX, broken.tm_mon = -2, broken.tm_mday = 65536 + 40;
  EXPECT_EQ("1899-65535-40/6 23:59:58.0", text(*TmToSystemTime(&broken, &back)));
}

TEST(Process, GetPidFindsNothing) {
  int process = 4711;
  char name[] = "init";
  EXPECT_EQ(0, GetPid(name, &process) + GetPid(nullptr, nullptr));
  EXPECT_EQ(4711, process);
}

TEST(Features, Files) {
  const S path = kInstallation + "zrfeature.dat", content("\0\1\2\xFF\4\5\6\7\10\11\12more", 15);
  tagZR_FEATURE feature = {};
  unsigned int error = 77;
  EXPECT_EQ(0, GetZRFeaturesSetting(&feature, nullptr) + GetZRFeaturesSetting(nullptr, &error));
  EXPECT_EQ(77U, error);
  for (const std::size_t size : {15U, 11U, 10U, 5U, 0U}) {
    putFile(path, content.substr(0, size));
    const std::size_t got = std::min(size, sizeof feature);
    std::memset(&feature, '#', sizeof feature);
    errno = 75;
    EXPECT_EQ(size < 11 ? 0 : 1, GetZRFeaturesSetting(&feature, &error));
    EXPECT_EQ(size < 11 ? 75U : 0U, error) << size;
    EXPECT_EQ(content.substr(0, got) + S(11 - got, '#'), bytesOf(feature));
  }
  const auto get = [&] { EXPECT_EQ(0, GetZRFeaturesSetting(&feature, &error)); };
  watch(get, {Fault::kFails, 1, ENOSPC, "close"});
  EXPECT_EQ(unsigned{EIO}, error) << "errno as the close leaves it";
  ASSERT_EQ(0, std::remove(path.c_str()));
  get();
  EXPECT_EQ(2U, error);
}
