#include <zrcommon/network.h>

#include "support/calls.h"
#include "support/test.h"

namespace {

const S kOptions = kInstallation + "zrinet.opt";
const S kDirectory = kInstallation + "infoeml.dat";
const S kRecord = kScratch + "record";
const S kUrl = "http://host/page?a=1";
const S kHello = "header 4\nread 9 HHHHhello";

tagInetSettings filledWith(char byte) {
  tagInetSettings settings;
  std::memset(settings.bytes, byte, sizeof settings.bytes);
  return settings;
}

// A record of the server address directory as it is stored: each byte with its halves swapped.
S directoryRecord(unsigned int number, S name, S value) {
  name.resize(260);
  value.resize(260);
  S record = bytesOf(number) + name + value;
  for (char& byte : record) byte = static_cast<char>((byte & 0xF) << 4 | (byte >> 4 & 0xF));
  return record;
}

// Installs a scripted internet library, which keeps a record of its calls, one per line.
void install(const S& script, const S& library = "inet_scripted") {
  putFile(kScratch + "script", script);
  putFile(kRecord, "");
  ::setenv("INET_SCRIPT", (kScratch + "script").c_str(), 1);
  ::setenv("INET_RECORD", kRecord.c_str(), 1);
  std::filesystem::copy_file(ZR_BUILD_DIR "/examples/inet/lib" + library + ".so",
                             kInstallation + "libinet.so",
                             std::filesystem::copy_options::overwrite_existing);
}

// Result, length and text of a fetch into a buffer of '#' that ends at an unreadable page.
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

// Result and code of the check with this base address, then the calls of the internet library.
S check(const S& base, const S& script, const S& library = "inet_scripted") {
  putFile(kDirectory, directoryRecord(12, "Connection Check", base));
  install(script, library);
  unsigned int error = 7;
  const unsigned int result = CheckInternetConnection(&error);
  return std::to_string(result) + " " + std::to_string(error) + ": " + getFile(kRecord);
}

S asked(const S& base) {
  return "load\npresent " + base + "msg32.htm\nunload\n";
}

// The result, then what a buffer of '#' holds; buffer and name end at unreadable pages.
S lookUp(unsigned int entry, const S& name, unsigned int size) {
  GuardedText guardedName(name);
  Guarded value(size);
  const unsigned int result = GetValueFromInfoEml(entry, guardedName.get(), value.data(), size);
  return std::to_string(result) + " " + value.bytes();
}

S found(S value, unsigned int size = 20) {
  value.resize(size);
  return "1 " + value;
}

}  // namespace

TEST(InetOptions, SavedIntoNewAndExistingFiles) {
  tagInetSettings settings = filledWith('s');
  const S path = kScratch + S(255 - kScratch.size(), 'p');
  for (const S& before : {""s, "short"s, S(1000, 'o')}) {
    clearPlaces();
    if (!before.empty()) putFile(path, before, 0600);
    EXPECT_EQ(1U, SaveInetOptions(path.c_str(), &settings));
    EXPECT_EQ(S(788, 's') + (before.size() > 788 ? before.substr(788) : ""), getFile(path));
    EXPECT_EQ(0666U, modeOf(path));
  }
}

TEST(InetOptions, EveryOpenWidensTheMode) {
  for (const auto& [size, result] :
       Rows<std::size_t, unsigned int>{{0, 4}, {787, 4}, {788, 1}, {1000, 1}}) {
    tagInetSettings settings = filledWith('s');
    putFile(kOptions, S(size, 'x'), 0400);
    EXPECT_EQ(result, ReadInetOptions(kOptions.c_str(), &settings)) << size;
    EXPECT_EQ(S(788, result == 1 ? 'x' : 's'), bytesOf(settings));
    EXPECT_EQ(0666U, modeOf(kOptions)) << size;
  }
}

TEST(InetOptions, FailuresLeaveEverythingAlone) {
  tagInetSettings settings = filledWith('s');
  const S tooLong = kScratch + S(256 - kScratch.size(), 'p'), none = kScratch + "none";
  putFile(tooLong, S(788, 'x'), 0600);
  EXPECT_EQ(2U, SaveInetOptions(tooLong.c_str(), &settings));
  EXPECT_EQ(2U, ReadInetOptions(tooLong.c_str(), &settings));
  EXPECT_EQ(0600U, modeOf(tooLong));
  EXPECT_EQ(2U, SaveInetOptions("/no/such", &settings));
  EXPECT_EQ(0U, SaveInetOptions(nullptr, &settings) + ReadInetOptions(nullptr, &settings) +
                    SaveInetOptions(none.c_str(), nullptr) +
                    ReadInetOptions(tooLong.c_str(), nullptr));
  EXPECT_EQ(0U, modeOf(none));
  EXPECT_EQ(S(788, 's'), bytesOf(settings));
}

TEST(InetOptions, ConfigIsZerosWithoutAWholeFile) {
  unsigned int error = 77;
  EXPECT_EQ(0U, ZRGetInetConfig(nullptr, &error));
  for (const std::size_t size : {0U, 787U, 788U}) {
    Guarded memory(sizeof(tagZRINETCONFIG));
    auto* const config = memory.data<tagZRINETCONFIG>();
    EXPECT_EQ(0U, ZRGetInetConfig(config, nullptr));
    EXPECT_EQ(S(786, '#'), memory.bytes());
    if (size) putFile(kOptions, S(size, 'x'));
    EXPECT_EQ(1U, ZRGetInetConfig(config, &error));
    EXPECT_EQ(S(786, size == 788 ? 'x' : '\0'), memory.bytes()) << size;
  }
  EXPECT_EQ(77U, error);
}

TEST(Transport, Answers) {
  for (const auto& [script, size, answer] : Rows<S, unsigned int, S>{
           // chunks of the largest size
           {"header 4\nread 15000 b\nread 15000 c", 29997,
            "1 29996 " + S(14996, 'b') + S(15000, 'c')},
           // an end by error counts as an end
           {kHello + "\nread -1", 100, "1 5 hello"},
           // zero bytes end the text of a chunk, but are counted
           {"header 4\nread 9 HHHHhe\\0lo\nread 3 abc", 100, "1 8 heabc"},
           {"header 4\nread 6 HHHH\\0x", 100, "0 0 "},
           // nothing after the header, no header, or a length of 0 with text
           {"header 0\nread 4 H\nread 4 b", 100, "0 0 "},
           {"header -1\nread 4 H\nread 4 b", 100, "0 0 "},
           {"header 20\nread 10 H\nread 10 y", 100, "0 0 yyyyyyyyyy"},
           // a header that does not end in the first chunk drops it, and later chunks come whole
           {"header 4\nread 4 H\nread 1 b", 100, "1 1 b"},
           {"header 20\nread 10 H\nread 15 y", 100, "1 5 " + S(15, 'y')},
           {"header -5\nread 10 H\nread 3 b", 100, "1 18 bbb"},
           {"header 20\nread 10 H\nread 15 y", 15, "0 0 "},
           {"header 20\nread 10 H\nread 15 y\nread 3 z", 18, "0 0 " + S(15, 'y')},
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
    install(script);
    EXPECT_EQ(answer, fetch(size)) << script;
  }
}

TEST(Transport, CallsInOrder) {
  const S read = "read 15000\n", header = "header 15000 into 15000\n", end = "close\nunload\n";
  for (const auto& [script, calls] :
       Rows<S, S>{{"open 0", "unload\n"},
                  {"read -1", read + end},
                  {"read 4", read + header + end},
                  {"header 1\nread 4\nread 2", read + header + read + read + end},
                  {"header 1\nread 4\nread 6", read + header + read + end}}) {
    install(script);
    putFile(kOptions, "proxy" + S(783, '\0'));
    fetch(9);
    EXPECT_EQ("load\nopen " + kUrl + " with proxy\n" + calls, getFile(kRecord)) << script;
  }
}

TEST(Transport, EveryEntryPointIsRequired) {
  for (const char* name :
       {"GetHeader", "InetOpenFile", "InetReadFile", "InetCloseFile", "IsInternetFilePresent"}) {
    install(kHello, S("inet_without_") + name);
    EXPECT_EQ("0 0 ###", fetch(3)) << name;
    EXPECT_EQ("load\nunload\n", getFile(kRecord)) << name;
  }
}

TEST(Transport, ArgumentsAndTheWrapper) {
  char out[6] = "12345";
  unsigned int got = 5, error = 6;
  const char* const url = kUrl.c_str();
  install(kHello);
  EXPECT_EQ(0U, ZRSendDataAndGetResponse(nullptr, out, 6, &got, &error) +
                    ZRSendDataAndGetResponse(url, nullptr, 6, &got, &error) +
                    ZRSendDataAndGetResponse(url, out, 0, &got, &error) +
                    ZRSendDataAndGetResponse(url, out, 6, nullptr, &error) +
                    ZRSendDataAndGetResponse(url, out, 6, &got, nullptr) +
                    SendDataAndGetResponse(kUrl, nullptr, 6) +
                    SendDataAndGetResponse(kUrl, out, 0));
  EXPECT_EQ("5 6 12345", std::to_string(got) + " " + std::to_string(error) + " " + out);
  EXPECT_EQ("", getFile(kRecord));
  EXPECT_EQ(1U, SendDataAndGetResponse(kUrl, out, sizeof out));
  EXPECT_STREQ("hello", out);
  std::filesystem::remove(kInstallation + "libinet.so");
  EXPECT_EQ(0U, SendDataAndGetResponse(kUrl, out, sizeof out));
  EXPECT_EQ(0U, getFile(kModuleLog).find("In ZRLoadLibrary(): dlopen Error!!!/usr/lib/Valdrix"));
}

TEST(Connectivity, FirstProbeDecides) {
  const S twice = asked("http://a/") + "load\npresent http://a/msg32.bin\nunload\n";
  EXPECT_EQ("1 0: " + asked("http://a/"), check("http://a/", "present 1 .htm"));
  // Only 1 means present.
  for (const char* other : {"0", "2", "-1", "257", "-2147483648"}) {
    const S first = S("present ") + other + " .htm\n";
    EXPECT_EQ("0 105: " + twice, check("http://a/", first + "present 0"));
    EXPECT_EQ("0 140: " + twice, check("http://a/", first + "present 1"));
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
}

TEST(Connectivity, NeedsOneEntryPointAndNoFile) {
  EXPECT_EQ("0 105: load\nunload\nload\nunload\n",
            check("http://a/", "present 1", "inet_without_IsInternetFilePresent"));
  EXPECT_EQ("1 0: " + asked("http://a/"),
            check("http://a/", "present 1", "inet_without_InetOpenFile"));
  EXPECT_EQ(0U, CheckInternetConnection(nullptr));
  EXPECT_EQ(asked("http://a/"), getFile(kRecord)) << "a null error code probes nothing";
  putFile(kOptions, "proxy" + S(783, '\0'));
  install("present 1");
  EXPECT_EQ(1U, ZRIsInternetConnectionOn("any"));
  EXPECT_EQ("load\npresent any with proxy\nunload\n", getFile(kRecord));
  unsigned int error = 7;
  std::filesystem::remove(kInstallation + "libinet.so");
  EXPECT_EQ(0U, CheckInternetConnection(&error));
  EXPECT_EQ(105U, error);
  std::filesystem::remove(kDirectory);
  EXPECT_EQ(0U, CheckInternetConnection(&error) + error);
}

TEST(Directory, FindsTheFirstRecordWithNumberAndName) {
  const S none = "0 " + S(20, '#'), check = "Connection Check", full(260, 'n');
  const S one = directoryRecord(12, "connection check", "http://a/");
  const S noise = directoryRecord(11, check, "x") + directoryRecord(12, "Connection", "y") +
                  directoryRecord(12U << 24U, check, "z");
  const Rows<S, unsigned int, S, S> rows = {
      {noise + one + directoryRecord(12, check, "later"), 12, "CONNECTION CHECK",
       found("http://a/")},
      {one, 13, check, none},
      {one, 12, check + "s", none},
      {directoryRecord(0xFFFFFFFEU, "", ""), 0xFFFFFFFEU, "", found("")},
      {directoryRecord(0, "zero", "v"), 0, "zero", none},
      // Names that fill their field end with it.
      {directoryRecord(7, full, "full"), 7, full, found("full")},
      {directoryRecord(7, full, "nnn"), 7, full + "nnn", none},
      {directoryRecord(7, full, ""), 7, full.substr(1), none},
      // A partial record ends the search.
      {one + one.substr(0, 76), 12, check, found("http://a/")},
      {noise + one.substr(0, 523), 12, check, none}};
  for (const auto& [file, entry, name, expected] : rows) {
    putFile(kDirectory, file);
    EXPECT_EQ(expected, lookUp(entry, name, 20)) << entry << " " << name;
  }
  ASSERT_EQ(0, std::remove(kDirectory.c_str()));
  EXPECT_EQ(none, lookUp(12, check, 20));
}

TEST(Directory, CopiesTheValue) {
  for (const std::size_t length : {0U, 255U, 256U, 260U}) {
    const S value(length, 'v');
    putFile(kDirectory, directoryRecord(1, "n", value) + directoryRecord(2, "next", "w"));
    for (const unsigned int size : {1U, 255U, 256U, 257U, 260U, 261U, 5000U})
      EXPECT_EQ(found(value, size), lookUp(1, "N", size)) << length << " in " << size;
  }
  char text[] = "#";
  EXPECT_EQ(0U, GetValueFromInfoEml(1, nullptr, text, 1) + GetValueFromInfoEml(1, "n", nullptr, 1) +
                    GetValueFromInfoEml(1, "n", text, 0));
  EXPECT_STREQ("#", text);
}
