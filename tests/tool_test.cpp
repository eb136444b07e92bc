#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/child.h"
#include "support/files.h"
#include "support/inet_module.h"
#include "tools/progress.h"

namespace {

Outcome zrtool(std::vector<std::string> arguments, const std::string& input = "") {
  arguments.insert(arguments.begin(), ZR_BUILD_DIR "/zrtool");
  return run(arguments, input);
}

// Each row: the arguments, the exit status, and a part of what goes to the two streams.
TEST(Tool, AnswersAndExplains) {
  ScratchDirectory files;
  const ScriptedInet inet("header 4\nread 9 HHHHhello");
  std::string record;
  for (int i = 0; i < 788; ++i) record += "0f ";
  putFile(files / "short", "x");
  const std::string log = files / "a.log";
  const struct {
    int line;
    std::vector<std::string> arguments;
    std::string input;
    int status;
    std::string out;
    std::string err;
  } rows[] = {
      {__LINE__, {}, "", 2, "", "subcommand is required"},
      {__LINE__, {"--help"}, "", 0, "doctor", ""},
      {__LINE__, {"--version"}, "", 0, "zrtool ", ""},
      {__LINE__, {"explain", "140"}, "", 0, "140  connectivity check, result 0: msg32.htm", ""},
      {__LINE__, {"explain", "2", "--json"}, "", 0, "{\"code\": 2, \"from\": \"feature", ""},
      {__LINE__, {"explain", "9999"}, "", 1, "", "9999 is none"},
      {__LINE__, {"explain", "abc"}, "", 2, "", "CODE"},
      {__LINE__, {"frobnicate"}, "", 2, "", "frobnicate"},
      {__LINE__, {"options"}, "", 2, "", "subcommand is required"},
      {__LINE__, {"options", "shew"}, "", 2, "", "shew"},
      {__LINE__, {"fetch"}, "", 2, "", "URL is required"},
      {__LINE__, {"fetch", "http://x", "--max", "0"}, "", 2, "", "--max"},
      {__LINE__, {"fetch", "http://x"}, "", 0, "hello", ""},
      {__LINE__, {"fetch", "http://x", "--max", "5"}, "", 0, "hello", ""},
      {__LINE__, {"fetch", "http://x", "--max", "4"}, "", 1, "", "larger than 4 bytes"},
      {__LINE__, {"fetch", "http://x", "--output", "/no/such"}, "", 1, "", "/no/such"},
      {__LINE__, {"fetch", "http://x", "--output", files / "body"}, "", 0, "", ""},
      {__LINE__, {"log", log, "COMP", "50%s"}, "", 0, "", ""},
      {__LINE__, {"log", log, "COMP", "x", "--level", "4"}, "", 1, "", "trace mask 3"},
      {__LINE__, {"log", "/dev/full", "COMP", "x"}, "", 1, "", "could not be written"},
      {__LINE__, {"options", "show", files / "opt"}, "", 1, "", "code 2: "},
      {__LINE__, {"options", "show", files / "short"}, "", 1, "", "code 4: "},
      {__LINE__, {"options", "save", files / "opt"}, "0f 0", 1, "", "only one"},
      {__LINE__, {"options", "save", files / "opt"}, "0f x", 1, "", "character 4"},
      {__LINE__, {"options", "save", files / "opt"}, "0f", 1, "", "gave 1"},
      {__LINE__, {"options", "save", files / "opt"}, record, 0, "", ""},
      {__LINE__, {"options", "show", files / "opt"}, "", 0, "0f 0f\n0f", ""},
  };
  for (const auto& row : rows) {
    const Outcome outcome = zrtool(row.arguments, row.input);
    EXPECT_EQ(row.status, outcome.status) << "row of line " << row.line << outcome.err;
    EXPECT_NE(std::string::npos, outcome.out.find(row.out)) << "row of line " << row.line;
    EXPECT_NE(std::string::npos, outcome.err.find(row.err))
        << "row of line " << row.line << outcome.err;
    EXPECT_EQ(row.err.empty(), outcome.err.empty()) << "row of line " << row.line << outcome.err;
  }
  EXPECT_EQ("hello", getFile(files / "body"));
  EXPECT_EQ("COMP 50%s\r\n", getFile(log));
  EXPECT_EQ(std::string(788, '\x0f'), getFile(files / "opt"));
}

// Every code that the library or zrtool gives starts a line of the list.
TEST(Tool, ExplainsEveryCode) {
  const std::string all = zrtool({"explain"}).out;
  for (const char* code : {"0", "1", "2", "3", "4", "101", "102", "105", "120", "121", "140", "201",
                           "202", "203", "204", "205", "206"})
    EXPECT_NE(std::string::npos, ("\n" + all).find("\n" + std::string(code) + "  ")) << code;
}

TEST(Tool, ShowsProgressOnATerminalOnly) {
  ScratchDirectory terminals;
  ASSERT_EQ(0,
            ::mount("devpts", terminals.path().c_str(), "devpts", 0, "newinstance,ptmxmode=666"));
  const int ours = ::open((terminals / "ptmx").c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY);
  const int locked = 0;
  ASSERT_EQ(0, ::ioctl(ours, TIOCSPTLCK, &locked));
  const int theirs = ::ioctl(ours, TIOCGPTPEER, O_RDWR | O_CLOEXEC | O_NOCTTY);
  const auto work = [](int standardError) {
    if (standardError >= 0) ::dup2(standardError, STDERR_FILENO);
    const Progress progress("searching", [] { return ", 5%"; });
    ::usleep(1200000);
    return 0;
  };
  EXPECT_EQ("", runForked([&] { return work(-1); }).err);
  runForked([&] { return work(theirs); });
  ::close(theirs);
  std::string shown;
  for (char byte = 0; ::read(ours, &byte, 1) == 1;) shown += byte;
  EXPECT_EQ("\r\033[Ksearching ... 1s, 5%\r\033[K", shown);
  ::close(ours);
  ::umount2(terminals.path().c_str(), MNT_DETACH);
}

TEST(Tool, DoctorFindsWhatIsWrong) {
  const std::string directory = "/usr/lib/Valdrix/Valdrix/";
  const Outcome bare = zrtool({"doctor"});
  EXPECT_EQ(1, bare.status);
  EXPECT_NE(std::string::npos, bare.out.find("PROBLEM  internet library"));
  const ScriptedInet inet("", "inet_without_GetHeader");
  putFile(directory + "zrinet.opt", "short");
  const Outcome broken = zrtool({"doctor"});
  EXPECT_EQ(1, broken.status);
  EXPECT_NE(std::string::npos, broken.out.find("PROBLEM  libinet.so entry point GetHeader"));
  EXPECT_NE(std::string::npos, broken.out.find("PROBLEM  internet settings"));
  EXPECT_NE(std::string::npos, broken.out.find("5 bytes instead of at least 788"));
  EXPECT_NE(std::string::npos, broken.out.find("ok       library /"));
  EXPECT_NE(std::string::npos, broken.out.find("note     log /zrcommon.log: none"));
  EXPECT_FALSE(isThere("/zrcommon.log")) << "looking must not write the product's log";
  std::filesystem::remove(directory + "zrinet.opt");
}

TEST(Tool, DoctorIsContentWithAWholeInstallation) {
  const ScriptedInet inet("");
  const Outcome whole = zrtool({"doctor"});
  EXPECT_EQ(0, whole.status) << whole.out;
  EXPECT_EQ(std::string::npos, whole.out.find("PROBLEM"));
  putFile("/zrcommon.log", "x", 0600);
  const std::string json = zrtool({"doctor", "--json"}).out;
  EXPECT_EQ(0U, json.find("[\n  {\"status\": \"ok\", \"check\": \"library ")) << json;
  EXPECT_NE(std::string::npos,
            json.find("\"note\", \"check\": \"log /zrcommon.log: 1 bytes, mode 0600"));
  std::filesystem::remove("/zrcommon.log");
}

TEST(Component, TheExampleFetchesAndLogs) {
  ScratchDirectory files;
  const ScriptedInet inet("header 4\nread 9 HHHHhello");
  const std::string command =
      "cd " + files.path() + " && " + ZR_BUILD_DIR "/examples/component/component ";
  EXPECT_EQ(0, run({"sh", "-c", command + "http://x"}).status);
  EXPECT_EQ(1, run({"sh", "-c", command}).status);
  EXPECT_EQ("UPDATE fetched 5 bytes from http://x\r\nUPDATE nothing fetched from nowhere\r\n",
            getFile(files / "component.log"));
}

}  // namespace
