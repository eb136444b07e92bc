#include <pthread.h>
#include <zrcommon/profile.h>

#include "support/calls.h"
#include "support/test.h"

namespace {

const S kPath = kScratch + "p";
const S kLong(300, 'n');
const S kCut(256, 'n');

// Every sample with LF, with CR LF, and without its last line end.
std::vector<S> formsOf(const S& text) {
  S crLf;
  for (const char c : text) crLf += c == '\n' ? "\r\n" : S(1, c);
  return {text, crLf, text.substr(0, text.empty() ? 0 : text.size() - 1)};
}

// The error code and the value or the default, in one text.
S read(const S& section, const S& key, const S& path = kPath) {
  char out[1025] = {};
  unsigned int error = 999;
  const int result = GetPrivateProfileString(section.c_str(), key.c_str(), "none", out, sizeof out,
                                             path.c_str(), &error);
  EXPECT_EQ(error == 0 ? 0 : -1, result);
  return std::to_string(error) + " " + out;
}

unsigned int write(const S& section, const S& key, const S& value, const S& path = kPath) {
  unsigned int error = 999;
  const int result =
      WritePrivateProfileString(section.c_str(), key.c_str(), value.c_str(), path.c_str(), &error);
  EXPECT_EQ(error == 0 ? 0 : -1, result);
  return error;
}

}  // namespace

TEST(ProfileReading, Entries) {
  const Rows<S, S, S, S> rows = {
      {"x\n \t[ Net ] x ]\n#\n Host \t = a;b \"c\" #d \n", " nET\t", "HOST ", "0 a;b \"c\" #d"},
      {"[net]\nA=1=2\nA=3\n[net]\nB=1\n", "net", "a", "0 1=2"},
      {"[net]\nEmpty=\nb=1\n", "net", "empty", "0 "},
      {"[]\n=v\n", " ", " ", "0 v"},
      {"[" + kCut + "]\n" + kCut + "=v\n", kLong, kLong, "0 v"},
      {"[net]\nk=" + S(1018, 'v') + "\n", "net", "k", "0 " + S(1018, 'v')},
      {"[net]\na=1\n\t\nb=1\n", "net", " ", "201 none"},
      {"[net]\n#a=1\n;a=1\nab=1\n[x]\na=1\n", "net", "a", "202 none"},
      {"[net]\n#a=1\n;a=1\n", "net", ";a", "202 none"},
      {"[net]\nb=1\n[net]\na=1\n", "net", "a", "202 none"},
      {"[net]\nb=1\n[broken\na=1\n", "net", "a", "202 none"},
      {"[" + kLong + "]\n#[net]\nx[net]\n[net\n[[net]\n", "net", "a", "204 none"},
      {"\xEF\xBB\xBF[net]\na=1\n", "net", "a", "204 none"},
      {"[net]\na=1\n", "net", "", "203 none"},
      {"", "", "", "205 none"},
      {"\0[net]\n[n\0]\n [net]\0\na=1\0=2\nb=3\n"s, "net", "a", "0 1"}};
  for (const auto& [file, section, key, expected] : rows)
    for (const S& form : formsOf(file)) {
      putFile(kPath, form);
      EXPECT_EQ(expected, read(section, key)) << form;
    }
}

TEST(ProfileReading, Numbers) {
  putFile(kPath, "[s]\na= 12abc\nb=0x10\nc=-5\nd=\ne\n");
  for (const auto& [key, expected, code] : Rows<const char*, int, unsigned int>{
           {"a", 12, 0}, {"b", 0, 0}, {"c", -5, 0}, {"d", 7, 201}, {"e", 7, 201}, {"x", 7, 202}}) {
    unsigned int error = 999;
    EXPECT_EQ(expected, GetPrivateProfileInt("s", key, 7, kPath.c_str(), &error)) << key;
    EXPECT_EQ(code, error) << key;
  }
}

TEST(ProfileReading, LongLinesCountAsSeveral) {
  // A blank line follows where the line feed alone is left over.
  for (const std::size_t length : {1022U, 1023U, 1024U}) {
    putFile(kPath, "[net]\n" + S(length, 'x') + "\nb=2\n");
    EXPECT_EQ(length == 1023 ? "201 none" : "202 none", read("net", " ")) << length;
  }
  // Only blanks of its own piece may stand before a header.
  for (const std::size_t length : {1020U, 1021U, 1023U, 1024U, 1023U * 33, 1023U * 99 + 1}) {
    putFile(kPath, "[x]\n" + S(length, '[') + "  [net]\na=1\n");
    EXPECT_EQ((length + 2) % 1023 <= 2 ? "0 1" : "204 none", read("net", "a")) << length;
  }
}

TEST(ProfileReading, OutputKeepsItsLastByte) {
  putFile(kPath, "[s]\na=123\n");
  const S expected[] = {"", "#", "1#", "12#", "123#", "123\0#"s, "123\0\0#"s};
  for (unsigned int size = 0; size < std::size(expected); ++size)
    for (const char* key : {"a", "missing"}) {
      Guarded out(size);
      unsigned int error = 0;
      GetPrivateProfileString("s", key, "123", out.data(), size, kPath.c_str(), &error);
      EXPECT_EQ(expected[size], out.bytes());
    }
}

TEST(ProfileReading, NullArgumentsTouchNothing) {
  for (int null = 0; null < 6; ++null) {
    char out[3] = "#";
    unsigned int error = 999;
    const auto arg = [&](int index, auto* value) { return index == null ? nullptr : value; };
    const char *section = arg(0, ""), *key = arg(1, ""), *file = arg(2, ""), *value = arg(3, "");
    unsigned int* const code = arg(4, &error);
    EXPECT_EQ(-1, GetPrivateProfileString(section, key, value, arg(5, out), 3, file, code));
    EXPECT_EQ(999U, error);
    const bool isNumbers = null == 3 || null == 5;
    EXPECT_EQ(isNumbers ? 7 : -1, GetPrivateProfileInt(section, key, 7, file, code));
    error = 999;
    EXPECT_EQ(-1, WritePrivateProfileString(section, key, value, file, code));
    EXPECT_EQ(null == 5 ? 205U : 999U, error);
    EXPECT_STREQ("#", out);
  }
}

TEST(ProfileReading, BrokenOffReads) {
  EXPECT_EQ("204 none", read("s", "k", kScratch));
  // The line that a failed read leaves unfinished does not count.
  putFile(kPath, "[s]\nk=1234\n");
  watch([] { EXPECT_EQ("202 none", read("s", "k")); }, {Fault::kIsShort, 1, 0, "read", 8});
}

// Wherever blocks of the file may end, header and entry are found, and the rest is kept.
TEST(ProfileReading, EntriesLieAnywhere) {
  const S tail = "  l = 2 \n" + S(5000, '\n');
  for (std::size_t block = 1024; block <= 36 * 1024; block += 1024)
    for (std::size_t start = block - 13; start <= block; ++start) {
      putFile(kPath, S(start, '\n') + "[s]\nkey=12\n" + tail);
      EXPECT_EQ("0 12", read("s", "key")) << start;
      EXPECT_EQ(0U, write("s", "key", "v"));
      EXPECT_TRUE(S(start, '\n') + "[s]\nkey=v\n" + tail == getFile(kPath)) << start;
    }
}

TEST(ProfileWriting, Files) {
  // The head is always written with LF, the tail stays as it was.
  const Rows<S, S, S, S, S, S> rows = {
      {" [Net] x\n ; c \n port\n port=1\n[net]\n", "NET", " PORT ", " 8 0 ",
       "[Net] x\n; c\nPORT=8 0\n", " port=1\n[net]\n"},
      {"[a]\n x \n\n#\n \n [b \n y \n", "A", "k", "v", "[a]\nx\n\n#\n\nk=v\n[b\n", " y \n"},
      {"k=1\n[a\n[b]\nk=2\n[a]\n;k=3\nkk=3\n", "a", "k", "v",
       "k=1\n[a\n[b]\nk=2\n[a]\n;k=3\nkk=3\nk=v\n", ""},
      {" x \n[a]\n", " B ", "k", "   ", "x\n[a]\n[B]\nk=\n", ""},
      {"[a]\nx=1\n\n\n", "a", " ", "v", "[a]\nx=1\n=v\n", "\n"},
      {"", kLong, kLong, kLong, "[" + kCut + "]\n" + kCut + "=" + kCut + "\n", ""}};
  for (const auto& [before, section, key, value, head, tail] : rows)
    for (std::size_t form = 0; form < 3; ++form) {
      putFile(kPath, formsOf(before)[form]);
      putFile(kPath + ".tmp", S(2000, 't'));
      EXPECT_EQ(0U, write(section, key, value));
      EXPECT_EQ(head + formsOf(tail)[form], getFile(kPath));
      EXPECT_EQ(0U, modeOf(kPath + ".tmp"));
    }
  const S half(1000, 'h');
  putFile(kPath, "a\0b\n[s]\n c \0d\nk=1\ne\0f\ng\n\0\n"s + half + '\0' + half + "\ni\0"s);
  EXPECT_EQ(0U, write("s", "k", "v"));
  EXPECT_EQ("a\n[s]\nc\nk=v\neg\n" + half + half.substr(22) + "\ni", getFile(kPath));
  putFile(kPath, S(1500, 'x') + " [s]\n[s]\n");
  EXPECT_EQ(0U, write("s", "k", "v"));
  EXPECT_EQ(S(1023, 'x') + "\n" + S(477, 'x') + " [s]\n[s]\nk=v\n", getFile(kPath));
}

TEST(ProfileWriting, RefusalsLeaveTheProfileAlone) {
  const S deep = kScratch + S(255 - kScratch.size(), '/'), other = kScratch + "q";
  putFile(kPath, "[s]\nk=1\n");
  putFile(other, "[s]\nk=1\n");
  ASSERT_EQ(0, ::mkdir((other + ".tmp").c_str(), 0700));
  const Files before = filesInPlaces();
  for (const auto& [path, section, key, value, error] :
       Rows<S, S, S, S, unsigned int>{{other, "s", "k", "v", 102},
                                      {kScratch + "missing", "s", "k", "v", 102},
                                      {deep + "/p", "s", "k", "v", 102},
                                      {kPath, "", "", "", 205},
                                      {kPath, "s", "", "", 203},
                                      {kPath, "s", "k", "", 206}})
    EXPECT_EQ(error, write(section, key, value, path)) << path;
  EXPECT_EQ(before, filesInPlaces());
  EXPECT_EQ(0U, write("s", "k", "v", deep + "p"));
  EXPECT_EQ("[s]\nk=v\n", getFile(kPath));
}

TEST(ProfileWriting, ReplacesInTheAgreedOrder) {
  putFile(kPath, "[s]\n", 0600);
  const mode_t mask = ::umask(0002);
  const S calls = watch([] { write("s", "k", "v"); }).text();
  ::umask(mask);
  EXPECT_EQ("open-r open-w", calls.substr(0, 13));
  EXPECT_EQ("close write close remove rename", calls.substr(calls.size() - 31));
  EXPECT_EQ(0664U, modeOf(kPath));
}

TEST(ProfileLines, HelpersCutUpTheirLine) {
  const auto cut = [](S line, auto helper) {
    const char* const result = helper(line.data());
    return line + "@" + (result ? std::to_string(result - line.data()) : "null");
  };
  EXPECT_EQ("\0\0a b\0\n@2"s, cut("\t a b \n", Trim));
  EXPECT_EQ("\0\0\0@3"s, cut(" \v\f", Trim));
  EXPECT_EQ("\0\0a b\0\0] x@2"s, cut("[ a b ]] x", GetSectionName));
  EXPECT_EQ("\0a@null"s, cut("[a", GetSectionName));
  EXPECT_EQ(nullptr, GetSectionName(GuardedText("").get()));
  EXPECT_TRUE(!Trim(nullptr) && !GetSectionName(nullptr) && CompareKey(nullptr, "") == -1);

  for (const auto& [line, key, expected] :
       Rows<S, const char*, S>{{"Port  = 80=1", "pORT", "Port\0 \0 80=1 is 0"s},
                               {" =", "", "\0\0 is 0"s},
                               {"Port", "port", "Port is 0"},
                               {"Ports", "port", "Ports is -1"},
                               {"a=1", nullptr, "a=1 is -1"}}) {
    S changed = line;
    const int result = CompareKey(changed.data(), key);
    EXPECT_EQ(expected, changed + " is " + std::to_string(result));
  }
  std::FILE* const stream = std::fopen(kPath.c_str(), "w");
  char line[] = "ab\0##";
  WriteToFile(line, stream);
  WriteToFile(nullptr, stream);
  WriteToFile(line, nullptr);
  std::fclose(stream);
  EXPECT_EQ("ab\n\0#\0"s, S(line, sizeof line));
  EXPECT_EQ("ab\n", getFile(kPath));
}

// A thread with the smallest stack leaves the lowest 1 KiB of it untouched.
TEST(ProfileWriting, FitsASmallStack) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer makes frames larger";
#endif
  putFile(kPath, "[s]\nkey=12\n");
  Guarded stack(16384);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(0, pthread_attr_setstack(&attributes, stack.data(), stack.size()));
  const auto useProfile = [](void*) -> void* {
    char value[3] = {};
    unsigned int error = 0;
    GetPrivateProfileString("s", "key", "", value, sizeof value, kPath.c_str(), &error);
    GetPrivateProfileInt("s", "key", 0, kPath.c_str(), &error);
    WritePrivateProfileString("s", "new", value, kPath.c_str(), &error);
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(0, pthread_create(&thread, &attributes, useProfile, nullptr));
  pthread_join(thread, nullptr);
  EXPECT_EQ("[s]\nkey=12\nnew=12\n", getFile(kPath));
  EXPECT_EQ(S(1024, '#'), stack.bytes().substr(0, 1024));
}
