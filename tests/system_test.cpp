#include <dlfcn.h>
#include <sys/time.h>
#include <zrcommon/logging.h>
#include <zrcommon/system.h>

#include <climits>

#include "support/test.h"

namespace {

const S kModuleLog = "/zrcommon.log";
const S kServices = "/etc/init.d/", kFirstServices = "/etc/init.d/rc.d/";

// What gettimeofday() gives the library in this program.
struct {
  int result;
  timeval now;
} clockSetting;

S take(const S& path) {
  const S content = getFile(path);
  ::unlink(path.c_str());
  return content;
}

S text(const tagSYSTEMTIME& time) {
  char line[80];
  std::snprintf(line, sizeof line, "%d-%d-%d/%d %d:%d:%d.%d", time.wYear, time.wMonth, time.wDay,
                time.wDayOfWeek, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
  return line;
}

void putScript(const S& path, const S& more = "") {
  putFile(path, "#!/bin/sh\necho \"$0 $*\" >>/scratch/ran\n" + more, 0755);
}

// Result and code, and what ran.
S handle(const S& name, int action) {
  unsigned int error = 77;
  const int result = HandleService(name.c_str(), action, &error);
  return std::to_string(result) + " " + std::to_string(error) + " " + take("/scratch/ran");
}

}  // namespace

extern "C" int gettimeofday(timeval* now, void*) noexcept {
  *now = clockSetting.now;
  return clockSetting.result;
}

TEST(Modules, LoadFindAndFree) {
  void* const module = ZRLoadLibrary(ZR_BUILD_DIR "/tests/libplain_module.so");
  ASSERT_NE(nullptr, module) << szErrMsg;
  auto* const answer = reinterpret_cast<int (*)()>(ZRGetProcAddress(module, "answer"));
  EXPECT_TRUE(answer && answer() == 42);
  EXPECT_TRUE(!ZRGetProcAddress(module, "none") && !ZRGetProcAddress(module, nullptr) &&
              !ZRGetProcAddress(nullptr, "answer"));
  ZRFreeLibrary(module);
  ZRFreeLibrary(nullptr);
  EXPECT_FALSE(isThere(kModuleLog));
}

TEST(Modules, FailuresAreLogged) {
  EXPECT_EQ(nullptr, ZRLoadLibrary(nullptr));
  EXPECT_EQ("ZRLoadLibrary: Invalid parameters\n", take(kModuleLog));
  // Binding is immediate: the first call would be too late to find out.
  for (const auto& [path, reason] :
       Rows<S, S>{{"/no/such.so",
                   "/no/such.so: cannot open shared object file: No such file or directory"},
                  {ZR_BUILD_DIR "/tests/libunresolved_module.so", ""},
                  {"/" + S(3000, 'x'), "/" + S(2048 - 37, 'x')}}) {
    EXPECT_EQ(nullptr, ZRLoadLibrary(path.c_str()));
    const S line = take(kModuleLog);
    EXPECT_EQ(szErrMsg + S("\n"), line);
    EXPECT_EQ(0U, line.find("In ZRLoadLibrary(): dlopen Error!!!" + reason)) << line;
  }
  EXPECT_EQ(sizeof szErrMsg - 1, std::strlen(szErrMsg));
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

// Whatever exists under the name counts, and what the shell makes of it is not looked at.
TEST(Service, OnlyStandardOutputIsThrownAway) {
  putFile(kServices + "notexecutable", "", 0600);
  putScript(kServices + "talks", "echo out\necho err >&2\n");
  const Outcome outcome = runForked([] {
    int failures = 0;
    for (const char* name : {"talks", "rc.d", "notexecutable"})
      for (const int action : {1, 2, 3, 4}) failures += handle(name, action).substr(0, 4) != "1 0 ";
    return failures;
  });
  EXPECT_EQ(0, outcome.status);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ(0U, outcome.err.find("err\nerr\nerr\nerr\n"));
}

TEST(LocalTime, FollowsTheZone) {
  for (const auto& [zone, now, expected] :
       Rows<const char*, timeval, S>{{"UTC0", {0, 0}, "1970-1-1/4 0:0:0.0"},
                                     {"UTC0", {1798761599, 999999}, "2026-12-31/4 23:59:59.999"},
                                     {"EST5", {1798761599, 1000}, "2026-12-31/4 18:59:59.1"},
                                     {"XYZ-10:30", {1798761599, 999}, "2027-1-1/5 10:29:59.0"},
                                     {"UTC0", {-1, 0}, "1969-12-31/3 23:59:59.0"}}) {
    ::setenv("TZ", zone, 1);
    clockSetting = {0, now};
    tagSYSTEMTIME time;
    std::memset(&time, 0xEE, sizeof time);
    EXPECT_EQ(1, GetLocalTime(&time));
    EXPECT_EQ(expected, text(time));
  }
  tagSYSTEMTIME untouched = {};
  for (const auto& failing : {decltype(clockSetting){-1, {}}, {0, {LONG_MAX, 0}}}) {
    clockSetting = failing;
    EXPECT_EQ(0, GetLocalTime(&untouched) + GetLocalTime(nullptr));
  }
  EXPECT_EQ("0-0-0/0 0:0:0.0", text(untouched));
}

TEST(SystemTime, ConvertsTheSharedFieldsOnly) {
  const tagSYSTEMTIME time = {1900, 1, 6, 31, 23, 59, 58, 999};
  struct tm broken;
  std::memset(&broken, 0x55, sizeof broken);
  struct tm expected = broken;
  expected.tm_year = expected.tm_mon = 0;
  expected.tm_wday = 6, expected.tm_mday = 31;
  expected.tm_hour = 23, expected.tm_min = 59, expected.tm_sec = 58;
  EXPECT_EQ(&broken, SystemTimeToTm(&time, &broken));
  EXPECT_EQ(0, std::memcmp(&expected, &broken, sizeof broken));
  tagSYSTEMTIME back;
  std::memset(&back, 0xEE, sizeof back);
  EXPECT_EQ(&back, TmToSystemTime(&broken, &back));
  EXPECT_EQ("1900-1-31/6 23:59:58.0", text(back));
  broken.tm_year = INT_MAX, broken.tm_mon = -2, broken.tm_mday = 65536 + 40;
  EXPECT_EQ("1899-65535-40/6 23:59:58.0", text(*TmToSystemTime(&broken, &back)));
}

TEST(Process, GetPidFindsNothing) {
  int process = 4711;
  char name[] = "init";
  EXPECT_EQ(4711, process + GetPid(name, &process) + GetPid(nullptr, nullptr));
  EXPECT_EQ(4711, process);
}

TEST(Features, Files) {
  const S path = kInstallation + "zrfeature.dat";
  const S content("\0\1\2\xFF\4\5\6\7\10\11\12more than that", 26);
  tagZR_FEATURE feature = {};
  unsigned int error = 77;
  EXPECT_EQ(0, GetZRFeaturesSetting(&feature, nullptr) + GetZRFeaturesSetting(nullptr, &error));
  EXPECT_EQ(77U, error);
  for (const auto& [size, before, after] : Rows<std::size_t, int, unsigned int>{
           {11, 5, 0}, {26, 5, 0}, {10, 0, 0}, {5, 75, 75}, {0, 75, 75}}) {
    putFile(path, content.substr(0, size));
    const std::size_t got = std::min<std::size_t>(size, sizeof feature);
    std::memset(&feature, '#', sizeof feature);
    errno = before;
    EXPECT_EQ(size < 11 ? 0 : 1, GetZRFeaturesSetting(&feature, &error));
    EXPECT_EQ(after, error) << size;
    EXPECT_EQ(content.substr(0, got) + S(11 - got, '#'),
              S(reinterpret_cast<char*>(&feature), sizeof feature));
  }
  for (const bool isThere : {true, false}) {
    isThere ? putFile(path, content, 0) : void(::unlink(path.c_str()));
    EXPECT_EQ(2, runForked([&] {
                   dropPrivileges();
                   return GetZRFeaturesSetting(&feature, &error) ? 99 : static_cast<int>(error);
                 }).status);
  }
}
