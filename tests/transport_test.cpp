#include <gtest/gtest.h>
#include <zrcommon/logging.h>
#include <zrcommon/network.h>

#include <cstdio>

#include "support/files.h"
#include "support/guarded.h"
#include "support/inet_module.h"

namespace {

const std::string kUrl = "http://host/page?a=1";

struct Answer {
  unsigned int result;
  unsigned int received;
  std::string text;

  bool operator==(const Answer& other) const {
    return result == other.result && received == other.received && text == other.text;
  }
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  return out << answer.result << ", " << answer.received << " received, text of "
             << answer.text.size() << ": \"" << answer.text.substr(0, 40) << '"';
}

// Fetches into a buffer that ends at an unreadable page.
Answer fetch(unsigned int size) {
  Guarded response(size);
  Answer answer = {9, 0, ""};
  unsigned int error = 77;
  answer.result =
      ZRSendDataAndGetResponse(kUrl.c_str(), response.data(), size, &answer.received, &error);
  EXPECT_EQ(0U, error);
  answer.text = response.bytes().substr(0, response.bytes().find('\0'));
  return answer;
}

TEST(Transport, Answers) {
  const struct {
    int line;
    std::string script;
    unsigned int size;
    Answer answer;
  } rows[] = {
      // header and body in the first piece, and in several
      {__LINE__, "header 4\nread 9 HHHHhello", 100, {1, 5, "hello"}},
      {__LINE__, "header 4\nread 9 HHHHhello\nread 6 world!", 100, {1, 11, "helloworld!"}},
      {__LINE__,
       "header 4\nread 15000 b\nread 15000 c",
       29997,
       {1, 29996, std::string(14996, 'b') + std::string(15000, 'c')}},
      // an end by error counts as an end
      {__LINE__, "header 4\nread 9 HHHHhello\nread -1", 100, {1, 5, "hello"}},
      {__LINE__, "header 4\nread 9 HHHHhello\nread -7", 100, {1, 5, "hello"}},
      // zero bytes cut a piece, not the count
      {__LINE__, "header 4\nread 9 HHHHhe\\0lo\nread 3 abc", 100, {1, 8, "heabc"}},
      {__LINE__, "header 4\nread 6 HHHH\\0x", 100, {0, 0, ""}},
      // nothing behind the header, or no header
      {__LINE__, "header 4\nread 4 H", 100, {0, 0, ""}},
      {__LINE__, "header 0\nread 4 H\nread 4 b", 100, {0, 0, ""}},
      {__LINE__, "header -1\nread 4 H\nread 4 b", 100, {0, 0, ""}},
      // a header that does not end in the first piece drops it, and later pieces come whole
      {__LINE__, "header 20\nread 10 H\nread 15 y", 100, {1, 5, std::string(15, 'y')}},
      {__LINE__, "header -5\nread 10 H\nread 3 b", 100, {1, 18, "bbb"}},
      {__LINE__, "header 20\nread 10 H\nread 15 y", 15, {0, 0, ""}},
      // what does not fit with its terminator
      {__LINE__, "header 4\nread 9 HHHHhello", 6, {1, 5, "hello"}},
      {__LINE__, "header 4\nread 9 HHHHhello", 5, {0, 0, ""}},
      {__LINE__, "header 4\nread 9 HHHHhello\nread 6 world!", 12, {1, 11, "helloworld!"}},
      {__LINE__, "header 4\nread 9 HHHHhello\nread 6 world!", 11, {0, 0, "hello"}},
      {__LINE__, "header 4\nread 9 HHHHhe\\0lo\nread 3 abc", 8, {0, 0, "he"}},
      // answers that cannot be true
      {__LINE__, "header 4\nread 20000 b", 40000, {1, 19996, std::string(14996, 'b')}},
      {__LINE__, "header 18000\nread 20000 b\nread 2 zz", 40000, {1, 2002, "zz"}},
      {__LINE__, "header 3\nread -7", 100, {0, 0, ""}},
      {__LINE__, "header 4\nread 9 HHHHhello\nread 2147483647 z", 100, {0, 0, "hello"}},
      {__LINE__, "header 2147483647\nread 10 H\nread 2147483647 z", 100, {0, 0, ""}},
      {__LINE__, "header -2147483648\nread 10 H\nread 3 z", 100, {0, 0, ""}},
      // nothing opened or read: the buffer is as it was
      {__LINE__, "open 0", 3, {0, 0, "###"}},
      {__LINE__, "read -1", 3, {0, 0, "###"}},
  };
  for (const auto& row : rows) {
    const ScriptedInet inet(row.script);
    EXPECT_EQ(row.answer, fetch(row.size)) << "row of line " << row.line;
  }
}

TEST(Transport, CallsInOrder) {
  const std::string begin = "load, open " + kUrl;
  const struct {
    int line;
    std::string script;
    unsigned int size;
    std::string calls;
  } rows[] = {
      {__LINE__, "open 0", 9, begin + ", unload"},
      {__LINE__, "read -1", 9, begin + ", read 15000, close, unload"},
      {__LINE__, "read 4", 9, begin + ", read 15000, header 15000, close, unload"},
      {__LINE__, "header 1\nread 4\nread 2", 9,
       begin + ", read 15000, header 15000, read 15000, read 15000, close, unload"},
      {__LINE__, "header 1\nread 4\nread 6", 9,
       begin + ", read 15000, header 15000, read 15000, close, unload"},
  };
  for (const auto& row : rows) {
    const ScriptedInet inet(row.script);
    fetch(row.size);
    EXPECT_EQ(row.calls, inet.calls()) << "row of line " << row.line;
  }
}

TEST(Transport, EveryEntryPointIsRequired) {
  for (const char* name :
       {"GetHeader", "InetOpenFile", "InetReadFile", "InetCloseFile", "IsInternetFilePresent"}) {
    const ScriptedInet inet("header 4\nread 9 HHHHhello", std::string("inet_without_") + name);
    EXPECT_EQ((Answer{0, 0, "###"}), fetch(3)) << name;
    EXPECT_EQ("load, unload", inet.calls()) << name;
  }
}

TEST(Transport, BadArgumentsLoadNothing) {
  const ScriptedInet inet("header 4\nread 9 HHHHhello");
  char response[10] = "before";
  unsigned int received = 5;
  unsigned int error = 6;
  const char* const url = kUrl.c_str();
  EXPECT_EQ(0U, ZRSendDataAndGetResponse(nullptr, response, 10, &received, &error));
  EXPECT_EQ(0U, ZRSendDataAndGetResponse(url, nullptr, 10, &received, &error));
  EXPECT_EQ(0U, ZRSendDataAndGetResponse(url, response, 0, &received, &error));
  EXPECT_EQ(0U, ZRSendDataAndGetResponse(url, response, 10, nullptr, &error));
  EXPECT_EQ(0U, ZRSendDataAndGetResponse(url, response, 10, &received, nullptr));
  EXPECT_EQ(0U, SendDataAndGetResponse(kUrl, nullptr, 10));
  EXPECT_EQ(0U, SendDataAndGetResponse(kUrl, response, 0));
  EXPECT_EQ("", inet.calls());
  EXPECT_EQ(5U, received);
  EXPECT_EQ(6U, error);
  EXPECT_STREQ("before", response);
}

TEST(Transport, TheWrapperAnswersTheSame) {
  char response[6] = "12345";
  {
    const ScriptedInet inet("header 4\nread 9 HHHHhello");
    EXPECT_EQ(1U, SendDataAndGetResponse(kUrl, response, sizeof response));
    EXPECT_STREQ("hello", response);
  }
  EXPECT_EQ(0U, SendDataAndGetResponse(kUrl, response, sizeof response));
  EXPECT_EQ(0,
            getFile("/zrcommon.log").find("In ZRLoadLibrary(): dlopen Error!!!/usr/lib/Valdrix"));
  std::remove("/zrcommon.log");
}

}  // namespace
