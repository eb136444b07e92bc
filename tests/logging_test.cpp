#include <zrcommon/logging.h>

#include "support/calls.h"
#include "support/test.h"

namespace {

const S kLog = kScratch + "log";

// The name is stored after the path, and no operation writes it.
S applicationOf(const CZRLogger& logger) {
  return reinterpret_cast<const char*>(&logger) + 260;
}

TEST(Logger, VariablesStartWithTheirInitialValues) {
  EXPECT_EQ(3U, g_dwCurrentTraceLevel__);
  EXPECT_EQ("/zrcommon.log zrcommon"s, g_szLogFileName__ + " "s + g_szAppName__);
  EXPECT_EQ(S(3072, '\0'), S(g_szLogPath, sizeof g_szLogPath) + S(szErrMsg, sizeof szErrMsg));
}

TEST(Logger, WritesOneLinePerMessage) {
  const char* volatile none = nullptr;
  const S text(5000, 'l');
  const auto expect = [](int line, const S& content, auto write) {
    clearPlaces();
    CZRLogger logger(kLog.c_str(), nullptr, "COMP");
    write(logger);
    EXPECT_EQ(content, getFile(kLog)) << "line " << line;
    EXPECT_EQ(content.empty() ? 0U : 0600U, modeOf(kLog)) << "line " << line;
  };
  using L = CZRLogger;
  expect(__LINE__, "COMP 7 up\r\n", [](L& l) { l.WriteToLog(2, "%d %s", 7, "up"); });
  expect(__LINE__, "COMP -1\r\n", [](L& l) { l.WriteToLog(6, 100, "%d", -1); });
  expect(__LINE__, "COMP 50%s\n\r\n", [](L& l) { l.WriteToFile("50%s\n"); });
  expect(__LINE__, "COMP \r\n", [](L& l) { l.WriteToFile(""); });
  const S cut = "COMP " + text.substr(0, 4095) + "\r\n", whole = "COMP " + text + "\r\n";
  expect(__LINE__, cut, [&](L& l) { l.WriteToLog(1, "%s", text.c_str()); });
  expect(__LINE__, whole, [&](L& l) { l.WriteToLog(1, 5001, "%s", text.c_str()); });
  expect(__LINE__, "COMP ab\r\n", [](L& l) { l.WriteToLog(1, 3, "abcdef"); });
  expect(__LINE__, "", [&](L& l) { l.WriteToLog(1, none), l.WriteToLog(1, 10, none); });
  expect(__LINE__, "", [&](L& l) { l.WriteToFile(none), l.WriteToLog(1, 0, "x"); });
  expect(__LINE__, "", [](L& l) { l.WriteToLog(4, "x"), l.WriteToLog(4, 10, "x"); });
  g_dwCurrentTraceLevel__ = 4;
  expect(__LINE__, "COMP x\r\n", [](L& l) { l.WriteToLog(3, "-"), l.WriteToLog(12, "x"); });
  g_dwCurrentTraceLevel__ = 3;
}

TEST(Logger, TakesDefaultsAndCutsNames) {
  const S path = kScratch + S(259 - kScratch.size(), 'f');
  const char* const defaultFile = g_szLogFileName__;
  g_szLogFileName__ = path.c_str();
  static_assert(std::is_convertible_v<const char*, CZRLogger>);
  CZRLogger logger(nullptr);
  logger.WriteToFile("x");
  EXPECT_EQ("zrcommon", applicationOf(logger));
  g_szLogFileName__ = nullptr;
  CZRLogger("").WriteToFile("lost");
  g_szLogFileName__ = defaultFile;
  logger.SetLogVariables((path + "cut").c_str(), S(300, 'a').c_str(), S(300, 'c').c_str());
  logger.WriteToFile("y");
  EXPECT_EQ(S(259, 'a'), applicationOf(logger));
  EXPECT_EQ("UNKNOWN x\r\n" + S(259, 'c') + " y\r\n", getFile(path));
}

TEST(PlainLog, WidensTheModeOnEveryWrite) {
  putFile(kLog, "1\n", 0600);
  const mode_t mask = ::umask(077);
  for (const char* name : {"log", "new", "no/such"}) WriteToLog((kScratch + name).c_str(), "x");
  ::umask(mask);
  EXPECT_EQ(unsigned{ENOENT}, GetLastError());
  WriteToLog(nullptr, "x");
  WriteToLog((kScratch + "none").c_str(), nullptr);
  EXPECT_EQ((Files{{"log", "'1\nx\n' 0666"}, {"new", "'x\n' 0666"}}), filesInPlaces());
}

}  // namespace
