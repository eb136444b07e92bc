#include <zrcommon/codecs.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

#include "support/case_row.h"
#include "support/test.h"

namespace {

// The results for a null argument and, where false, for a capacity of 0.
constexpr int kNull = -1, kFalse = 0, kGreater = 1, kNeverRefused = 2;

constexpr char kKey[] = "8W371KJ05926143DCF57";

// The library's functions by name. Each takes its arguments from a row and checks what it leaves.
// The number is that of an argument to refuse.
std::map<S, std::function<void(CaseRow&, std::size_t refused)>> g_functions;

template <typename Result, typename... Parameter>
void add(int refusal, const S& name, std::function<Result(Parameter...)> function) {
  g_functions[name] = [=](CaseRow& row, std::size_t refused) {
    const bool isNeeded[] = {std::is_pointer_v<Parameter> ||
                             (refusal == kFalse && std::is_same_v<Parameter, unsigned int>)...};
    const bool isRefused = refused < std::size(isNeeded);
    if (isRefused && (refusal == kNeverRefused || !isNeeded[refused])) return;
    const std::tuple<Parameter...> arguments{row.argument<Parameter>()...};
    const long long result = row.number(std::apply(function, arguments));
    const long long expected = row.expectedResult();
    EXPECT_EQ(isRefused ? refusal : expected, result);
    row.checkTexts(isRefused);
  };
}

template <typename Result, typename... Parameter>
void add(int refusal, const S& name, Result (*function)(Parameter...)) {
  add(refusal, name, std::function(function));
}

template <typename Class>
Class g_object;
template <>
CPHPOperations g_object<CPHPOperations> = kKey;

template <typename Class, typename Result, typename... Parameter>
void add(int refusal, const S& name, Result (Class::*method)(Parameter...)) {
  add(refusal, name, std::function<Result(Parameter...)>([method](Parameter... each) {
        return (g_object<Class>.*method)(each...);
      }));
}

template <typename... Each>
void addAll(int refusal, const S& names, Each... functions) {
  std::istringstream stream(names);
  S name;
  ((std::getline(stream >> std::ws, name, ','),
    add(refusal, name.substr(name[0] == '&'), functions)),
   ...);
}

// Each function under its own name.
#define ADD_ALL(refusal, ...) addAll(refusal, #__VA_ARGS__, __VA_ARGS__)

unsigned short* copyWithin(unsigned short* text, int to, int from, int count) {
  return my_wmemcpy(text + to, text + from, count);
}

unsigned short* moveWithin(unsigned short* text, int to, int from, unsigned int count) {
  return my_wmemmove(text + to, text + from, count);
}

unsigned char* swapHalves(unsigned char* bytes, int count) {
  for (const auto swap : {Encrypt, Decrypt, Encrypt}) swap(bytes, count);
  return bytes;
}

bool decryptWith(const char* key, char* text) {
  return CCrypt(key ? key : "").Decrypt(text);
}

bool toPlain(const char* text, char* to, unsigned int capacity) {
  return g_object<CPHPOperations>.ConvertToPlainString(text, to, capacity);
}

bool toPlainInPlace(char* text, unsigned int capacity) {
  return g_object<CPHPOperations>.ConvertToPlainString(text, capacity);
}

void addFunctions() {
  ADD_ALL(kNeverRefused, strUpr, ByteRotateLeft, ByteRotateRight, BRol, BRor);
  ADD_ALL(kGreater, my_stricmp, my_strnicmp, my_wcscmp, my_wcsncmp, my_wcsicmp, my_wcsnicmp,
          my_wcscscmp, my_wmemcmp);
  ADD_ALL(kNull, My_StrLwr, My_StrUpr, my_strupr, my_strstr, my_strrev, TrimRight, TrimLeft,
          SearchFor, swapHalves, my_wcscpy, my_wcscat, my_wcsncpy, my_wcsncat, my_wcschr,
          my_wcsrchr, my_wcsstr, my_wcsrev, my_wcslwr, my_wcsupr, my_wcsset, my_wcsnset, my_wmemchr,
          my_wmemset, CopySZToWSZ, CatSZToWSZ, CopyWSZToSZ, CatWSZToSZ, copyWithin, moveWithin);
  using Secure = CPHPOperations;
  ADD_ALL(kFalse, my_wcslen, my_strlen, EncryptBlock, DecryptBlock, ConvertToWideChar,
          ConvertToMultiByte, decryptWith, toPlain, toPlainInPlace, &CBase64Url::Encode,
          &CBase64Url::Decode, &CBase64Url::IsBase64, &CUTF8::Encode, &CUTF8::Decode,
          &Secure::ConvertToSecureString, &Secure::ConvertToSecureKeyValuePair,
          &Secure::TransformPhpCommand, &Secure::ConvertToSecurePhpCommand,
          &Secure::ConvertToPlainPhpCommand);
}

S g_row;

void runFile(const S& path) {
  addFunctions();
  std::ifstream file(path);
  ASSERT_TRUE(file) << path;
  std::signal(SIGSEGV, [](int) { std::cerr << "crash in " << g_row << std::endl, ::_exit(1); });
  S text;
  for (int line = 1; std::getline(file, text); ++line) {
    if (text.empty() || text[0] == '#') continue;
    g_row = path + ":" + std::to_string(line) + ": " + text;
    for (const std::size_t after : {0, 1, 2, 7, 8, 15, 16, 31, 40, 63, 4096})
      for (std::size_t refused = 0; refused <= 4; ++refused) {
        SCOPED_TRACE(testing::Message() << g_row << "\n"
                                        << after << " units before the unreadable page");
        CaseRow row(text, after, refused);
        g_functions.at(row.function())(row, refused);
      }
  }
}

}  // namespace

TEST(Strings, Rows) {
  runFile(ZR_SOURCE_DIR "/tests/cases/strings.txt");
}

TEST(Codecs, Rows) {
  runFile(ZR_SOURCE_DIR "/tests/cases/codecs.txt");
}

TEST(Strings, UnchangedTextMayBeConstant) {
  static const char16_t kText[] = u"MORE THAN 32 UNITS OF CONSTANT MEMORY";
  my_wcsupr(reinterpret_cast<unsigned short*>(const_cast<char16_t*>(kText)));
  EXPECT_STREQ("", Trim(const_cast<char*>("")));
}

TEST(Strings, RemovingNeverPassesAZero) {
  S text, list = "a,b,,c,";
  EXPECT_EQ(1, RemoveCharFromString(&text, ','));
  EXPECT_EQ(0, RemoveCharFromString(&list, ','));
  EXPECT_EQ("abc", list);
  const auto removeFromZero = [&] {
    ::ualarm(20000, 0);
    text = "a\0b,"s;
    RemoveCharFromString(&text, ',');
  };
  EXPECT_EXIT(removeFromZero(), testing::KilledBySignal(SIGALRM), "");
}

TEST(Codecs, EverySymbolAndNoKey) {
  static_assert(std::is_convertible_v<const char*, CCrypt>);
  EXPECT_THROW(CCrypt(nullptr), int);
  CBase64Url base64;
  const S symbols = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_!$";
  for (unsigned int byte = 1; byte < 256; ++byte) {
    const auto symbol = static_cast<char>(byte);
    const std::size_t place = symbols.find(symbol);
    EXPECT_EQ(std::min<std::size_t>(place, 63), base64.GetASCIISymbol(symbol));
    EXPECT_EQ(symbols[std::min(byte - 1, 63U)],
              base64.GetBase64Symbol(static_cast<unsigned char>(byte - 1)));
    for (const std::size_t at : {0, 1, 2, 3, 6}) {
      S text = "QUJDREV";
      text[at] = symbol;
      const bool isGood = base64.IsBase64(text.c_str()) && base64.Decode(text.data(), 8);
      EXPECT_EQ(place != S::npos, isGood) << byte;
    }
  }
}
