#include <zrcommon/network.h>

#include "support/inet_module.h"
#include "support/test.h"

namespace {

const S kUrl = "http://host/page?a=1";
const S kHello = "header 4\nread 9 HHHHhello";

// Result, length and text, of a fetch into a buffer of '#' that ends at an unreadable page.
S fetch(unsigned int size) {
  Guarded response(size);
  unsigned int received = 0;
  unsigned int error = 77;
  const unsigned int result =
      ZRSendDataAndGetResponse(kUrl.c_str(), response.data(), size, &received, &error);
  EXPECT_EQ(0U, error);
  return std::to_string(result) + " " + std::to_string(received) + " " +
         response.bytes().substr(0, response.bytes().find('\0'));
}

TEST(Transport, Answers) {
  for (const auto& [script, size, answer] : Rows<S, unsigned int, S>{
           // header and body in the first piece, and in several
           {kHello, 100, "1 5 hello"},
           {kHello + "\nread 6 world!", 100, "1 11 helloworld!"},
           {"header 4\nread 15000 b\nread 15000 c", 29997,
            "1 29996 " + S(14996, 'b') + S(15000, 'c')},
           // an end by error counts as an end
           {kHello + "\nread -1", 100, "1 5 hello"},
           {kHello + "\nread -7", 100, "1 5 hello"},
           // zero bytes cut a piece, not the count
           {"header 4\nread 9 HHHHhe\\0lo\nread 3 abc", 100, "1 8 heabc"},
           {"header 4\nread 6 HHHH\\0x", 100, "0 0 "},
           // nothing behind the header, or no header
           {"header 0\nread 4 H\nread 4 b", 100, "0 0 "},
           {"header -1\nread 4 H\nread 4 b", 100, "0 0 "},
           // a header that does not end in the first piece drops it, and later pieces come whole
           {"header 4\nread 4 H\nread 3 b", 100, "1 3 bbb"},
           {"header 20\nread 10 H\nread 15 y", 100, "1 5 " + S(15, 'y')},
           {"header -5\nread 10 H\nread 3 b", 100, "1 18 bbb"},
           {"header 20\nread 10 H\nread 15 y", 15, "0 0 "},
           // what does not fit with its terminator
           {kHello, 6, "1 5 hello"},
           {kHello, 5, "0 0 "},
           {kHello + "\nread 6 world!", 12, "1 11 helloworld!"},
           {kHello + "\nread 6 world!", 11, "0 0 hello"},
           {"header 4\nread 9 HHHHhe\\0lo\nread 3 abc", 8, "0 0 he"},
           // answers that cannot be true
           {"header 4\nread 20000 b", 40000, "1 19996 " + S(14996, 'b')},
           {"header 18000\nread 20000 b\nread 2 zz", 40000, "1 2002 zz"},
           {"header 3\nread -7", 100, "0 0 "},
           {kHello + "\nread 2147483647 z", 100, "0 0 hello"},
           {"header 2147483647\nread 10 H\nread 2147483647 z", 100, "0 0 "},
           {"header -2147483648\nread 10 H\nread 3 z", 100, "0 0 "},
           // nothing opened or read: the buffer is as it was
           {"open 0", 3, "0 0 ###"},
           {"read -1", 3, "0 0 ###"}}) {
    const ScriptedInet inet(script);
    EXPECT_EQ(answer, fetch(size)) << script;
  }
}

TEST(Transport, CallsInOrder) {
  const S read = ", read 15000", end = ", close, unload";
  for (const auto& [script, calls] :
       Rows<S, S>{{"open 0", ", unload"},
                  {"read -1", read + end},
                  {"read 4", read + ", header 15000" + end},
                  {"header 1\nread 4\nread 2", read + ", header 15000" + read + read + end},
                  {"header 1\nread 4\nread 6", read + ", header 15000" + read + end}}) {
    const ScriptedInet inet(script);
    fetch(9);
    EXPECT_EQ("load, open " + kUrl + calls, inet.calls()) << script;
  }
}

TEST(Transport, EveryEntryPointIsRequired) {
  for (const char* name :
       {"GetHeader", "InetOpenFile", "InetReadFile", "InetCloseFile", "IsInternetFilePresent"}) {
    const ScriptedInet inet(kHello, S("inet_without_") + name);
    EXPECT_EQ("0 0 ###", fetch(3)) << name;
    EXPECT_EQ("load, unload", inet.calls()) << name;
  }
}

TEST(Transport, ArgumentsAndTheWrapper) {
  char out[6] = "12345";
  unsigned int got = 5, error = 6;
  const char* const url = kUrl.c_str();
  {
    const ScriptedInet inet(kHello);
    EXPECT_EQ(0U, ZRSendDataAndGetResponse(nullptr, out, 6, &got, &error) +
                      ZRSendDataAndGetResponse(url, nullptr, 6, &got, &error) +
                      ZRSendDataAndGetResponse(url, out, 0, &got, &error) +
                      ZRSendDataAndGetResponse(url, out, 6, nullptr, &error) +
                      ZRSendDataAndGetResponse(url, out, 6, &got, nullptr) +
                      SendDataAndGetResponse(kUrl, nullptr, 6) +
                      SendDataAndGetResponse(kUrl, out, 0));
    EXPECT_EQ("5 6 12345", std::to_string(got) + " " + std::to_string(error) + " " + out);
    EXPECT_EQ("", inet.calls());
    EXPECT_EQ(1U, SendDataAndGetResponse(kUrl, out, sizeof out));
    EXPECT_STREQ("hello", out);
  }
  EXPECT_EQ(0U, SendDataAndGetResponse(kUrl, out, sizeof out));
  EXPECT_EQ(0U,
            getFile("/zrcommon.log").find("In ZRLoadLibrary(): dlopen Error!!!/usr/lib/Valdrix"));
  std::remove("/zrcommon.log");
}

}  // namespace
