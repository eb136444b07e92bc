// Properties that hold for any input. The tests check them with random bytes; the fuzzer, which is
// built from this file too, with its own: ZR_FUZZ_TARGET=profile build/fuzz/fuzz/fuzz
#include <zrcommon/codecs.h>
#include <zrcommon/network.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <map>

#include "support/test.h"

namespace {

using Units = std::u16string;

constexpr char kFile[] = "profile";  // in the current directory

// Bytes from which a property takes its arguments; all are zero after the last one.
struct Input {
  S bytes;
  std::size_t at = 0;

  std::size_t next() { return at < bytes.size() ? bytes[at++] & 0xFF : 0; }
  std::size_t below(std::size_t end) {
    const std::size_t high = next() << 8;
    return (high | next()) % end;
  }

  // Up to @p most characters of an alphabet.
  template <typename Text>
  Text text(std::size_t most, const Text& alphabet) {
    Text result(below(most + 1), 0);
    for (auto& character : result) character = alphabet[next() % alphabet.size()];
    return result;
  }
};

int order(const Units& a, const Units& b) {
  return int{b < a} - int{a < b};
}

// What comparing without regard to case looks at.
Units folded(Units text) {
  for (char16_t& unit : text) unit &= 0xDF;
  return text;
}

void compareLikeTheStandardLibrary(Input& in) {
  const Units alphabet = u"Aa[{\x0141\x8061\x20\x01E9\x01C9";
  Units a = in.text(150, alphabet), b = in.below(9) ? a : in.text(150, alphabet);
  for (char16_t& unit : b)
    if (in.below(4 * b.size()) == 0) unit = alphabet[in.below(alphabet.size())];
  GuardedUnits x(a, in.below(40)), y(b, in.below(40));
  GuardedText s(S(a.begin(), a.end()), in.below(40)), t(S(b.begin(), b.end()), in.below(40));
  EXPECT_EQ(order(a, b), my_wcscmp(x.get(), y.get()));
  EXPECT_EQ(order(folded(a), folded(b)), my_wcsicmp(x.get(), y.get()));
  EXPECT_EQ(order(folded(a), folded(b)), my_stricmp(s.get(), t.get()));
  const auto count = static_cast<unsigned int>(in.below(std::min(a.size(), b.size()) + 1));
  a.resize(count);
  b.resize(count);
  EXPECT_EQ(order(a, b), my_wmemcmp(x.get(), y.get(), int(count)));
  EXPECT_EQ(order(a, b), my_wcsncmp(x.get(), y.get(), int(count)));
  EXPECT_EQ(order(folded(a), folded(b)), my_wcsnicmp(x.get(), y.get(), count));
  EXPECT_EQ(order(folded(a), folded(b)), my_strnicmp(s.get(), t.get(), count));
}

void walkLikeTheStandardLibrary(Input& in) {
  const Units text = in.text(in.below(20) ? 150 : 5000, Units(u"xyzAZ\x7861"));
  const char16_t wanted = u"xyz\x7861\x6178"[in.below(5)];
  GuardedUnits placed(text, in.below(40)), copy(text, in.below(40));
  const auto place = [&](std::size_t at) { return at < text.size() ? placed.get() + at : nullptr; };
  EXPECT_EQ(text.size(), my_wcslen(placed.get()));
  EXPECT_EQ(place(text.find(wanted)), my_wcschr(placed.get(), wanted));
  EXPECT_EQ(place(text.rfind(wanted)), my_wcsrchr(placed.get(), wanted));
  EXPECT_EQ(place(text.find(wanted)), my_wmemchr(placed.get(), wanted, int(text.size())));
  const std::size_t half = text.size() / 2;
  const Units reversed(text.rbegin(), text.rend());
  copy.get()[half] = 0;
  my_wcscat(copy.get(), my_wcsrev(placed.get()) + half);
  my_wcscpy(placed.get(), copy.get());
  EXPECT_EQ(text.substr(0, half) + reversed.substr(half), placed.text());
}

void searchLikeTheStandardLibrary(Input& in) {
  const S alphabet = in.below(2) ? "aaaab" : "abc\xE9\x41", text = in.text(300, alphabet);
  S pattern = text.substr(in.below(text.size() + 1), 1 + in.below(in.below(9) ? 40 : 200));
  if (pattern.empty() || in.below(2)) pattern.replace(pattern.size() / 3, 1, "b");
  GuardedText x(text), y(pattern);
  GuardedUnits wide(Units(text.begin(), text.end())), wanted(Units(pattern.begin(), pattern.end()));
  std::size_t at = text.find(pattern);
  EXPECT_EQ(int(at), SearchFor(x.data<unsigned char>(), int(text.size()), y.data<unsigned char>(),
                               int(pattern.size())));
  // The strings' searches take any unit in the middle of a pattern of odd length.
  for (const char any : pattern.size() % 2 ? alphabet : "") {
    pattern[pattern.size() / 2] = any;
    at = std::min(at, text.find(pattern));
  }
  EXPECT_EQ(at == S::npos ? nullptr : x.get() + at, my_strstr(x.get(), y.get()));
  EXPECT_EQ(at == S::npos ? nullptr : wide.get() + at, my_wcsstr(wide.get(), wanted.get()));
}

void decodeWhatIsBase64(Input& in) {
  CBase64Url base64;
  const S symbols = in.text(1100, in.below(2) ? "AQaz09_!$"s : "Y_$+"s);
  GuardedText decoded(symbols);
  const bool fits = !symbols.empty() && symbols.size() < 1024;
  EXPECT_EQ(fits && base64.IsBase64(symbols.c_str()),
            base64.Decode(decoded.get(), unsigned(in.below(decoded.size())) + 1));
  const S bytes = "b" + in.text(764, "\x01 aZ~\x7F\x80\xFF"s);
  GuardedText coded(bytes + S((bytes.size() + 2) / 3 * 4 - bytes.size(), '\0'));
  EXPECT_TRUE(base64.Encode(coded.get(), 1) && base64.Decode(coded.get(), unsigned(coded.size())));
  EXPECT_EQ(bytes, coded.text());
}

// Names and addresses, whose lengths may be wrong, in a message that is as long as it says.
void listAnyLink(Input& in) {
  const S pieces[] = {"\x08\0\3\0"s, "\x08\0\1\0"s, "\4\4\3\0"s, S(1100, 'n'), "\5"};
  S bytes(in.below(5) ? 28 : 0, '\0');
  for (std::size_t count = in.below(16); count > 0; --count)
    bytes += pieces[in.next() % std::size(pieces)];
  Guarded message(bytesOf(std::uint32_t(bytes.size() + 4)) + bytes);
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
  EXPECT_EQ(1, rtnl_print_link(message.data<nlmsghdr>(), links));
  EXPECT_GT(sizeof links.at(0).name, ::strnlen(links[0].name, sizeof links[0].name));
  EXPECT_EQ(0U, std::strlen(links[0].macAddress) % 17);
}

// With names and values of up to 765 bytes.
void transformCommandAndBack(Input& in) {
  const S bytes = "\x01\x80\xFF+/8W", key = "k" + in.text(69, bytes);
  S command = in.below(2) ? "a=1" : "page?more?a=1";
  for (std::size_t pairs = in.below(4); pairs > 0; --pairs)
    command += "&n" + in.text(9, bytes) + "=v" + in.text(in.below(9) ? 99 : 764, bytes + "=");
  GuardedText placed(command + S(4 * command.size(), '\0'));
  CPHPOperations operations(key.c_str());
  EXPECT_TRUE(operations.ConvertToSecurePhpCommand(placed.get(), 1));
  EXPECT_TRUE(operations.ConvertToPlainPhpCommand(placed.get(), 1));
  EXPECT_EQ(command, placed.text());
}

// The error code and the value of a key.
S read(const S& file, const S& section, const S& key) {
  putFile(kFile, file);
  char out[1025] = {};
  unsigned int error = 0;
  GetPrivateProfileString(section.c_str(), key.c_str(), "", out, sizeof out, kFile, &error);
  return std::to_string(error) + " " + out;
}

// The file after a key was set.
S changed(const S& file, const S& section, const S& key, const S& value) {
  putFile(kFile, file);
  unsigned int error = 0;
  WritePrivateProfileString(section.c_str(), key.c_str(), value.c_str(), kFile, &error);
  return getFile(kFile);
}

// Each line that fgets() returns, trimmed.
S linesOf(const S& file) {
  putFile(kFile, file);
  std::FILE* const stream = std::fopen(kFile, "r");
  char line[1024];
  S lines;
  while (std::fgets(line, sizeof line, stream)) lines += Trim(line) + "\n"s;
  std::fclose(stream);
  return lines;
}

S makeProfile(Input& in) {
  const S tokens[] = {"[s]",     "[t]",      "\n[ S ]x\n", "\nk=1\n",    "\n\tK = v \n",
                      "\nl=2\n", "[",        "=",          "\n",         "\r",
                      "#",       S(1, '\0'), S(1010, ' '), S(1020, 'x'), S(4092, '[')};
  S file;
  for (std::size_t count = in.below(in.below(10) ? 30 : 200); count > 0; --count)
    file += tokens[in.below(std::size(tokens))];
  return file;
}

void setOneKey(Input& in) {
  const S file = makeProfile(in), lines = linesOf(file), key = in.below(2) ? "k" : "l";
  const S value = "v" + in.text(255, "ab=[];#"s), entry = key + "=" + value + "\n";
  const S after = changed(file, "s", key, value), rest = file.substr(0, file.find('\0'));
  EXPECT_EQ("0 " + value, read(after, "s", key));
  EXPECT_EQ(read(lines, "s", key), read(file, "s", key));
  const S other = read(file, "t", key);
  // A zero byte after the change ends the copy of its line, line feed included.
  if (other[0] == '0' && rest == file) {
    EXPECT_EQ(other, read(after, "t", key));
  }
  EXPECT_EQ(lines + "[new]\n" + entry, changed(file, "new", key, value));
  EXPECT_EQ("[t]\n[s]\n" + entry + rest,
            changed("[t]\n[s]\n" + key + "\n" + rest, "s", key, value));
  S comments;
  while (in.below(160) > 0) comments += "#" + S(in.below(90), '.') + "\n";
  EXPECT_EQ(comments + after, changed(comments + file, "s", key, value));
}

const std::map<S, void (*)(Input&)> kProperties = {{"base64", decodeWhatIsBase64},
                                                   {"compare", compareLikeTheStandardLibrary},
                                                   {"links", listAnyLink},
                                                   {"profile", setOneKey},
                                                   {"search", searchLikeTheStandardLibrary},
                                                   {"secure", transformCommandAndBack},
                                                   {"strings", walkLikeTheStandardLibrary}};

}  // namespace

TEST(Properties, HoldForRandomInput) {
  ASSERT_EQ(0, ::chdir("/scratch"));
  std::mt19937 random(20240229);
  for (const auto& [name, property] : kProperties)
    for (int round = 0; round < 400 && !HasFailure(); ++round) {
      Input input = {S(2000, '\0')};
      for (char& byte : input.bytes) byte = static_cast<char>(random());
      SCOPED_TRACE(name + ", round " + std::to_string(round));
      property(input);
    }
}

// The fuzzer's entry. A property that does not hold throws, which ends the run with a finding.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const char* const target = std::getenv("ZR_FUZZ_TARGET");
  GTEST_FLAG_SET(throw_on_failure, true);
  Input input = {S(data, data + size)};
  kProperties.at(target ? target : "")(input);
  return 0;
}
