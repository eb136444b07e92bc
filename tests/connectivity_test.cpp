#include <dlfcn.h>
#include <gtest/gtest.h>
#include <zrcommon/codecs.h>
#include <zrcommon/network.h>

#include <cstdlib>

#include "support/child.h"
#include "support/files.h"

namespace {

const std::string kInstalled = "/usr/lib/Valdrix/Valdrix/";
const std::string kLibrary = kInstalled + "libinet.so";
const std::string kDirectory = kInstalled + "infoeml.dat";

// An installation whose internet library answers from a script and records its calls.
class Connectivity : public testing::Test {
 protected:
  void SetUp() override {
    install(ZR_INET_SCRIPTED);
    ::setenv("INET_SCRIPT", script_.c_str(), 1);
    ::setenv("INET_RECORD", record_.c_str(), 1);
    setBase("http://a/");
  }
  void TearDown() override {
    std::remove(kLibrary.c_str());
    std::remove(kDirectory.c_str());
  }

  static void install(const char* library) { putFile(kLibrary, getFile(library), 0755); }

  static void setBase(std::string base) {
    std::string record("\x0c\0\0\0Connection Check", 20);
    record.resize(264);
    base.resize(260);
    record += base;
    Encrypt(reinterpret_cast<unsigned char*>(record.data()), static_cast<int>(record.size()));
    putFile(kDirectory, record);
  }

  void answer(const std::string& script) {
    putFile(script_, script);
    putFile(record_, "");
  }

  // Result and code of the check, then the calls it made.
  std::string check() {
    unsigned int error = 7;
    const unsigned int result = CheckInternetConnection(&error);
    return std::to_string(result) + " " + std::to_string(error) + "\n" + getFile(record_);
  }

  // The same with the library held loaded, so that its script goes on from probe to probe.
  std::string checkWith(const std::string& script) {
    answer(script);
    void* const held = ::dlopen(kLibrary.c_str(), RTLD_NOW);
    EXPECT_NE(nullptr, held);
    putFile(record_, "");
    const std::string outcome = check();
    ::dlclose(held);
    return outcome;
  }

 private:
  ScratchDirectory scratch_;
  std::string script_ = scratch_ / "script";
  std::string record_ = scratch_ / "record";
};

std::string asked(const std::string& base) {
  return "present " + base + "msg32.htm\n";
}

std::string askedTwice(const std::string& base) {
  return asked(base) + "present " + base + "msg32.bin\n";
}

}  // namespace

TEST_F(Connectivity, FirstProbeDecides) {
  EXPECT_EQ("1 0\n" + asked("http://a/"), checkWith("present 1\npresent 0\n"));
  EXPECT_EQ("0 140\n" + askedTwice("http://a/"), checkWith("present 0\npresent 1\n"));
  EXPECT_EQ("0 105\n" + askedTwice("http://a/"), checkWith("present 0\n"));
}

TEST_F(Connectivity, OnlyOneMeansPresent) {
  for (const char* other : {"2", "-1", "257", "-2147483648"}) {
    const std::string script = std::string("present ") + other + "\n";
    EXPECT_EQ("0 105\n" + askedTwice("http://a/"), checkWith(script));
    EXPECT_EQ("0 140\n" + askedTwice("http://a/"), checkWith(script + "present 1\n"));
  }
}

TEST_F(Connectivity, BaseAddressEndsInOneSlash) {
  const std::string longest(254, 'x');
  const struct {
    std::string base;
    std::string expected;
  } rows[] = {
      {"http://a/b", "1 0\n" + asked("http://a/b/")},
      {"/", "1 0\n" + asked("/")},
      {longest, "1 0\n" + asked(longest + "/")},
      {longest + "/", "1 0\n" + asked(longest + "/")},
      {longest + "x", "0 0\n"},
      {longest + "x/", "0 0\n"},
      {longest + "xxxxxx", "0 0\n"},
      {"", "0 0\n"},
  };
  for (const auto& row : rows) {
    setBase(row.base);
    EXPECT_EQ(row.expected, checkWith("present 1\n")) << row.base;
  }
  std::remove(kDirectory.c_str());
  EXPECT_EQ("0 0\n", checkWith("present 1\n"));
  EXPECT_EQ(0U, CheckInternetConnection(nullptr));
}

TEST_F(Connectivity, EveryProbeLoadsAndReleasesTheLibrary) {
  answer("present 0\n");
  EXPECT_EQ(
      "0 105\nload\npresent http://a/msg32.htm\nunload\nload\npresent http://a/msg32.bin\nunload\n",
      check());
  answer("present 1\n");
  EXPECT_EQ(1U, ZRIsInternetConnectionOn("any url"));
  install(ZR_INET_WITHOUT_PRESENT);
  answer("present 1\n");
  EXPECT_EQ("0 105\nload\nunload\nload\nunload\n", check());
  std::remove(kLibrary.c_str());
  answer("");
  EXPECT_EQ("0 105\n", check());
}

TEST_F(Connectivity, ToolSaysItInWords) {
  const auto zrtool = [] { return run({ZR_BUILD_DIR "/zrtool", "check"}); };
  answer("present 1\n");
  EXPECT_EQ("result 1, code 0: the internet is reachable\n", zrtool().out);
  answer("present 0\n");
  EXPECT_EQ("zrtool: result 0, code 105: neither msg32.htm nor msg32.bin was reached\n",
            zrtool().err);
  setBase("");
  EXPECT_EQ(0U, zrtool().err.find("zrtool: result 0, code 0: ")) << zrtool().err;
  EXPECT_EQ(1, zrtool().status);
}
