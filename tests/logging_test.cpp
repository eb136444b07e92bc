#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zrcommon/logging.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "support/child.h"
#include "support/files.h"
#include "support/syscalls.h"

namespace {

// A logger on a file of its own.
class Logger : public testing::Test {
 protected:
  ScratchDirectory files_;
  std::string path_ = files_ / "a.log";
  CZRLogger logger_{path_.c_str(), "app", "COMP"};
};

TEST(Variables, StartWithTheirInitialValues) {
  EXPECT_EQ(3U, g_dwCurrentTraceLevel__);
  EXPECT_EQ('/', g_szLogFileName__[0]);
  EXPECT_STREQ("zrcommon", g_szAppName__);
  EXPECT_EQ(std::string(sizeof g_szLogPath, '\0'), std::string(g_szLogPath, 1024));
  EXPECT_EQ(std::string(sizeof szErrMsg, '\0'), std::string(szErrMsg, 2048));
}

TEST_F(Logger, WritesOneLineAMessage) {
  const char* volatile none = nullptr;
  const std::string longText(5000, 'l');
  const struct {
    int line;
    std::function<void(CZRLogger&)> write;
    std::string content;
  } rows[] = {
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(2, "%d %s", 7, "up"); }, "COMP 7 up\r\n"},
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(6, 100, "%d", -1); }, "COMP -1\r\n"},
      {__LINE__, [](CZRLogger& l) { l.WriteToFile("50%s\n"); }, "COMP 50%s\n\r\n"},
      {__LINE__, [](CZRLogger& l) { l.WriteToFile(""); }, "COMP \r\n"},
      {__LINE__, [&](CZRLogger& l) { l.WriteToLog(1, "%s", longText.c_str()); },
       "COMP " + longText.substr(0, 4095) + "\r\n"},
      {__LINE__, [&](CZRLogger& l) { l.WriteToLog(1, 5001, "%s", longText.c_str()); },
       "COMP " + longText + "\r\n"},
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(1, 3, "abcdef"); }, "COMP ab\r\n"},
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(1, 1, "abc"); }, "COMP \r\n"},
      {__LINE__,
       [](CZRLogger& l) { l.SetLogVariables("/nowhere/at/all", "", ""), l.WriteToFile("x"); }, ""},
      {__LINE__, [&](CZRLogger& l) { l.WriteToLog(1, none); }, ""},
      {__LINE__, [&](CZRLogger& l) { l.WriteToLog(1, 10, none); }, ""},
      {__LINE__, [&](CZRLogger& l) { l.WriteToFile(none); }, ""},
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(4, "x"); }, ""},
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(4, 10, "x"); }, ""},
      {__LINE__, [](CZRLogger& l) { l.WriteToLog(1, 0, "x"); }, ""},
  };
  for (const auto& row : rows) {
    ScratchDirectory files;
    CZRLogger logger((files / "log").c_str(), nullptr, "COMP");
    row.write(logger);
    EXPECT_EQ(row.content, getFile(files / "log")) << "row of line " << row.line;
    EXPECT_EQ(!row.content.empty(), isThere(files / "log")) << "row of line " << row.line;
  }
}

TEST_F(Logger, AppendsAndLeavesTheModeAlone) {
  putFile(path_, "before\n", 0640);
  logger_.WriteToFile("x");
  logger_.WriteToFile("y");
  EXPECT_EQ("before\nCOMP x\r\nCOMP y\r\n", getFile(path_));
  EXPECT_EQ(0640U, modeOf(path_));
  CZRLogger((files_ / "new").c_str(), nullptr, "C").WriteToFile("x");
  EXPECT_EQ(0600U, modeOf(files_ / "new"));
}

TEST_F(Logger, TakesDefaultsAndCutsNames) {
  const char* const defaultFile = g_szLogFileName__;
  g_szLogFileName__ = path_.c_str();
  CZRLogger(nullptr).WriteToFile("x");
  logger_.SetLogVariables(nullptr, nullptr, std::string(300, 'c').c_str());
  logger_.WriteToFile("y");
  g_szLogFileName__ = nullptr;
  CZRLogger("").WriteToFile("lost");
  g_szLogFileName__ = defaultFile;
  EXPECT_EQ("UNKNOWN x\r\n" + std::string(259, 'c') + " y\r\n", getFile(path_));
  const std::string longest = files_ / std::string(259 - files_.path().size() - 1, 'f');
  CZRLogger((longest + "cut").c_str(), nullptr, "C").WriteToFile("x");
  EXPECT_EQ("C x\r\n", getFile(longest));
}

TEST_F(Logger, HonoursTheTraceMask) {
  g_dwCurrentTraceLevel__ = 4;
  logger_.WriteToLog(3, "no");
  logger_.WriteToLog(12, "yes");
  g_dwCurrentTraceLevel__ = 3;
  EXPECT_EQ("COMP yes\r\n", getFile(path_));
}

TEST_F(Logger, WritesWithTheAgreedSystemCalls) {
  const auto write = [this] { logger_.WriteToLog(1, "%s", "text"); };
  EXPECT_EQ("access open lseek write write write write close", systemCallsOf(write));
  EXPECT_EQ("", systemCallsOf([this] { logger_.WriteToLog(4, "%s", "text"); }));
}

TEST_F(Logger, ShortWriteLeavesTheLineOpen) {
  const TinyFileSystem disk(4096);
  const std::string path = disk / "full.log";
  logger_.SetLogVariables(path.c_str(), nullptr, "COMP");
  errno = 0;
  logger_.WriteToLog(1, 8000, "%s", std::string(5000, 'm').c_str());
  EXPECT_EQ("COMP " + std::string(4091, 'm'), getFile(path));
  EXPECT_EQ("access open lseek write write write close",
            systemCallsOf([this] { logger_.WriteToFile("x"); }));
  logger_.SetLogVariables("/dev/full", nullptr, "COMP");
  logger_.WriteToFile("x");
  EXPECT_EQ(static_cast<unsigned int>(ENOSPC), GetLastError());
}

TEST(PlainLog, WidensTheModeOnEveryWrite) {
  ScratchDirectory files;
  const mode_t mask = ::umask(077);
  putFile(files / "old", "1\n", 0600);
  for (const char* name : {"old", "new"}) WriteToLog((files / name).c_str(), "x");
  ::umask(mask);
  EXPECT_EQ("1\nx\n", getFile(files / "old"));
  EXPECT_EQ("x\n", getFile(files / "new"));
  EXPECT_EQ(0666U, modeOf(files / "old"));
  EXPECT_EQ(0666U, modeOf(files / "new"));
}

TEST(PlainLog, IgnoresNullAndWhatCannotBeOpened) {
  ScratchDirectory files;
  WriteToLog(nullptr, "x");
  WriteToLog((files / "log").c_str(), nullptr);
  WriteToLog((files / "no/such").c_str(), "x");
  EXPECT_EQ(static_cast<unsigned int>(ENOENT), GetLastError());
  EXPECT_FALSE(isThere(files / "log"));
  const auto write = [&] { WriteToLog((files / "log").c_str(), "x"); };
  EXPECT_EQ("access open write write close chmod", systemCallsOf(write));
}

}  // namespace
