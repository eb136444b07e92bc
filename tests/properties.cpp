#include "properties.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <zrcommon/codecs.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "support/guarded.h"

namespace {

using S = std::string;
using Units = std::u16string;

constexpr char kKey[] = "8W371KJ05926143DCF57";
constexpr char kFile[] = "profile";

template <typename Text>
int order(const Text& a, const Text& b) {
  return int{b < a} - int{a < b};
}

template <typename Text>
Text folded(Text text) {
  for (auto& unit : text) unit = static_cast<typename Text::value_type>(unit & 0xDF);
  return text;
}

void compareAsTheStandardLibrary(Input& in) {
  const Units alphabet = u"Aa[{\x0141\x8061\x20\x01E9\x01C9";
  const Units a = in.text(in.isOneIn(20) ? 5000 : 150, alphabet);
  Units b = a.substr(0, a.size() - std::min(a.size(), in.isOneIn(4) ? in.below(9) : 0));
  for (char16_t& unit : b)
    if (in.isOneIn(4 * b.size())) unit = alphabet[in.below(alphabet.size())];
  const S narrowA(a.begin(), a.end()), narrowB(b.begin(), b.end());
  GuardedUnits x(a, in.below(40)), y(b, in.below(40));
  GuardedText s(narrowA, in.below(40)), t(narrowB, in.below(40));
  EXPECT_EQ(order(a, b), my_wcscmp(x.get(), y.get()));
  EXPECT_EQ(order(folded(a), folded(b)), my_wcsicmp(x.get(), y.get()));
  EXPECT_EQ(order(folded(narrowA), folded(narrowB)), my_stricmp(s.get(), t.get()));
  const auto count = static_cast<unsigned int>(in.below(a.size() + 3));
  const Units c = a.substr(0, count), d = b.substr(0, count);
  const S narrowC = narrowA.substr(0, count), narrowD = narrowB.substr(0, count);
  EXPECT_EQ(order(c, d), my_wcsncmp(x.get(), y.get(), int(count)));
  EXPECT_EQ(order(folded(c), folded(d)), my_wcsnicmp(x.get(), y.get(), count));
  EXPECT_EQ(order(folded(narrowC), folded(narrowD)), my_strnicmp(s.get(), t.get(), count));
  const auto both = std::min({unsigned(a.size()), unsigned(b.size()), count});
  EXPECT_EQ(order(a.substr(0, both), b.substr(0, both)), my_wmemcmp(x.get(), y.get(), int(both)));
}

void walkLikeTheStandardLibrary(Input& in) {
  const Units text = in.text(in.isOneIn(20) ? 5000 : 150, Units(u"xyzAZaz@[`{\x7861"));
  const char16_t wanted = Units(u"xyz\x7861\x6178")[in.below(5)];
  const std::size_t half = text.size() / 2;
  GuardedUnits placed(text, in.below(40)), copy(text, in.below(40)), joined(text, in.below(40));
  const auto place = [&](std::size_t at) { return at < text.size() ? placed.get() + at : nullptr; };
  EXPECT_EQ(text.size(), my_wcslen(placed.get()));
  EXPECT_EQ(place(text.find(wanted)), my_wcschr(placed.get(), wanted));
  EXPECT_EQ(place(text.rfind(wanted)), my_wcsrchr(placed.get(), wanted));
  EXPECT_EQ(place(text.find(wanted)), my_wmemchr(placed.get(), wanted, int(text.size())));
  joined.get()[half] = 0;
  my_wcscat(joined.get(), placed.get() + half);
  EXPECT_EQ(text, joined.text());
  my_wcscpy(copy.get(), my_wcsrev(placed.get()));
  EXPECT_EQ(Units(text.rbegin(), text.rend()), copy.text());
}

void searchLikeTheStandardLibrary(Input& in) {
  const S alphabet = in.isOneIn(2) ? "aaaab" : "abc\xE9\x41";
  const S text = in.text(in.isOneIn(9) ? 6000 : 300, alphabet);
  S pattern = text.substr(in.below(text.size() + 1), 1 + in.below(in.isOneIn(9) ? 1500 : 40));
  if (pattern.empty() || in.isOneIn(2)) pattern.replace(pattern.size() / 3, 1, "b");
  GuardedText x(text), y(pattern);
  GuardedUnits wide(Units(text.begin(), text.end())), wanted(Units(pattern.begin(), pattern.end()));
  const auto* const bytes = y.data<unsigned char>();
  const int length = static_cast<int>(pattern.size());
  EXPECT_EQ(int(text.find(pattern)),
            SearchFor(x.data<unsigned char>(), int(text.size()), bytes, length));
  const int file = ::memfd_create("searched", MFD_CLOEXEC);
  EXPECT_EQ(ssize_t(text.size()), ::write(file, text.data(), text.size()));
  S upper = text;
  std::transform(text.begin(), text.end(), upper.begin(), ::toupper);
  const std::size_t start = in.below(text.size() + 1);
  EXPECT_EQ(int(upper.find(pattern, start)), SearchInFile(file, bytes, length, int(start)));
  ::close(file);
  // The middle of a pattern of odd length may be anything.
  std::size_t at = text.find(pattern);
  for (const char any : length % 2 ? alphabet : "") {
    pattern[pattern.size() / 2] = any;
    at = std::min(at, text.find(pattern));
  }
  EXPECT_EQ(at == S::npos ? nullptr : x.get() + at, my_strstr(x.get(), y.get()));
  EXPECT_EQ(at == S::npos ? nullptr : wide.get() + at, my_wcsstr(wide.get(), wanted.get()));
}

S anyBytes(Input& in, std::size_t most) {
  S all;
  for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
  return in.text(most, all);
}

void scrambleAndBack(Input& in) {
  const S text = "x" + anyBytes(in, 400), key = "k" + anyBytes(in, 69);
  const auto length = static_cast<unsigned int>(text.size());
  GuardedText placed(text, in.below(40));
  auto* const bytes = placed.data<unsigned char>();
  S rotated = text, swapped = text;
  for (std::size_t i = 0; i < length; ++i) {
    rotated[i] = static_cast<char>(BRol(static_cast<unsigned char>(text[i]), 3));
    swapped[i] = static_cast<char>(BRol(static_cast<unsigned char>(text[i]), 4));
  }
  EncryptBlock(bytes, length);
  EXPECT_EQ(rotated, placed.text());
  DecryptBlock(bytes, length);
  EXPECT_EQ(text, placed.text());
  Encrypt(bytes, int(length));
  EXPECT_EQ(swapped, placed.text());
  Encrypt(bytes, -int(length));
  Decrypt(bytes, int(length));
  EXPECT_EQ(text, placed.text());
  CCrypt(key.c_str()).Encrypt(placed.get());
  EXPECT_EQ(length, placed.text().size());
  CCrypt(key.c_str()).Decrypt(placed.get());
  EXPECT_EQ(text, placed.text());
}

void encodeAndBack(Input& in) {
  const S text = "x" + anyBytes(in, 764);
  const std::size_t encodedBytes = (text.size() + 2) / 3 * 4;
  GuardedText placed(text + S(encodedBytes - text.size(), '\0'));
  EXPECT_TRUE(CBase64Url().Encode(placed.get(), 1));
  EXPECT_EQ(encodedBytes, placed.text().size());
  EXPECT_TRUE(CBase64Url().IsBase64(placed.get()));
  EXPECT_TRUE(CBase64Url().Decode(placed.get(), unsigned(placed.size())));
  EXPECT_EQ(text, placed.text());
}

// Parts of up to 765 bytes, none of them empty.
void transformCommandAndBack(Input& in) {
  S command = in.isOneIn(2) ? "a=1" : "page?more?a=1";
  for (std::size_t pairs = in.below(4); pairs > 0; --pairs)
    command += "&n" + in.text(9, S("8W\xE9/")) + "=v" + in.text(in.isOneIn(9) ? 764 : 9, S("8W=/"));
  GuardedText placed(command + S(4 * command.size(), '\0'));
  EXPECT_TRUE(CPHPOperations(kKey).ConvertToSecurePhpCommand(placed.get(), 1));
  EXPECT_TRUE(CPHPOperations(kKey).ConvertToPlainPhpCommand(placed.get(), 1));
  EXPECT_EQ(command, placed.text());
}

using Name = std::pair<S, S>;

void put(const S& content) {
  std::ofstream(kFile, std::ios::binary) << content;
}

// The error code and the value.
S read(const Name& name) {
  char out[1025] = {};
  unsigned int error = 0;
  GetPrivateProfileString(name.first.c_str(), name.second.c_str(), "", out, sizeof out, kFile,
                          &error);
  return std::to_string(error) + " " + out;
}

S withEntry(const S& content, const Name& name, const S& value) {
  put(content);
  unsigned int error = 0;
  WritePrivateProfileString(name.first.c_str(), name.second.c_str(), value.c_str(), kFile, &error);
  std::ostringstream all;
  all << std::ifstream(kFile, std::ios::binary).rdbuf();
  return all.str();
}

// Lines of all kinds, with \1 for a zero byte.
S makeProfile(Input& in) {
  static const S kBlanks(1010, ' ');
  static const S kLines[] = {"[s]",        " [ S ]x",    "[t]",        "[t",        "[",
                             "]",          "k=1",        "\tK = v ",   "l=2",       "k",
                             "=3",         "#k=",        ";",          "",          "m=5 ",
                             "\r",         "k=5\1\n",    "\1k=4",      kBlanks,     kBlanks + "[s]",
                             S(1019, 'x'), S(1022, 'y'), S(1023, 'z'), S(4092, '[')};
  S file;
  for (std::size_t count = in.below(in.isOneIn(10) ? 100 : 20); count > 0; --count)
    file += kLines[in.below(std::size(kLines))] + (in.isOneIn(4) ? "" : "\n");
  std::replace(file.begin(), file.end(), '\1', '\0');
  return file;
}

// Each line that fgets() returns, trimmed.
S linesOf(const S& file) {
  put(file);
  std::FILE* const stream = std::fopen(kFile, "r");
  char line[1024];
  S lines;
  while (std::fgets(line, sizeof line, stream)) lines += Trim(line) + S("\n");
  std::fclose(stream);
  return lines;
}

void setOneEntry(Input& in) {
  const Name names[] = {{"s", "k"}, {"s", "l"}, {"t", "k"}, {"t", "m"}};
  const Name& set = names[in.below(std::size(names))];
  const S file = makeProfile(in), lines = linesOf(file), value = "v" + in.text(255, S("ab=[];#"));
  for (const Name& name : names) {
    put(lines);
    const S before = read(name);
    put(file);
    EXPECT_EQ(before, read(name)) << "not the lines that fgets() returns";
    withEntry(file, set, value);
    if (name == set) {
      EXPECT_EQ("0 " + value, read(name));
    }
    // A zero byte after the change ends the copy of its line, line feed included.
    const bool isKept = before[0] == '0' && file.find('\0') == S::npos;
    if (name != set && isKept) {
      EXPECT_EQ(before, read(name)) << "another entry has changed";
    }
  }
  const S entry = set.second + "=" + value + "\n", rest = file.substr(0, file.find('\0'));
  EXPECT_EQ(lines + "[new]\n" + entry, withEntry(file, {"new", set.second}, value));
  EXPECT_EQ("[t]\n[s]\nk=" + value + "\n" + rest,
            withEntry("[t]\n[s]\nk=1\n" + rest, {"s", "k"}, value));
  S comments;
  while (in.below(160) > 0) comments += "#" + S(in.below(90), '.') + "\n";
  EXPECT_EQ(comments + withEntry(file, set, value), withEntry(comments + file, set, value));
}

}  // namespace

const std::map<std::string, void (*)(Input&)> kProperties = {
    {"base64", encodeAndBack},
    {"compare", compareAsTheStandardLibrary},
    {"profile", setOneEntry},
    {"scramblers", scrambleAndBack},
    {"search", searchLikeTheStandardLibrary},
    {"secure", transformCommandAndBack},
    {"strings", walkLikeTheStandardLibrary},
};
