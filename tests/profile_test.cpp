#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>
#include <vector>

#include "plain_profile.h"
#include "support/child.h"
#include "support/files.h"
#include "support/guarded.h"

namespace {

using namespace std::string_literals;

const std::string kLong(300, 'n');
const std::string kCut(256, 'n');

// Every sample with LF, with CR LF, and without its last line end.
std::vector<std::string> formsOf(const std::string& text) {
  std::string crLf;
  for (const char c : text) crLf += c == '\n' ? "\r\n" : std::string(1, c);
  return {text, crLf, text.substr(0, text.empty() ? 0 : text.size() - 1)};
}

// The error code and the value, in one text.
std::string read(const std::string& path, const std::string& section, const std::string& key) {
  char out[1025] = {};
  unsigned int error = 999;
  const int result = GetPrivateProfileString(section.c_str(), key.c_str(), "", out, sizeof out,
                                             path.c_str(), &error);
  EXPECT_EQ(error == 0 ? 0 : -1, result);
  return std::to_string(error) + " " + out;
}

unsigned int write(const std::string& path, const std::string& section, const std::string& key,
                   const std::string& value) {
  unsigned int error = 999;
  const int result =
      WritePrivateProfileString(section.c_str(), key.c_str(), value.c_str(), path.c_str(), &error);
  EXPECT_EQ(error == 0 ? 0 : -1, result);
  return error;
}

TEST(ProfileReading, Entries) {
  const struct {
    int line;
    std::string file, section, key, expected;
  } rows[] = {
      {__LINE__, "x\n \t[ Net ] x ]\n#\n Host \t = a;b \"c\" #d \n", " nET\t", "HOST ",
       "0 a;b \"c\" #d"},
      {__LINE__, "[net]\nA=1=2\nA=3\n[net]\nB=1\n", "net", "a", "0 1=2"},
      {__LINE__, "[net]\nEmpty=\nb=1\n", "net", "empty", "0 "},
      {__LINE__, "[]\n=v\n", " ", " ", "0 v"},
      {__LINE__, "[" + kCut + "]\n" + kCut + "=v\n", kLong, kLong, "0 v"},
      {__LINE__, "[net]\na=1\n\t\nb=1\n", "net", " ", "201 "},
      {__LINE__, "[net]\n#a=1\n;a=1\nab=1\n[x]\na=1\n", "net", "a", "202 "},
      {__LINE__, "[net]\nb=1\n[net]\na=1\n", "net", "a", "202 "},
      {__LINE__, "[net]\nb=1\n[broken\na=1\n", "net", "a", "202 "},
      {__LINE__, "[" + kLong + "]\n#[net]\nx[net]\n[net\n[[net]\n", "net", "a", "204 "},
      {__LINE__, "\xEF\xBB\xBF[net]\na=1\n", "net", "a", "204 "},
      {__LINE__, "[net]\na=1\n", "net", "", "203 "},
      {__LINE__, "", "", "", "205 "},
      // Zero bytes hide what follows them, up to the end of the line.
      {__LINE__, "\0[net]\n[n\0]\n [net]\0\na=1\0=2\nb=3\n"s, "net", "a", "0 1"},
  };
  const ScratchDirectory scratch;
  for (const auto& row : rows) {
    for (const std::string& form : formsOf(row.file)) {
      putFile(scratch / "p", form);
      EXPECT_EQ(row.expected, read(scratch / "p", row.section, row.key)) << "line " << row.line;
    }
  }
}

TEST(ProfileReading, Numbers) {
  const ScratchDirectory scratch;
  putFile(scratch / "p", "[s]\na= 12abc\nb=0x10\nc=-5\nd=\ne\nf=9999999999\n");
  const std::tuple<const char*, int, unsigned int> rows[] = {
      {"a", 12, 0}, {"b", 0, 0}, {"c", -5, 0}, {"d", 7, 201}, {"e", 7, 201}, {"x", 7, 202}};
  for (const auto& [key, expected, code] : rows) {
    unsigned int error = 999;
    EXPECT_EQ(expected, GetPrivateProfileInt("s", key, 7, (scratch / "p").c_str(), &error)) << key;
    EXPECT_EQ(code, error) << key;
  }
}

TEST(ProfileReading, LongLinesCountAsSeveral) {
  const ScratchDirectory scratch;
  // A blank line follows where the line feed alone is left over.
  for (const std::size_t length : {1022U, 1023U, 1024U}) {
    putFile(scratch / "p", "[net]\n" + std::string(length, 'x') + "\nb=2\n");
    EXPECT_EQ(length == 1023 ? "201 " : "202 ", read(scratch / "p", "net", " ")) << length;
  }
  // A header stands behind nothing but the blanks of its piece.
  for (const std::size_t length : {1020U, 1021U, 1023U, 1024U, 1023U * 33, 1023U * 99 + 1}) {
    putFile(scratch / "p", "[x]\n" + std::string(length, '[') + "  [net]\na=1\n");
    EXPECT_EQ((length + 2) % 1023 <= 2 ? "0 1" : "204 ", read(scratch / "p", "net", "a")) << length;
  }
}

TEST(ProfileReading, OutputKeepsItsLastByte) {
  const ScratchDirectory scratch;
  putFile(scratch / "p", "[s]\na=123\n");
  const std::string expected[] = {"", "#", "1#", "12#", "123#", "123\0#"s, "123\0\0#"s};
  for (unsigned int size = 0; size < std::size(expected); ++size) {
    for (const char* key : {"a", "missing"}) {
      Guarded out(size);
      unsigned int error = 0;
      GetPrivateProfileString("s", key, "123", out.data(), size, (scratch / "p").c_str(), &error);
      EXPECT_EQ(expected[size], out.bytes());
    }
  }
}

TEST(ProfileReading, NullArgumentsTouchNothing) {
  for (int null = 0; null < 5; ++null) {
    char out[] = "#";
    unsigned int error = 999;
    const auto arg = [&](int index, auto* value) { return index == null ? nullptr : value; };
    EXPECT_EQ(-1, GetPrivateProfileString(arg(0, ""), arg(1, ""), null == 3 ? nullptr : "", out, 1,
                                          arg(2, ""), arg(4, &error)));
    EXPECT_EQ(-1, WritePrivateProfileString(arg(0, ""), arg(1, ""), arg(3, ""), arg(2, ""),
                                            arg(4, &error)));
    EXPECT_EQ(null == 3 ? 7 : -1,
              GetPrivateProfileInt(arg(0, ""), arg(1, ""), 7, arg(2, ""), arg(4, &error)));
    EXPECT_EQ(null == 3 ? 205U : 999U, error);
    EXPECT_STREQ("#", out);
  }
}

TEST(ProfileReading, FilesThatGiveNoLine) {
  const ScratchDirectory scratch;
  EXPECT_EQ("102 ", read(scratch / "missing", "s", "k"));
  EXPECT_EQ("204 ", read(scratch.path(), "s", "k"));
  putFile(scratch / "p", "[s]\nk=v\n", 0000);
  const Outcome outcome = runForked([&] {
    dropPrivileges();
    return read(scratch / "p", "s", "k") == "102 " ? 0 : 1;
  });
  EXPECT_EQ(0, outcome.status);
}

TEST(ProfileReading, ShortReadsAreNoEnd) {
  int ends[2] = {};
  ASSERT_EQ(0, ::pipe2(ends, O_CLOEXEC | O_DIRECT));  // a read gives no more than one write took
  for (const std::string packet : {"[", "s]", "\n", "k", "=", "1\n", "l=2"})
    ASSERT_EQ(static_cast<ssize_t>(packet.size()), ::write(ends[1], packet.data(), packet.size()));
  ::close(ends[1]);
  EXPECT_EQ("0 2", read("/proc/self/fd/" + std::to_string(ends[0]), "s", "l"));
  ::close(ends[0]);
}

#ifndef __SANITIZE_ADDRESS__  // whose own runtime needs memory
// Some 256 KiB of stack, so that it need not grow later.
[[gnu::noinline]] void growStack() {
  volatile char room[1 << 18];
  for (volatile char& each : room) each = 0;
}

TEST(ProfileWriting, NeedsNoHeap) {
  const ScratchDirectory scratch;
  const std::string path = scratch / "p";
  putFile(path, "[s]\nk=v\n");
  const Outcome outcome = runForked([&] {
    growStack();
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_AS, &none);
    void* volatile taken = nullptr;
    for (std::size_t size = 1 << 14; size; --size) {
      while ((taken = std::malloc(size))) continue;
    }
    char out[2] = {};
    unsigned int error = 0;
    WritePrivateProfileString("s", "k", "w", path.c_str(), &error);
    GetPrivateProfileString("s", "k", "", out, sizeof out, path.c_str(), &error);
    return out[0];
  });
  EXPECT_EQ('w', outcome.status);
}
#endif

TEST(ProfileWriting, Files) {
  const struct {
    int line;
    std::string before, section, key, value;
    std::string head, tail;  // the head is always written with LF, the tail stays as it was
  } rows[] = {
      {__LINE__, " [Net] x\n ; c \n port\n port=1\n[net]\n", "NET", " PORT ", " 8 0 ",
       "[Net] x\n; c\nPORT=8 0\n", " port=1\n[net]\n"},
      {__LINE__, "[a]\n x \n\n#\n \n [b \n y \n", "A", "k", "v", "[a]\nx\n\n#\n\nk=v\n[b\n",
       " y \n"},
      {__LINE__, "k=1\n[a\n[b]\nk=2\n[a]\n;k=3\nkk=3\n", "a", "k", "v",
       "k=1\n[a\n[b]\nk=2\n[a]\n;k=3\nkk=3\nk=v\n", ""},
      {__LINE__, " x \n[a]\n", " B ", "k", "   ", "x\n[a]\n[B]\nk=\n", ""},
      {__LINE__, "[a]\nx=1\n\n\n", "a", " ", "v", "[a]\nx=1\n=v\n", "\n"},
      {__LINE__, "", kLong, kLong, kLong, "[" + kCut + "]\n" + kCut + "=" + kCut + "\n", ""},
  };
  const ScratchDirectory scratch;
  for (const auto& row : rows) {
    const std::vector<std::string> tails = formsOf(row.tail);
    for (std::size_t form = 0; form < tails.size(); ++form) {
      putFile(scratch / "p", formsOf(row.before)[form]);
      EXPECT_EQ(0U, write(scratch / "p", row.section, row.key, row.value));
      EXPECT_EQ(row.head + tails[form], getFile(scratch / "p")) << "line " << row.line;
      EXPECT_FALSE(isThere(scratch / "p.tmp"));
    }
  }
}

TEST(ProfileWriting, ZeroBytes) {
  const ScratchDirectory scratch;
  const std::string half(1000, 'h');
  putFile(scratch / "p", "a\0b\n[s]\n c \0d\nk=1\ne\0f\ng\n\0\n"s + half + '\0' + half + "\ni\0"s);
  EXPECT_EQ(0U, write(scratch / "p", "s", "k", "v"));
  EXPECT_EQ("a\n[s]\nc\nk=v\neg\n" + half + half.substr(22) + "\ni", getFile(scratch / "p"));
}

TEST(ProfileWriting, RefusalsLeaveTheProfileAlone) {
  const ScratchDirectory scratch;
  const std::string deep = scratch.path() + std::string(255 - scratch.path().size(), '/');
  putFile(scratch / "p", "[s]\nk=1\n");
  putFile(scratch / "q", "[s]\nk=1\n");
  ASSERT_EQ(0, ::mkdir((scratch / "q.tmp").c_str(), 0700));
  EXPECT_EQ(102U, write(scratch / "q", "s", "k", "v"));
  EXPECT_EQ(102U, write(scratch / "missing", "s", "k", "v"));
  EXPECT_EQ(102U, write(deep + "/p", "s", "k", "v"));
  EXPECT_EQ(205U, write(scratch / "p", "", "", ""));
  EXPECT_EQ(203U, write(scratch / "p", "s", "", ""));
  EXPECT_EQ(206U, write(scratch / "p", "s", "k", ""));
  EXPECT_FALSE(isThere(scratch / "p.tmp") || isThere(scratch / "missing.tmp"));
  EXPECT_EQ("[s]\nk=1\n[s]\nk=1\n", getFile(scratch / "p") + getFile(scratch / "q"));
  EXPECT_EQ(0U, write(deep + "p", "s", "k", "v"));
  EXPECT_EQ("[s]\nk=v\n", getFile(scratch / "p"));
}

TEST(ProfileWriting, ReplacesInTheAgreedOrder) {
  const ScratchDirectory scratch;
  putFile(scratch / "p", "[s]\n", 0600);
  const int watch = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  ::inotify_add_watch(watch, scratch.path().c_str(), IN_CREATE | IN_CLOSE | IN_DELETE | IN_MOVE);
  const mode_t mask = ::umask(0002);
  EXPECT_EQ(0U, write(scratch / "p", "s", "k", "v"));
  ::umask(mask);
  EXPECT_EQ(0664U, modeOf(scratch / "p"));
  alignas(inotify_event) char events[4096];
  const ssize_t length = ::read(watch, events, sizeof events);
  ::close(watch);
  std::vector<std::pair<unsigned int, std::string>> order;
  for (ssize_t at = 0; at < length;) {
    const auto* event = reinterpret_cast<const inotify_event*>(events + at);
    order.emplace_back(event->mask, event->name);
    at += static_cast<ssize_t>(sizeof *event + event->len);
  }
  const decltype(order) expected = {{IN_CREATE, "p.tmp"},      {IN_CLOSE_NOWRITE, "p"},
                                    {IN_CLOSE_WRITE, "p.tmp"}, {IN_DELETE, "p"},
                                    {IN_MOVED_FROM, "p.tmp"},  {IN_MOVED_TO, "p"}};
  EXPECT_EQ(expected, order);
}

TEST(ProfileWriting, FullDiskGoesUnnoticed) {
  const TinyFileSystem disk(2 * 4096);
  const std::string before = "[s]\n" + std::string(4090, '\n');
  putFile(disk / "p", before);
  EXPECT_EQ(0U, write(disk / "p", "s", "k", "v"));
  EXPECT_TRUE(before + "k=" == getFile(disk / "p"));
}

}  // namespace
