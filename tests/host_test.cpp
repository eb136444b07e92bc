// A host that is not position-independent, so that it holds copies of the library's variables, and
// that has functions of its own under names the library exports.
#include <gtest/gtest.h>
#include <zrcommon/codecs.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <dlfcn.h>

#include <cstdio>

#include "support/files.h"
#include "support/operations.h"

namespace {
int callsToTheHost = 0;
}  // namespace

char* Trim(char* text) {
  ++callsToTheHost;
  return text;
}
int CopyFile(const char*, const char*) {
  return ++callsToTheHost;
}
void Encrypt(unsigned char*, int) {
  ++callsToTheHost;
}
int strUpr(char*, int) {
  return ++callsToTheHost;
}
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

bool isTheHosts(const std::string& name) {
  return name == "WriteToLog" || name == "CopyFile" || name == "ZRGetInetConfig";
}

// Every operation that asks the system for something, but for those that the host has itself.
TEST(Host, TheLibraryKeepsToItsOwnFunctions) {
  const std::string answers = getFile(ZR_SOURCE_DIR "/tests/answers/faults.txt");
  for (const Operation& operation : systemOperations()) {
    if (isTheHosts(operation.name.substr(0, operation.name.find(' ')))) continue;
    const std::string outcome = outcomeOf(operation);
    EXPECT_EQ(0, callsToTheHost) << operation.name;
    EXPECT_NE(answers.npos, answers.find(operation.name + "\n  " + outcome + "\n")) << outcome;
  }
  char header[] = "[ name ]";
  EXPECT_STREQ("name", GetSectionName(header));
  EXPECT_EQ(0, callsToTheHost);
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
