#include <zrcommon/logging.h>

#include "support/syscalls.h"
#include "support/test.h"

namespace {

TEST(Logger, VariablesStartWithTheirInitialValues) {
  EXPECT_EQ(3U, g_dwCurrentTraceLevel__);
  EXPECT_EQ("/zrcommon.log zrcommon"s, g_szLogFileName__ + " "s + g_szAppName__);
  EXPECT_EQ(S(3072, '\0'), S(g_szLogPath, 1024) + S(szErrMsg, 2048));
}

TEST(Logger, WritesOneLineAMessage) {
  const char* volatile none = nullptr;
  const S text(5000, 'l');
  const auto expect = [](int line, const S& content, auto write) {
    const ScratchDirectory files;
    CZRLogger logger((files / "log").c_str(), nullptr, "COMP");
    write(logger);
    EXPECT_EQ(content, getFile(files / "log")) << "line " << line;
    EXPECT_EQ(!content.empty(), isThere(files / "log")) << "line " << line;
  };
  using L = CZRLogger;
  expect(__LINE__, "COMP 7 up\r\n", [](L& l) { l.WriteToLog(2, "%d %s", 7, "up"); });
  expect(__LINE__, "COMP -1\r\n", [](L& l) { l.WriteToLog(6, 100, "%d", -1); });
  expect(__LINE__, "COMP 50%s\n\r\n", [](L& l) { l.WriteToFile("50%s\n"); });
  expect(__LINE__, "COMP \r\n", [](L& l) { l.WriteToFile(""); });
  expect(__LINE__, "COMP " + text.substr(0, 4095) + "\r\n",
         [&](L& l) { l.WriteToLog(1, "%s", text.c_str()); });
  expect(__LINE__, "COMP " + text + "\r\n",
         [&](L& l) { l.WriteToLog(1, 5001, "%s", text.c_str()); });
  expect(__LINE__, "COMP ab\r\n", [](L& l) { l.WriteToLog(1, 3, "abcdef"); });
  expect(__LINE__, "COMP \r\n", [](L& l) { l.WriteToLog(1, 1, "abc"); });
  expect(__LINE__, "", [](L& l) { l.SetLogVariables("/no/such", "", ""), l.WriteToFile("x"); });
  expect(__LINE__, "", [&](L& l) { l.WriteToLog(1, none), l.WriteToLog(1, 10, none); });
  expect(__LINE__, "", [&](L& l) { l.WriteToFile(none), l.WriteToLog(1, 0, "x"); });
  expect(__LINE__, "", [](L& l) { l.WriteToLog(4, "x"), l.WriteToLog(4, 10, "x"); });
  g_dwCurrentTraceLevel__ = 4;
  expect(__LINE__, "COMP x\r\n", [](L& l) { l.WriteToLog(3, "-"), l.WriteToLog(12, "x"); });
  g_dwCurrentTraceLevel__ = 3;
}

TEST(Logger, AppendsAndLeavesTheModeAlone) {
  const ScratchDirectory files;
  putFile(files / "old", "before\n", 0640);
  for (const char* name : {"old", "old", "new"})
    CZRLogger((files / name).c_str(), nullptr, "C").WriteToFile("x");
  EXPECT_EQ("before\nC x\r\nC x\r\n", getFile(files / "old"));
  EXPECT_EQ(0640U, modeOf(files / "old"));
  EXPECT_EQ(0600U, modeOf(files / "new"));
}

TEST(Logger, TakesDefaultsAndCutsNames) {
  const ScratchDirectory files;
  const S path = files / S(259 - files.path().size() - 1, 'f');
  const char* const defaultFile = g_szLogFileName__;
  g_szLogFileName__ = path.c_str();
  CZRLogger(nullptr).WriteToFile("x");
  g_szLogFileName__ = nullptr;
  CZRLogger("").WriteToFile("lost");
  g_szLogFileName__ = defaultFile;
  CZRLogger((path + "cut").c_str(), nullptr, S(300, 'c').c_str()).WriteToFile("y");
  EXPECT_EQ("UNKNOWN x\r\n" + S(259, 'c') + " y\r\n", getFile(path));
}

TEST(Logger, WritesWithTheAgreedSystemCalls) {
  const ScratchDirectory files;
  CZRLogger logger((files / "log").c_str(), nullptr, "COMP");
  EXPECT_EQ("access open lseek write write write write close",
            systemCallsOf([&] { logger.WriteToLog(1, "%s", "text"); }));
  EXPECT_EQ("", systemCallsOf([&] { logger.WriteToLog(4, "%s", "text"); }));
}

TEST(Logger, ShortWriteLeavesTheLineOpen) {
  const TinyFileSystem disk(4096);
  CZRLogger logger((disk / "log").c_str(), nullptr, "COMP");
  const S message(5000, 'm');
  EXPECT_EQ("access open lseek write write write close",
            systemCallsOf([&] { logger.WriteToFile(message.c_str()); }));
  EXPECT_EQ("COMP " + message.substr(0, 4091), getFile(disk / "log"));
  errno = 0;
  logger.WriteToFile("x");
  EXPECT_EQ(static_cast<unsigned int>(ENOSPC), GetLastError());
}

TEST(PlainLog, WidensTheModeOnEveryWrite) {
  const ScratchDirectory files;
  const mode_t mask = ::umask(077);
  putFile(files / "old", "1\n", 0600);
  for (const char* name : {"old", "new", "no/such"}) WriteToLog((files / name).c_str(), "x");
  ::umask(mask);
  EXPECT_EQ(static_cast<unsigned int>(ENOENT), GetLastError());
  EXPECT_EQ("1\nx\nx\n", getFile(files / "old") + getFile(files / "new"));
  EXPECT_EQ(0666U, modeOf(files / "old") & modeOf(files / "new"));
  WriteToLog(nullptr, "x");
  WriteToLog((files / "none").c_str(), nullptr);
  EXPECT_FALSE(isThere(files / "none"));
  EXPECT_EQ("access open write write close chmod",
            systemCallsOf([&] { WriteToLog((files / "old").c_str(), "x"); }));
}

}  // namespace
