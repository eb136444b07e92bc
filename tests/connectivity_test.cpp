#include <zrcommon/codecs.h>
#include <zrcommon/network.h>

#include "support/inet_module.h"
#include "support/test.h"

namespace {

void setBase(S base) {
  S record("\x0c\0\0\0Connection Check", 20);
  record.resize(264);
  base.resize(260);
  record += base;
  Encrypt(reinterpret_cast<unsigned char*>(record.data()), static_cast<int>(record.size()));
  putFile(kInstallation + "infoeml.dat", record);
}

// Result and code of the check, then the calls that the internet library got.
S check(const S& base, const S& script, const S& library = "inet_scripted") {
  setBase(base);
  const ScriptedInet inet(script, library);
  unsigned int error = 7;
  const unsigned int result = CheckInternetConnection(&error);
  return std::to_string(result) + " " + std::to_string(error) + ": " + inet.calls();
}

S asked(const S& base) {
  return "load, present " + base + "msg32.htm, unload";
}

const S kTwice = asked("http://a/") + ", load, present http://a/msg32.bin, unload";

}  // namespace

TEST(Connectivity, FirstProbeDecides) {
  EXPECT_EQ("1 0: " + asked("http://a/"), check("http://a/", "present 1 .htm"));
  // 1 alone means present.
  for (const char* other : {"0", "2", "-1", "257", "-2147483648"}) {
    const S first = S("present ") + other + " .htm\n";
    EXPECT_EQ("0 105: " + kTwice, check("http://a/", first + "present 0"));
    EXPECT_EQ("0 140: " + kTwice, check("http://a/", first + "present 1"));
  }
}

TEST(Connectivity, BaseAddressEndsInOneSlash) {
  const S longest(254, 'x');
  for (const auto& [base, expected] : Rows<S, S>{{"http://a/b", "1 0: " + asked("http://a/b/")},
                                                 {"/", "1 0: " + asked("/")},
                                                 {longest, "1 0: " + asked(longest + "/")},
                                                 {longest + "/", "1 0: " + asked(longest + "/")},
                                                 {longest + "x", "0 0: "},
                                                 {longest + "x/", "0 0: "},
                                                 {longest + "xxxxxx", "0 0: "},
                                                 {"", "1 0: " + asked("/")}})
    EXPECT_EQ(expected, check(base, "present 1")) << base;
  std::remove((kInstallation + "infoeml.dat").c_str());
  unsigned int error = 7;
  EXPECT_EQ(0U, CheckInternetConnection(nullptr) + CheckInternetConnection(&error) + error);
}

TEST(Connectivity, NeedsOneEntryPointAndNoFile) {
  EXPECT_EQ("0 105: load, unload, load, unload",
            check("http://a/", "present 1", "inet_without_IsInternetFilePresent"));
  EXPECT_EQ("1 0: " + asked("http://a/"),
            check("http://a/", "present 1", "inet_without_InetOpenFile"));
  unsigned int error = 0;
  EXPECT_EQ(0U, CheckInternetConnection(&error) + ZRIsInternetConnectionOn("any url"));
  EXPECT_EQ(105U, error);
  std::remove("/zrcommon.log");
}

TEST(Connectivity, ToolSaysItInWords) {
  const ScriptedInet inet("present 1 here");
  setBase("http://here/");
  EXPECT_EQ("result 1, code 0: the internet is reachable\n", runTool({"check"}).out);
  EXPECT_EQ("{\"reachable\": true, \"code\": 0, \"reason\": \"the internet is reachable\"}\n",
            runTool({"check", "--json"}).out);
  setBase("http://away/");
  EXPECT_EQ("zrtool: result 0, code 105: neither msg32.htm nor msg32.bin was reached\n",
            runTool({"check"}).err);
}
