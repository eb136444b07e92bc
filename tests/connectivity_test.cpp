#include <gtest/gtest.h>
#include <zrcommon/codecs.h>
#include <zrcommon/network.h>

#include <cstdio>

#include "support/child.h"
#include "support/inet_module.h"

namespace {

const std::string kDirectory = "/usr/lib/Valdrix/Valdrix/infoeml.dat";

// An installation that knows the address of its probe files.
class Connectivity : public testing::Test {
 protected:
  void SetUp() override { setBase("http://a/"); }
  void TearDown() override { std::remove(kDirectory.c_str()); }

  static void setBase(std::string base) {
    std::string record("\x0c\0\0\0Connection Check", 20);
    record.resize(264);
    base.resize(260);
    record += base;
    Encrypt(reinterpret_cast<unsigned char*>(record.data()), static_cast<int>(record.size()));
    putFile(kDirectory, record);
  }

  // Result and code of the check, then the calls that the internet library got.
  static std::string check(const std::string& script,
                           const std::string& library = "inet_scripted") {
    const ScriptedInet inet(script, library);
    unsigned int error = 7;
    const unsigned int result = CheckInternetConnection(&error);
    return std::to_string(result) + " " + std::to_string(error) + ": " + inet.calls();
  }
};

std::string asked(const std::string& base) {
  return "load, present " + base + "msg32.htm, unload";
}

std::string askedTwice(const std::string& base) {
  return asked(base) + ", load, present " + base + "msg32.bin, unload";
}

TEST_F(Connectivity, FirstProbeDecides) {
  EXPECT_EQ("1 0: " + asked("http://a/"), check("present 1 .htm"));
  EXPECT_EQ("0 140: " + askedTwice("http://a/"), check("present 1 .bin"));
  EXPECT_EQ("0 105: " + askedTwice("http://a/"), check(""));
}

TEST_F(Connectivity, OnlyOneMeansPresent) {
  for (const char* other : {"2", "-1", "257", "-2147483648"}) {
    const std::string first = std::string("present ") + other + " .htm\n";
    EXPECT_EQ("0 105: " + askedTwice("http://a/"), check(first + "present 0"));
    EXPECT_EQ("0 140: " + askedTwice("http://a/"), check(first + "present 1"));
  }
}

TEST_F(Connectivity, BaseAddressEndsInOneSlash) {
  const std::string longest(254, 'x');
  const struct {
    std::string base;
    std::string expected;
  } rows[] = {
      {"http://a/b", "1 0: " + asked("http://a/b/")},
      {"/", "1 0: " + asked("/")},
      {longest, "1 0: " + asked(longest + "/")},
      {longest + "/", "1 0: " + asked(longest + "/")},
      {longest + "x", "0 0: "},
      {longest + "x/", "0 0: "},
      {longest + "xxxxxx", "0 0: "},
      {"", "0 0: "},
  };
  for (const auto& row : rows) {
    setBase(row.base);
    EXPECT_EQ(row.expected, check("present 1")) << row.base;
  }
  std::remove(kDirectory.c_str());
  EXPECT_EQ("0 0: ", check("present 1"));
  EXPECT_EQ(0U, CheckInternetConnection(nullptr));
}

TEST_F(Connectivity, NeedsOneEntryPointAndNoFile) {
  EXPECT_EQ("0 105: load, unload, load, unload",
            check("present 1", "inet_without_IsInternetFilePresent"));
  EXPECT_EQ("1 0: " + asked("http://a/"), check("present 1", "inet_without_InetOpenFile"));
  unsigned int error = 0;
  EXPECT_EQ(0U, CheckInternetConnection(&error));
  EXPECT_EQ(105U, error);
  EXPECT_EQ(0U, ZRIsInternetConnectionOn("any url"));
  std::remove("/zrcommon.log");
}

TEST_F(Connectivity, ToolSaysItInWords) {
  const ScriptedInet inet("present 1 here");
  const auto zrtool = [] { return run({ZR_BUILD_DIR "/zrtool", "check"}); };
  setBase("http://here/");
  EXPECT_EQ("result 1, code 0: the internet is reachable\n", zrtool().out);
  setBase("http://away/");
  EXPECT_EQ("zrtool: result 0, code 105: neither msg32.htm nor msg32.bin was reached\n",
            zrtool().err);
  setBase("");
  EXPECT_EQ(0U, zrtool().err.find("zrtool: result 0, code 0: ")) << zrtool().err;
  EXPECT_EQ(1, zrtool().status);
  setBase("http://here/");
  EXPECT_EQ("{\"reachable\": true, \"code\": 0, \"reason\": \"the internet is reachable\"}\n",
            run({ZR_BUILD_DIR "/zrtool", "check", "--json"}).out);
}

}  // namespace
