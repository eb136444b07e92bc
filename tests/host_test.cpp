// A host that is not position-independent, so that it holds copies of the library's variables, and
// that has functions of its own under names the library exports.
#include <gtest/gtest.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/system.h>

#include <dlfcn.h>

#include <cstdio>

#include "support/files.h"

namespace {
int callsToTheHost = 0;
}  // namespace

void WriteToLog(const char*, const char*) {
  ++callsToTheHost;
}
unsigned int GetLastError() {
  return static_cast<unsigned int>(++callsToTheHost);
}
unsigned int ZRGetInetConfig(tagZRINETCONFIG*, unsigned int*) {
  return static_cast<unsigned int>(++callsToTheHost * 0);
}

namespace {

TEST(Host, TheLibraryKeepsToItsOwnFunctions) {
  EXPECT_EQ(nullptr, ZRLoadLibrary(nullptr));
  EXPECT_EQ("ZRLoadLibrary: Invalid parameters\n", getFile("/zrcommon.log"));
  EXPECT_EQ(0, callsToTheHost);
  std::remove("/zrcommon.log");
}

TEST(Host, TheVariablesAreShared) {
  ScratchDirectory files;
  const std::string path = files / "log";
  g_dwCurrentTraceLevel__ = 8;
  g_szLogFileName__ = path.c_str();
  CZRLogger("HOST").WriteToLog(8, "x");
  EXPECT_EQ("HOST x\r\n", getFile(path));
  EXPECT_EQ(nullptr, ZRLoadLibrary("/no/such.so"));
  EXPECT_EQ(0, std::string(szErrMsg).find("In ZRLoadLibrary()"));
  std::remove("/zrcommon.log");
}

TEST(Host, BothSpellingsAreOneFunction) {
  void* const library = ::dlopen("libzrcommon.so.1", RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(nullptr, library);
  EXPECT_EQ(::dlsym(library, "GetLastError"), ::dlsym(library, "_Z12GetLastErrorv"));
  EXPECT_EQ(::dlsym(library, "ReadInetOptions"),
            ::dlsym(library, "_Z15ReadInetOptionsPKcP15tagInetSettings"));
  ::dlclose(library);
}

}  // namespace
