#include <gtest/gtest.h>
#include <sys/time.h>
#include <zrcommon/system.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "support/child.h"
#include "support/files.h"

namespace {

// What gettimeofday() gives the library in this program.
struct {
  int result;
  timeval now;
} clockSetting;

std::string text(const tagSYSTEMTIME& time) {
  char line[80];
  std::snprintf(line, sizeof line, "%d-%d-%d/%d %d:%d:%d.%d", time.wYear, time.wMonth, time.wDay,
                time.wDayOfWeek, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
  return line;
}

}  // namespace

extern "C" int gettimeofday(timeval* now, void*) noexcept {
  *now = clockSetting.now;
  return clockSetting.result;
}

TEST(LocalTime, FollowsTheZone) {
  const struct {
    const char* zone;
    timeval now;
    const char* expected;
  } rows[] = {
      {"UTC0", {0, 0}, "1970-1-1/4 0:0:0.0"},
      {"UTC0", {1798761599, 999999}, "2026-12-31/4 23:59:59.999"},
      {"EST5", {1798761599, 1000}, "2026-12-31/4 18:59:59.1"},
      {"XYZ-10:30", {1798761599, 999}, "2027-1-1/5 10:29:59.0"},
      {"UTC0", {-1, 0}, "1969-12-31/3 23:59:59.0"},
  };
  for (const auto& row : rows) {
    ::setenv("TZ", row.zone, 1);
    clockSetting = {0, row.now};
    tagSYSTEMTIME time;
    std::memset(&time, 0xEE, sizeof time);
    EXPECT_EQ(1, GetLocalTime(&time));
    EXPECT_EQ(row.expected, text(time));
  }
}

TEST(LocalTime, FailuresTouchNothing) {
  tagSYSTEMTIME time = {};
  const std::string untouched = text(time);
  EXPECT_EQ(0, GetLocalTime(nullptr));
  clockSetting = {-1, {}};
  EXPECT_EQ(0, GetLocalTime(&time));
  clockSetting = {0, {LONG_MAX, 0}};
  EXPECT_EQ(0, GetLocalTime(&time));
  EXPECT_EQ(untouched, text(time));
}

TEST(SystemTime, ConvertsTheSharedFieldsOnly) {
  const tagSYSTEMTIME time = {1900, 1, 6, 31, 23, 59, 58, 999};
  struct tm broken;
  std::memset(&broken, 0x55, sizeof broken);
  struct tm expected = broken;
  expected.tm_year = 0;
  expected.tm_mon = 0;
  expected.tm_wday = 6;
  expected.tm_mday = 31;
  expected.tm_hour = 23;
  expected.tm_min = 59;
  expected.tm_sec = 58;
  EXPECT_EQ(&broken, SystemTimeToTm(&time, &broken));
  EXPECT_EQ(0, std::memcmp(&expected, &broken, sizeof broken));
  tagSYSTEMTIME back;
  std::memset(&back, 0xEE, sizeof back);
  EXPECT_EQ(&back, TmToSystemTime(&broken, &back));
  EXPECT_EQ("1900-1-31/6 23:59:58.0", text(back));
}

TEST(SystemTime, ValuesAreCutNotChecked) {
  struct tm broken = {};
  broken.tm_year = INT_MAX;
  broken.tm_mon = -2;
  broken.tm_mday = 65536 + 40;
  tagSYSTEMTIME time = {};
  EXPECT_EQ("1899-65535-40/0 0:0:0.0", text(*TmToSystemTime(&broken, &time)));
}

TEST(Process, GetPidFindsNothing) {
  int process = 4711;
  char name[] = "init";
  EXPECT_EQ(0, GetPid(name, &process));
  EXPECT_EQ(0, GetPid(nullptr, nullptr));
  EXPECT_EQ(4711, process);
}

TEST(Features, Files) {
  const std::string path = "/usr/lib/Valdrix/Valdrix/zrfeature.dat";
  const std::string content("\0\1\2\xFF\4\5\6\7\10\11\12more than that", 26);
  const struct {
    std::size_t size;
    int errnoBefore;
    int result;
    unsigned int error;
  } rows[] = {{11, 5, 1, 0}, {26, 5, 1, 0}, {10, 0, 0, 0}, {5, 75, 0, 75}, {0, 75, 0, 75}};
  for (const auto& row : rows) {
    putFile(path, content.substr(0, row.size));
    std::string feature(11, '#');
    std::string expected = feature;
    expected.replace(0, std::min<std::size_t>(row.size, 11), content, 0,
                     std::min<std::size_t>(row.size, 11));
    unsigned int error = 77;
    errno = row.errnoBefore;
    EXPECT_EQ(row.result,
              GetZRFeaturesSetting(reinterpret_cast<tagZR_FEATURE*>(&feature[0]), &error));
    EXPECT_EQ(row.error, error) << row.size;
    EXPECT_EQ(expected, feature) << row.size;
  }
  putFile(path, content, 0);
  tagZR_FEATURE feature = {};
  unsigned int error = 77;
  EXPECT_EQ(0, GetZRFeaturesSetting(&feature, nullptr));
  EXPECT_EQ(0, GetZRFeaturesSetting(nullptr, &error));
  EXPECT_EQ(77U, error);
  const auto failure = [&] {
    dropPrivileges();
    return GetZRFeaturesSetting(&feature, &error) ? 99 : static_cast<int>(error);
  };
  EXPECT_EQ(2, runForked(failure).status);
  ASSERT_EQ(0, std::remove(path.c_str()));
  EXPECT_EQ(2, runForked(failure).status);
}
