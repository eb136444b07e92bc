#include <sys/time.h>
#include <zrcommon/codecs.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>
#include <csignal>

#include <csignal>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

#include "support/case_row.h"
#include "support/test.h"

namespace {

constexpr std::size_t kNone = 4;
constexpr char kKey[] = "8W371KJ05926143DCF57";

// The library's functions by name. Each takes its arguments from a row and checks what it leaves.
// The number is that of an argument to refuse: null, or a capacity of 0.
std::map<S, std::function<void(CaseRow&, std::size_t refused)>> g_functions;

template <typename Result, typename... Parameter>
void add(const S& name, std::function<Result(Parameter...)> function) {
  constexpr bool kIsBool = std::is_same_v<Result, bool>;
  const bool isComparison = name.find("cmp") != S::npos;
  const bool canRefuse = kIsBool || std::is_pointer_v<Result> || isComparison;
  g_functions[name] = [=](CaseRow& row, std::size_t refused) {
    const bool isNeeded[] = {std::is_pointer_v<Parameter> ||
                             (kIsBool && std::is_same_v<Parameter, unsigned int>)...};
    const bool isRefused = refused < std::size(isNeeded);
    if (isRefused && !(canRefuse && isNeeded[refused])) return;
    const std::tuple<Parameter...> arguments{row.argument<Parameter>()...};
    const long long result = row.number(std::apply(function, arguments));
    const long long expected = row.expectedResult();
    EXPECT_EQ(!isRefused ? expected : kIsBool ? 0 : isComparison ? 1 : -1, result);
    row.checkTexts(isRefused);
  };
}

template <typename Result, typename... Parameter>
void add(const S& name, Result (*function)(Parameter...)) {
  add(name, std::function(function));
}

template <typename Class, typename Result, typename... Parameter>
void add(const S& name, Result (Class::*method)(Parameter...)) {
  add(name, std::function<Result(Parameter...)>([method](Parameter... each) {
        if constexpr (std::is_constructible_v<Class, const char*>)
          return (Class(kKey).*method)(each...);
        else
          return (Class().*method)(each...);
      }));
}

template <typename... Each>
void addAll(const S& names, Each... functions) {
  std::istringstream stream(names);
  S name;
  ((std::getline(stream >> std::ws, name, ','), add(name.substr(name[0] == '&'), functions)), ...);
}

// Each function under its own name.
#define ADD_ALL(...) addAll(#__VA_ARGS__, __VA_ARGS__)

unsigned short* copyWithin(unsigned short* text, int to, int from, int count) {
  return my_wmemcpy(text + to, text + from, count);
}

unsigned short* moveWithin(unsigned short* text, int to, int from, unsigned int count) {
  return my_wmemmove(text + to, text + from, count);
}

unsigned char* swapHalves(unsigned char* bytes, int count) {
  Encrypt(bytes, count);
  Decrypt(bytes, count);
  Encrypt(bytes, count);
  return bytes;
}

bool encryptWith(const char* key, char* text) {
  return key && CCrypt(key).Encrypt(text);
}

bool toPlain(const char* text, char* to, unsigned int capacity) {
  return CPHPOperations(kKey).ConvertToPlainString(text, to, capacity);
}

bool toPlainInPlace(char* text, unsigned int capacity) {
  return CPHPOperations(kKey).ConvertToPlainString(text, capacity);
}

void addFunctions() {
  ADD_ALL(my_strlen, My_StrLwr, My_StrUpr, my_strupr, strUpr, my_stricmp, my_strnicmp, my_strstr,
          my_strrev, TrimRight, TrimLeft, SearchFor, EncryptBlock, DecryptBlock, swapHalves,
          ByteRotateLeft, ByteRotateRight, BRol, BRor);
  ADD_ALL(my_wcslen, my_wcscpy, my_wcscat, my_wcsncpy, my_wcsncat, my_wcscmp, my_wcsncmp,
          my_wcsicmp, my_wcsnicmp, my_wcscscmp, my_wcschr, my_wcsrchr, my_wcsstr, my_wcsrev,
          my_wcslwr, my_wcsupr, my_wcsset, my_wcsnset, my_wmemchr, my_wmemcmp, my_wmemcpy,
          my_wmemmove, my_wmemset, CopySZToWSZ, CatSZToWSZ, CopyWSZToSZ, CatWSZToSZ, copyWithin,
          moveWithin, ConvertToWideChar, ConvertToMultiByte);
  ADD_ALL(&CBase64Url::Encode, &CBase64Url::Decode, &CBase64Url::IsBase64,
          &CBase64Url::GetBase64Symbol, &CBase64Url::GetASCIISymbol, &CUTF8::Encode, &CUTF8::Decode,
          encryptWith, &CCrypt::Decrypt, toPlain, toPlainInPlace);
  using Secure = CPHPOperations;
  ADD_ALL(&Secure::ConvertToSecureString, &Secure::ConvertToSecureKeyValuePair,
          &Secure::TransformPhpCommand, &Secure::ConvertToSecurePhpCommand,
          &Secure::ConvertToPlainPhpCommand);
}

S g_row;

void runFile(const S& name) {
  if (g_functions.empty()) addFunctions();
  const S path = ZR_SOURCE_DIR "/tests/cases/" + name;
  std::ifstream file(path);
  ASSERT_TRUE(file) << path;
  std::signal(SIGSEGV, [](int) { std::cerr << "crash in " << g_row << std::endl, ::_exit(1); });
  S text;
  for (int line = 1; std::getline(file, text); ++line) {
    if (text.empty() || text[0] == '#') continue;
    g_row = path + ":" + std::to_string(line) + ": " + text;
    for (const std::size_t after : {0, 1, 2, 7, 8, 15, 16, 31, 40, 63, 2100, 4096})
      for (std::size_t refused = 0; refused <= kNone; ++refused) {
        SCOPED_TRACE(testing::Message() << g_row << "\n"
                                        << after << " units before the unreadable page");
        CaseRow row(text, after, refused);
        g_functions.at(row.function())(row, refused);
      }
  }
}

}  // namespace

TEST(Compare, Rows) {
  runFile("compare.txt");
}

TEST(Search, Rows) {
  runFile("search.txt");
}

TEST(Copy, Rows) {
  runFile("copy.txt");
}

TEST(Change, Rows) {
  runFile("change.txt");
}

TEST(Codecs, Rows) {
  runFile("codecs.txt");
}

TEST(Secure, Rows) {
  runFile("secure.txt");
}

TEST(Change, UnchangedTextMayBeConstant) {
  static const char16_t kText[] = u"MORE THAN 32 UNITS OF CONSTANT MEMORY";
  my_wcsupr(reinterpret_cast<unsigned short*>(const_cast<char16_t*>(kText)));
  EXPECT_STREQ("", Trim(const_cast<char*>("")));
}

TEST(Change, RemovingNeverPassesAZero) {
  S text, list = "a,b,,c,";
  EXPECT_EQ(1, RemoveCharFromString(&text, ','));
  EXPECT_EQ(0, RemoveCharFromString(&list, ','));
  EXPECT_EQ("abc", list);
  const auto removeFromZero = [&] {
    const itimerval soon = {{}, {0, 20000}};
    ::setitimer(ITIMER_VIRTUAL, &soon, nullptr);
    text = "a\0b,"s;
    RemoveCharFromString(&text, ',');
  };
  EXPECT_EXIT(removeFromZero(), testing::KilledBySignal(SIGVTALRM), "");
}

TEST(Codecs, EverySymbolAndNoKey) {
  static_assert(std::is_convertible_v<const char*, CCrypt>);
  static_assert(std::is_convertible_v<const char*, CPHPOperations>);
  EXPECT_THROW(CCrypt(nullptr), int);
  CBase64Url base64;
  const S symbols = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!$";
  for (int byte = 1; byte < 256; ++byte) {
    const std::size_t place = symbols.find(static_cast<char>(byte));
    const auto value = static_cast<unsigned char>(std::min<std::size_t>(place, 63));
    EXPECT_EQ(value, base64.GetASCIISymbol(static_cast<char>(byte)));
    EXPECT_EQ(symbols[value], base64.GetBase64Symbol(value));
    for (const std::size_t at : {0, 1, 2, 3, 6}) {
      S text = "QUJDREV";
      text[at] = static_cast<char>(byte);
      const bool isGood = base64.IsBase64(text.c_str()) && base64.Decode(text.data(), 8);
      EXPECT_EQ(place != S::npos, isGood) << byte;
    }
  }
}
