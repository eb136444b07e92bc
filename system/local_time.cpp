#include <sys/time.h>

#include <ctime>

#include "zrcommon/system.h"

namespace {

constexpr int kFirstYear = 1900;

// The low 16 bits of the sum, which may wrap.
unsigned short sum(int value, int offset) {
  return static_cast<unsigned short>(static_cast<unsigned int>(value) +
                                     static_cast<unsigned int>(offset));
}

}  // namespace

int GetLocalTime(tagSYSTEMTIME* time) {
  if (!time) return 0;
  timeval now = {};
  if (::gettimeofday(&now, nullptr) == -1) return 0;
  // Kept: GetLocalTime() calls localtime(), which reads TZ at every call; localtime_r() may not
  // (test LocalTime.FollowsTheZone)
  const struct tm* const broken = std::localtime(&now.tv_sec);
  if (!broken) return 0;
  TmToSystemTime(broken, time);
  time->wMilliseconds = static_cast<unsigned short>(now.tv_usec / 1000);
  return 1;
}

struct tm* SystemTimeToTm(const tagSYSTEMTIME* time, struct tm* broken) {
  broken->tm_year = time->wYear - kFirstYear;
  broken->tm_mon = time->wMonth - 1;
  broken->tm_wday = time->wDayOfWeek;
  broken->tm_mday = time->wDay;
  broken->tm_hour = time->wHour;
  broken->tm_min = time->wMinute;
  broken->tm_sec = time->wSecond;
  return broken;
}

tagSYSTEMTIME* TmToSystemTime(const struct tm* broken, tagSYSTEMTIME* time) {
  time->wYear = sum(broken->tm_year, kFirstYear);
  time->wMonth = sum(broken->tm_mon, 1);
  time->wDayOfWeek = sum(broken->tm_wday, 0);
  time->wDay = sum(broken->tm_mday, 0);
  time->wHour = sum(broken->tm_hour, 0);
  time->wMinute = sum(broken->tm_min, 0);
  time->wSecond = sum(broken->tm_sec, 0);
  time->wMilliseconds = 0;
  return time;
}
