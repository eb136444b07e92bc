#include <gtest/gtest.h>
#include <zrcommon/logging.h>
#include <zrcommon/system.h>

#include <cstdio>
#include <cstring>

#include "support/files.h"

namespace {

constexpr char kLog[] = "/zrcommon.log";

class Modules : public testing::Test {
 protected:
  void TearDown() override { std::remove(kLog); }
  static std::string module(const std::string& name) { return ZR_BUILD_DIR "/tests/" + name; }
};

TEST_F(Modules, LoadFindAndFree) {
  void* const module = ZRLoadLibrary(Modules::module("libplain_module.so").c_str());
  ASSERT_NE(nullptr, module) << szErrMsg;
  auto* const answer = reinterpret_cast<int (*)()>(ZRGetProcAddress(module, "answer"));
  ASSERT_NE(nullptr, answer);
  EXPECT_EQ(42, answer());
  EXPECT_EQ(nullptr, ZRGetProcAddress(module, "no_such_symbol"));
  EXPECT_EQ(nullptr, ZRGetProcAddress(module, nullptr));
  EXPECT_EQ(nullptr, ZRGetProcAddress(nullptr, "answer"));
  ZRFreeLibrary(module);
  ZRFreeLibrary(nullptr);
  EXPECT_FALSE(isThere(kLog));
}

TEST_F(Modules, FailuresAreLogged) {
  EXPECT_EQ(nullptr, ZRLoadLibrary(nullptr));
  EXPECT_EQ("ZRLoadLibrary: Invalid parameters\n", getFile(kLog));
  std::remove(kLog);
  EXPECT_EQ(nullptr, ZRLoadLibrary("/no/such.so"));
  EXPECT_EQ(
      "In ZRLoadLibrary(): dlopen Error!!!/no/such.so: cannot open shared object file: "
      "No such file or directory\n",
      getFile(kLog));
  EXPECT_EQ(szErrMsg + std::string("\n"), getFile(kLog));
}

// Binding is immediate: the first call would be too late to find out.
TEST_F(Modules, AMissingSymbolFailsAtLoading) {
  EXPECT_EQ(nullptr, ZRLoadLibrary(module("libunresolved_module.so").c_str()));
  EXPECT_NE(std::string::npos, getFile(kLog).find("undefined symbol: nobody_defines_this"));
}

TEST_F(Modules, ALongMessageIsCutAtTheBuffer) {
  EXPECT_EQ(nullptr, ZRLoadLibrary(("/" + std::string(3000, 'x')).c_str()));
  EXPECT_EQ(sizeof szErrMsg, getFile(kLog).size());
  EXPECT_EQ(sizeof szErrMsg - 1, std::strlen(szErrMsg));
}

}  // namespace
