#include <gtest/gtest.h>
#include <unistd.h>
#include <zrcommon/system.h>

#include "support/child.h"
#include "support/files.h"

namespace {

const std::string kFirst = "/etc/init.d/rc.d/";
const std::string kSecond = "/etc/init.d/";
const std::string kLog = "/scratch/ran";

void putScript(const std::string& path, const std::string& more = "") {
  putFile(path, "#!/bin/sh\necho \"$0 $*\" >>" + kLog + "\n" + more, 0755);
}

std::string ran() {
  const std::string lines = getFile(kLog);
  ::unlink(kLog.c_str());
  return lines;
}

}  // namespace

TEST(Service, RunsTheScript) {
  putScript(kFirst + "both");
  putScript(kSecond + "both");
  putScript(kSecond + "A-z_0.9+@");
  putScript(kSecond + "fails", "exit 3\n");
  putScript(kSecond + "...");
  const struct {
    const char* name;
    int action;
    int result;
    unsigned int error;
    std::string ran;
  } rows[] = {
      {"both", 1, 1, 0, kFirst + "both start\n"},
      {"both", 2, 1, 0, kFirst + "both restart\n"},
      {"both", 3, 1, 0, kFirst + "both stop\n"},
      {"A-z_0.9+@", 4, 1, 0, kSecond + "A-z_0.9+@ status\n"},
      {"fails", 1, 1, 0, kSecond + "fails start\n"},
      {"...", 1, 1, 0, kSecond + "... start\n"},
      {"both", 0, 0, 121, ""},
      {"both", 5, 0, 121, ""},
      {"both", -1, 0, 121, ""},
      {"none", 1, 0, 120, ""},
      {"none", 5, 0, 120, ""},
  };
  for (const auto& row : rows) {
    unsigned int error = 77;
    EXPECT_EQ(row.result, HandleService(row.name, row.action, &error)) << row.name << row.action;
    EXPECT_EQ(row.error, error) << row.name << row.action;
    EXPECT_EQ(row.ran, ran());
  }
}

// Where a script of such a name exists it is left alone all the same.
TEST(Service, NamesThatAShellWouldReadAreRefused) {
  putScript(kSecond + "plain");
  for (const std::string name :
       {"", ".", "..", "rc.d/../plain", "../init.d/plain", "two words", "semi;colon", "dollar$HOME",
        "new\nline", "back`tick", "star*", "plain ", "\xC3\xA4", "quote'"}) {
    if (!name.empty() && name.find('/') == std::string::npos && name[0] != '.')
      putScript(kSecond + name);
    unsigned int error = 77;
    EXPECT_EQ(0, HandleService(name.c_str(), 1, &error)) << name;
    EXPECT_EQ(120U, error) << name;
  }
  for (const std::size_t length : {255, 300, 1006, 1100, 100000}) {
    unsigned int error = 77;
    EXPECT_EQ(0, HandleService(std::string(length, 'n').c_str(), 5, &error));
    EXPECT_EQ(120U, error) << length;
  }
  EXPECT_EQ("", ran());
}

// Whatever exists under the name counts, and what the shell makes of it is not looked at.
TEST(Service, OnlyStandardOutputIsThrownAway) {
  putFile(kSecond + "notexecutable", "", 0600);
  putScript(kSecond + "talks", "echo out\necho err >&2\n");
  const Outcome outcome = runForked([] {
    unsigned int error = 77;
    for (const char* name : {"talks", "rc.d", "notexecutable"})
      if (HandleService(name, 4, &error) != 1 || error != 0) return 1;
    return 0;
  });
  EXPECT_EQ(0, outcome.status);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ(0U, outcome.err.find("err\n"));
  ran();
}
