#include <zrcommon/profile.h>

#include <utility>

#include "support/failing_memory.h"
#include "support/syscalls.h"
#include "support/test.h"

namespace {

const S kLong(300, 'n');
const S kCut(256, 'n');

// Every sample with LF, with CR LF, and without its last line end.
std::vector<S> formsOf(const S& text) {
  S crLf;
  for (const char c : text) crLf += c == '\n' ? "\r\n" : S(1, c);
  return {text, crLf, text.substr(0, text.empty() ? 0 : text.size() - 1)};
}

// The error code and the value, in one text.
S read(const S& path, const S& section, const S& key) {
  char out[1025] = {};
  unsigned int error = 999;
  const int result = GetPrivateProfileString(section.c_str(), key.c_str(), "", out, sizeof out,
                                             path.c_str(), &error);
  EXPECT_EQ(error == 0 ? 0 : -1, result);
  return std::to_string(error) + " " + out;
}

unsigned int write(const S& path, const S& section, const S& key, const S& value) {
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
      {"[net]\na=1\n\t\nb=1\n", "net", " ", "201 "},
      {"[net]\n#a=1\n;a=1\nab=1\n[x]\na=1\n", "net", "a", "202 "},
      {"[net]\n#a=1\n;a=1\n", "net", ";a", "202 "},
      {"[net]\nb=1\n[net]\na=1\n", "net", "a", "202 "},
      {"[net]\nb=1\n[broken\na=1\n", "net", "a", "202 "},
      {"[" + kLong + "]\n#[net]\nx[net]\n[net\n[[net]\n", "net", "a", "204 "},
      {"\xEF\xBB\xBF[net]\na=1\n", "net", "a", "204 "},
      {"[net]\na=1\n", "net", "", "203 "},
      {"", "", "", "205 "},
      {"\0[net]\n[n\0]\n [net]\0\na=1\0=2\nb=3\n"s, "net", "a", "0 1"}};
  const ScratchDirectory scratch;
  for (const auto& [file, section, key, expected] : rows)
    for (const S& form : formsOf(file)) {
      putFile(scratch / "p", form);
      EXPECT_EQ(expected, read(scratch / "p", section, key)) << form;
    }
}

TEST(ProfileReading, Numbers) {
  const ScratchDirectory scratch;
  putFile(scratch / "p", "[s]\na= 12abc\nb=0x10\nc=-5\nd=\ne\n");
  for (const auto& [key, expected, code] : Rows<const char*, int, unsigned int>{
           {"a", 12, 0}, {"b", 0, 0}, {"c", -5, 0}, {"d", 7, 201}, {"e", 7, 201}, {"x", 7, 202}}) {
    unsigned int error = 999;
    EXPECT_EQ(expected, GetPrivateProfileInt("s", key, 7, (scratch / "p").c_str(), &error)) << key;
    EXPECT_EQ(code, error) << key;
  }
}

TEST(ProfileReading, LongLinesCountAsSeveral) {
  const ScratchDirectory scratch;
  // A blank line follows where the line feed alone is left over.
  for (const std::size_t length : {1022U, 1023U, 1024U}) {
    putFile(scratch / "p", "[net]\n" + S(length, 'x') + "\nb=2\n");
    EXPECT_EQ(length == 1023 ? "201 " : "202 ", read(scratch / "p", "net", " ")) << length;
  }
  // A header stands behind nothing but the blanks of its piece.
  for (const std::size_t length : {1020U, 1021U, 1023U, 1024U, 1023U * 33, 1023U * 99 + 1}) {
    putFile(scratch / "p", "[x]\n" + S(length, '[') + "  [net]\na=1\n");
    EXPECT_EQ((length + 2) % 1023 <= 2 ? "0 1" : "204 ", read(scratch / "p", "net", "a")) << length;
  }
}

TEST(ProfileReading, OutputKeepsItsLastByte) {
  const ScratchDirectory scratch;
  putFile(scratch / "p", "[s]\na=123\n");
  const S expected[] = {"", "#", "1#", "12#", "123#", "123\0#"s, "123\0\0#"s};
  for (unsigned int size = 0; size < std::size(expected); ++size)
    for (const char* key : {"a", "missing"}) {
      Guarded out(size);
      unsigned int error = 0;
      GetPrivateProfileString("s", key, "123", out.data(), size, (scratch / "p").c_str(), &error);
      EXPECT_EQ(expected[size], out.bytes());
    }
}

TEST(ProfileReading, NullArgumentsTouchNothing) {
  for (int null = 0; null < 6; ++null) {
    char out[3] = "#";
    unsigned int error = 999;
    const auto arg = [&](int index, auto* value) { return index == null ? nullptr : value; };
    EXPECT_EQ(-1, GetPrivateProfileString(arg(0, ""), arg(1, ""), arg(3, ""), arg(5, out), 3,
                                          arg(2, ""), arg(4, &error)));
    EXPECT_EQ(-1, WritePrivateProfileString(arg(0, ""), arg(1, ""), arg(3, ""), arg(2, ""),
                                            arg(4, &error)));
    EXPECT_EQ(null == 3 || null == 5 ? 7 : -1,
              GetPrivateProfileInt(arg(0, ""), arg(1, ""), 7, arg(2, ""), arg(4, &error)));
    EXPECT_EQ(null == 3 || null == 5 ? 205U : 999U, error);
    EXPECT_STREQ("#", out);
  }
}

TEST(ProfileReading, FilesThatGiveNoLine) {
  const ScratchDirectory scratch;
  EXPECT_EQ("102 ", read(scratch / "missing", "s", "k"));
  EXPECT_EQ("204 ", read(scratch.path(), "s", "k"));
  // What a failed read leaves unfinished, in the middle of a line, is not there.
  putFile(scratch / "p", "[s]\n" + S(8184, '\n') + "k=1234\n");
  trace([&] { putFile(scratch / "out", read(scratch / "p", "s", "k")); },
        {{2, {Fault::kFails, EIO}}});
  EXPECT_EQ("202 ", getFile(scratch / "out"));
  int ends[2] = {};
  ASSERT_EQ(0, ::pipe2(ends, O_CLOEXEC | O_DIRECT));  // a read gives no more than one write took
  for (const S packet : {"[", "s]", "\n", "k", "=", "1\n", "l=2"})
    ASSERT_EQ(static_cast<ssize_t>(packet.size()), ::write(ends[1], packet.data(), packet.size()));
  ::close(ends[1]);
  EXPECT_EQ("0 2", read("/proc/self/fd/" + std::to_string(ends[0]), "s", "l"));
  ::close(ends[0]);
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
  const ScratchDirectory scratch;
  for (const auto& [before, section, key, value, head, tail] : rows)
    for (std::size_t form = 0; form < 3; ++form) {
      putFile(scratch / "p", formsOf(before)[form]);
      EXPECT_EQ(0U, write(scratch / "p", section, key, value));
      EXPECT_EQ(head + formsOf(tail)[form], getFile(scratch / "p"));
      EXPECT_FALSE(isThere(scratch / "p.tmp"));
    }
  const S half(1000, 'h');
  putFile(scratch / "p", "a\0b\n[s]\n c \0d\nk=1\ne\0f\ng\n\0\n"s + half + '\0' + half + "\ni\0"s);
  EXPECT_EQ(0U, write(scratch / "p", "s", "k", "v"));
  EXPECT_EQ("a\n[s]\nc\nk=v\neg\n" + half + half.substr(22) + "\ni", getFile(scratch / "p"));
}

TEST(ProfileWriting, RefusalsLeaveTheProfileAlone) {
  const ScratchDirectory scratch;
  const S deep = scratch.path() + S(255 - scratch.path().size(), '/');
  putFile(scratch / "p", "[s]\nk=1\n");
  putFile(scratch / "q", "[s]\nk=1\n");
  ASSERT_EQ(0, ::mkdir((scratch / "q.tmp").c_str(), 0700));
  for (const auto& [path, section, key, value, error] :
       Rows<S, S, S, S, unsigned int>{{scratch / "q", "s", "k", "v", 102},
                                      {scratch / "missing", "s", "k", "v", 102},
                                      {deep + "/p", "s", "k", "v", 102},
                                      {scratch / "p", "", "", "", 205},
                                      {scratch / "p", "s", "", "", 203},
                                      {scratch / "p", "s", "k", "", 206}})
    EXPECT_EQ(error, write(path, section, key, value)) << path;
  EXPECT_FALSE(isThere(scratch / "p.tmp") || isThere(scratch / "missing.tmp"));
  EXPECT_EQ("[s]\nk=1\n[s]\nk=1\n", getFile(scratch / "p") + getFile(scratch / "q"));
  EXPECT_EQ(0U, write(deep + "p", "s", "k", "v"));
  EXPECT_EQ("[s]\nk=v\n", getFile(scratch / "p"));
}

TEST(ProfileWriting, ReplacesInTheAgreedOrder) {
  const ScratchDirectory scratch;
  putFile(scratch / "p", "[s]\n", 0600);
  const mode_t mask = ::umask(0002);
  EXPECT_EQ("open open read read close write close unlink rename",
            systemCallsOf([&] { write(scratch / "p", "s", "k", "v"); }));
  ::umask(mask);
  EXPECT_EQ(0664U, modeOf(scratch / "p"));
  const S path = scratch / "p";
  char out[2] = {};
  unsigned int error = 0;
  allocationsUntilFailure = 1000;
  WritePrivateProfileString("s", "k", "w", path.c_str(), &error);
  GetPrivateProfileString("s", "k", "", out, sizeof out, path.c_str(), &error);
  const int left = std::exchange(allocationsUntilFailure, -1);
  EXPECT_EQ(1000, left) << "memory can run out";
}

TEST(ProfileWriting, FullDiskGoesUnnoticed) {
  const TinyFileSystem disk(2 * 4096);
  const S before = "[s]\n" + S(4090, '\n');
  putFile(disk / "p", before);
  EXPECT_EQ(0U, write(disk / "p", "s", "k", "v"));
  EXPECT_TRUE(before + "k=" == getFile(disk / "p"));
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

  const auto compared = [](S line, const char* key) {
    const int result = CompareKey(line.data(), key);
    return line + "@" + std::to_string(result);
  };
  EXPECT_EQ("Port\0 \0 80=1@0"s, compared("Port  = 80=1", "pORT"));
  EXPECT_EQ("\0\0@0"s, compared(" =", ""));
  EXPECT_EQ("Port@0", compared("Port", "port"));
  EXPECT_EQ("Ports@-1", compared("Ports", "port"));
  EXPECT_EQ("a=1@-1", compared("a=1", nullptr));

  const ScratchDirectory scratch;
  std::FILE* const stream = std::fopen((scratch / "p").c_str(), "w");
  char line[] = "ab\0##";
  WriteToFile(line, stream);
  WriteToFile(nullptr, stream);
  WriteToFile(line, nullptr);
  std::fclose(stream);
  EXPECT_EQ("ab\n\0#\0"s, S(line, sizeof line));
  EXPECT_EQ("ab\n", getFile(scratch / "p"));
}
