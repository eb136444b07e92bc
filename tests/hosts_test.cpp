// Hosts of every kind: with a locale, with children, with constructors that cannot wait for main,
// with many processes at one log.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zrcommon/logging.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <algorithm>
#include <clocale>

#include "support/child.h"
#include "support/files.h"
#include "support/operations.h"

namespace {

std::string outcomesOf(const std::vector<Operation>& operations) {
  std::string outcomes;
  for (const Operation& operation : operations)
    outcomes += operation.name + ": " + outcomeOf(operation) + "\n";
  return outcomes;
}

std::string allOutcomes() {
  return outcomesOf(systemOperations()) + outcomesOf(pureOperations());
}

// Nothing but the library is initialised when this runs, and the sandbox is not entered.
struct BeforeMain {
  BeforeMain() : log(::memfd_create("log", MFD_CLOEXEC)) {
    for (const Operation& operation : pureOperations()) {
      Result result;
      operation.call(result);
      pure += result.text();
    }
    CZRLogger(("/proc/self/fd/" + std::to_string(log)).c_str(), "A", "C").WriteToLog(1, "x");
    section = GetPrivateProfileInt("s", "k", -7, "/dev/null", &error);
    module = ZRLoadLibrary("libc.so.6");
    ZRFreeLibrary(module);
  }
  int log;
  std::string pure;
  int section = 0;
  unsigned int error = 0;
  void* module = nullptr;
};
const BeforeMain beforeMain __attribute__((init_priority(101)));

TEST(Hosts, CallBeforeMain) {
  std::string pure;
  for (const Operation& operation : pureOperations()) {
    Result result;
    operation.call(result);
    pure += result.text();
  }
  EXPECT_EQ(pure, beforeMain.pure);
  EXPECT_EQ("C x\r\n", getFile("/proc/self/fd/" + std::to_string(beforeMain.log)));
  EXPECT_EQ(-7, beforeMain.section);
  EXPECT_EQ(204U, beforeMain.error);
  EXPECT_NE(nullptr, beforeMain.module);
}

TEST(Hosts, SetALocale) {
  const std::string usual = allOutcomes();
  ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
  EXPECT_EQ(usual, allOutcomes());
  char bytes[] = "\xE9\xA0";
  strUpr(bytes, 2);
  EXPECT_STREQ("\xE9\xA0", TrimRight(bytes));
  std::setlocale(LC_ALL, "C");
}

// A locale with letters beyond ASCII, which upper-casing has to look up.
TEST(Hosts, LocaleOfOneByteLetters) {
  ScratchDirectory files;
  ASSERT_EQ(0, run({"localedef", "-i", "de_DE", "-f", "ISO-8859-1", files / "one_byte"}).status);
  const Outcome child = runForked([&] {
    ::setenv("LOCPATH", files.path().c_str(), 1);
    if (!std::setlocale(LC_CTYPE, "one_byte")) return 1;
    char text[] = "z\xE4\xFFz";
    strUpr(text, 4);
    return std::string(text) == "Z\xC4\xFFZ" ? 0 : 2;
  });
  EXPECT_EQ(0, child.status);
}

TEST(Hosts, Fork) {
  const std::string usual = allOutcomes();
  const Outcome child = runForked([&] { return allOutcomes() == usual ? 0 : 1; });
  EXPECT_EQ(0, child.status) << child.err;
  EXPECT_EQ(usual, allOutcomes());
}

constexpr int kWriters = 8;
constexpr int kLines = 10000;
const std::string kLog = "/scratch/shared.log";

std::string lineOf(int writer, int line) {
  return "<" + std::to_string(writer) + " " + std::to_string(line) + ">";
}

// Takes the log apart into whole texts, which come in each writer's order, and line feeds.
void checkLog(const std::string& log) {
  int lines[kWriters] = {};
  for (std::size_t at = 0; at < log.size();) {
    if (log[at] == '\n') {
      ++at;
      continue;
    }
    const auto writer = static_cast<std::size_t>(log[at + 1] - '0');
    ASSERT_GT(std::size_t{kWriters}, writer) << "at " << at;
    const std::string text = lineOf(static_cast<int>(writer), lines[writer]++);
    ASSERT_EQ(text, log.substr(at, text.size())) << "at " << at;
    at += text.size();
  }
  EXPECT_EQ(kWriters, std::count(std::begin(lines), std::end(lines), kLines));
  EXPECT_EQ(kWriters * kLines, std::count(log.begin(), log.end(), '\n'));
}

TEST(Hosts, EightProcessesShareTheirLog) {
  // The call that creates a log does not append yet.
  putFile(kLog, "");
  for (int writer = 0; writer < kWriters; ++writer)
    if (::fork() == 0) {
      for (int line = 0; line < kLines; ++line)
        WriteToLog(kLog.c_str(), lineOf(writer, line).c_str());
      ::_exit(0);
    }
  while (::wait(nullptr) > 0) continue;
  checkLog(getFile(kLog));
}

}  // namespace
