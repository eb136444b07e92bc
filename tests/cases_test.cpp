#include <zrcommon/codecs.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <clocale>

#include "support/guarded_call.h"

namespace {

template <typename Result, typename... Parameter, typename... Each>
GuardedCall<Result, Parameter...> call(Result (*function)(Parameter...), const Each&... each) {
  return {function, {each...}};
}

template <typename Class, typename Result, typename... Parameter, typename... Each>
GuardedCall<Result, Parameter...> call(Result (Class::*method)(Parameter...), const Each&... each) {
  static std::tuple<CBase64Url, CUTF8, CPHPOperations> objects({}, {}, "8W371KJ05926143DCF57");
  return {[=](Parameter... value) { return (std::get<Class>(objects).*method)(value...); },
          {each...}};
}

int upper(char* text, int length) {
  return text ? strUpr(text, length) : 1;
}

const unsigned char* search(const unsigned char* text, int size, const unsigned char* pattern,
                            int patternSize) {
  const int place = SearchFor(text, size, pattern, patternSize);
  return place == -1 ? nullptr : text + place;
}

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

}  // namespace

TEST(Strings, Rows) {
  call(my_wcscmp, u"a", u"ab").gives(-1);
  call(my_wcsncmp, u"ab", u"ac", -1).gives(-1);
  call(my_wmemcmp, raw(u"a\0b"), raw(u"a\0c"), 3).gives(-1);

  call(my_wcscscmp, u"ab", "ab").gives(0);
  call(my_wcscscmp, u"a", "b").gives(-1);
  call(my_wcscscmp, u"a", "ab").gives(-1);
  call(my_wcscscmp, u"ab", "a").gives(1);
  call(my_wcscscmp, u"\u0161", "a").gives(1);
  call(my_wcscscmp, u"\uFFE9", "\xE9").gives(1);
  call(my_wcscscmp, u"\x01", "\xFF").gives(1);
  call(my_wcscscmp, u"", "\xE9").gives(-1);

  // Bit 0x20 counts nowhere, nor does the upper byte of a wide unit.
  call(my_stricmp, "@[\\]^_0\xE9", "`{|}~\x7F\x10\xC9").gives(0);
  call(my_stricmp, " ", "").gives(1);
  call(my_strnicmp, "Ab", "aC", -1).gives(-1);
  call(my_wcsicmp, u"\u0141[ ", u"A{\uFF00").gives(0);
  call(my_wcsicmp, u"\u0100", u"").gives(1);
  call(my_wcsnicmp, u"\u0141b", u"a\u0143", -1).gives(-1);

  // A count of 0 reads nothing.
  call(my_wmemcmp, raw(u""), raw(u""), 0).gives(0);
  call(my_wcsncmp, raw(u""), raw(u""), 0).gives(0);
  call(my_wcsnicmp, raw(u""), raw(u""), 0).gives(0);
  call(my_strnicmp, raw(""), raw(""), 0).gives(0);
  call(my_wmemchr, raw(u""), 'a', 0).gives(kNull);
  call(my_wcsncpy, u"##", raw(u""), 0).gives(0, u"\0#");
  call(my_wcsncat, u"x", raw(u""), 0).gives(0);
  call(my_wcsnset, raw(u""), 'z', 0).gives(0);

  call(my_strlen, "ab").gives(2);
  call(my_wcslen, times(5000, u"x")).gives(5000);
  call(my_wcschr, u"a", 0).gives(kNull);
  call(my_wcsrchr, u"", 'a').gives(kNull);
  call(my_wmemchr, raw(u"a\0b"), 'b', 3).gives(2);
  call(my_wmemchr, raw(u"ab"), 'b', 1).gives(kNull);
  call(my_wmemchr, times(300, u"x"), 0, -1).gives(300);

  // The middle unit of a pattern of odd length is never compared.
  call(my_strstr, "xyz", "qyq").gives(kNull);
  call(my_strstr, "", "q").gives(kNull);
  call(my_strstr, "xyz", "").gives(0);
  // Many partial matches: the search whose time is proportional to the text goes on.
  call(my_strstr, "aaaaaaaaaaaaaa", "aaaaabaaa").gives(kNull);
  call(my_strstr, "aaaaaaabbaaaaaaaaaaaa", "aaaaaaaaaaaaa").gives(kNull);
  call(my_strstr, "aaaaaaaaaaaaaaabbaaaa", "aaaaabaaa").gives(11);
  call(my_strstr, "aaaaaaaaaaaaaaaabaaa", "aaaaabaaa").gives(11);
  call(my_wcsstr, u"xyz", u"q").gives(0);
  call(my_wcsstr, u"a\u0162", u"ab").gives(kNull);
  call(my_wcsstr, u"", u"q").gives(kNull);

  call(search, raw("abcabc"), 6, raw("abcabc"), 6).gives(0);
  call(search, raw("abcabc"), 5, raw("abcabc"), 6).gives(-1);
  call(search, raw("abc\0"), 4, raw("\0"), 1).gives(3);
  call(search, raw("abc\0"), 3, raw("\0"), 1).gives(-1);
  call(search, raw("a"), 0, raw("a"), 1).gives(-1);
  call(search, raw("a"), 1, raw("a"), 0).gives(-1);
  call(search, raw("a"), -1, raw("a"), -1).gives(-1);
  call(search, raw("a"), -1, raw("a"), -2).gives(-1);

  call(my_wcscpy, u"####", u"abc").gives(0, u"abc\0");
  call(my_wcscat, u"ab\0##", u"cd").gives(0, u"abcd\0");
  call(my_wcsncpy, u"\0#####", u"abcde", 3).gives(0, u"abc\0##");
  call(my_wcsncpy, u"######", u"abc", 3).gives(0, u"abc\0##");
  call(my_wcsncpy, u"######", u"a", 3).gives(0, u"a\0####");
  call(my_wcsncpy, u"######", u"ab", -1).gives(0, u"ab\0###");
  call(my_wcsncat, u"\0#####", u"abcde", 3).gives(0, u"abc###");
  call(my_wcsncat, u"x\0####", u"ab", -1).gives(0, u"xab\0##");
  call(copyWithin, raw(u"abcdef"), 2, 0, 4).gives(2, raw(u"ababab"));
  call(moveWithin, raw(u"abcdef"), 1, 0, 5).gives(1, raw(u"aabcde"));
  call(moveWithin, raw(u"abcdef"), 0, 1, 5).gives(0, raw(u"bcdeff"));

  call(my_wcsset, u"abc", 'z').gives(0, u"zzz");
  call(my_wcsnset, u"abc", 'z', 1).gives(0, u"zbc");
  call(my_wcsnset, u"abc", 'z', -1).gives(0, u"zzz");
  call(my_wmemset, raw(u"abcd"), 0, 3).gives(0, raw(u"\0\0\0d"));

  // Bytes are widened with their sign; units keep their lower byte.
  call(CopySZToWSZ, u"#####", "a\x7F\x80\xFF").gives(0, u"a\x7F\uFF80\uFFFF\0");
  call(CopySZToWSZ, times(80, u"#"), times(40, "\x80\x7F")).gives(0, times(40, u"\uFF80\x7F"));
  call(CatSZToWSZ, u"x\0##", "\xE9").gives(0, u"x\uFFE9\0#");
  call(CopyWSZToSZ, "#####", u"\u20ACx\u0100y").gives(0, "\xACx\0y\0");
  call(CatWSZToSZ, "x\0##", u"\u20AC").gives(0, "x\xAC\0#");
  call(CopyWSZToSZ, times(80, "#"), times(40, u"\u20AC\u01FF")).gives(0, times(40, "\xAC\xFF"));

  // These only look at their arguments.
  call(ConvertToWideChar, "n", u"w", 1).gives(true);
  call(ConvertToMultiByte, u"w", "n", 1).gives(true);
  call(&CUTF8::Encode, u"w", "n", 1).gives(true);
  call(&CUTF8::Decode, "n", u"w", 1).gives(true);

  call(My_StrLwr, "@AZ[`az{\xC0\xC9").gives(0, "@az[`az{\xC0\xC9");
  call(My_StrUpr, "@AZ[`az{\xE0\xE9").gives(0, "@AZ[`AZ{\xE0\xE9");
  call(my_strupr, "@AZ[`az{\xE0\xE9").gives(0, "@AZ[`AZ{\xE0\xE9");
  call(My_StrUpr, times(130, "a")).gives(0, times(130, "A"));
  call(my_wcslwr, u"@AZ[`az{\xC9\u0141").gives(0, u"@az[`az{\xC9\u0141");
  call(my_wcsupr, u"@AZ[`az{\xE9\u0161").gives(0, u"@AZ[`AZ{\xE9\u0161");
  call(upper, "ab\0cd", 4).gives(1, "AB\0Cd");
  call(upper, "a", -1).gives(1);
  call(my_strrev, "abc").gives(0, "cba");
  call(my_wcsrev, u"abcd").gives(0, u"dcba");

  // Zeros follow up to the old terminator.
  call(TrimLeft, "  ").gives(0, "\0\0");
  call(TrimLeft, " a").gives(0, "a\0");
  call(TrimLeft, " \t\n\r\v\fa b ").gives(0, "a b \0\0\0\0\0\0");
  call(TrimRight, "").gives(0);
  call(TrimRight, "  ").gives(0, "\0\0");
  call(TrimRight, " a b \t\n\r\v\f").gives(0, " a b\0\0\0\0\0\0");
  call(TrimRight, "\xA0\x1F ").gives(0, "\xA0\x1F\0");
}

TEST(Codecs, Rows) {
  constexpr auto encode = &CBase64Url::Encode, decode = &CBase64Url::Decode;
  using Secure = CPHPOperations;
  constexpr auto secureText = &Secure::ConvertToSecureString;
  constexpr auto securePair = &Secure::ConvertToSecureKeyValuePair;
  constexpr auto toSecure = &Secure::ConvertToSecurePhpCommand;
  constexpr auto toPlain = &Secure::ConvertToPlainPhpCommand;
  constexpr auto transform = &Secure::TransformPhpCommand;
  bool (Secure::*const plainText)(const char*, char*, unsigned int) = &Secure::ConvertToPlainString;
  bool (Secure::*const plainInPlace)(char*, unsigned int) = &Secure::ConvertToPlainString;
  call(BRol, 0x81, 0).gives(0x81);
  call(BRol, 0x81, 9).gives(0x03);
  call(BRol, 0x81, -1).gives(0xC0);
  call(BRor, 0x81, 9).gives(0xC0);
  call(BRor, 0x81, -1).gives(0x03);
  call(ByteRotateLeft, 0x81, 17).gives(0x03);
  call(ByteRotateLeft, 0x81, -1).gives(0x81);
  call(ByteRotateRight, 0x81, 1).gives(0xC0);
  call(ByteRotateRight, 0x81, -1).gives(0x81);
  call(EncryptBlock, raw(times(50, "\x81\0")), 99).gives(true, raw(times(50, "\x0C\0")));
  call(DecryptBlock, raw(times(50, "\x0C\1")), 99).gives(true, raw(times(49, "\x81 ") + "\x81\1"));
  call(swapHalves, raw(times(50, "\x12\xAB")), 99).gives(0, raw(times(49, "!\xBA") + "!\xAB"));
  call(swapHalves, raw("\x12"), -1).gives(0);

  call(encode, "", 1).gives(false);
  call(encode, "\xFB\xFF\xBF\xFE\0####", 1).gives(true, "_!_!!g$$");
  call(encode, times(1023, "M") + times(341, "\0"), 1).gives(true, times(341, "TU1N"));
  call(encode, times(1024, "M"), 1).gives(false);
  call(&CBase64Url::IsBase64, "").gives(true);
  call(decode, "", 1).gives(false);
  call(decode, times(255, "TU1N") + "TU1", 1).gives(true, raw(times(767, "M") + "@"));
  call(decode, times(256, "TU1N"), 1).gives(false);

  // Padding leaves a zero within the capacity, and the text as it was beyond it.
  call(decode, "YQ$$YWI$", 9).gives(true, "a\0\0ab\0\0\0");
  call(decode, "YQ$$YWI$", 4).gives(true, "a\0\0abWI$");
  call(decode, "YQ$$YWI$", 2).gives(true, "a\0$abWI$");
  call(decode, "YQ$$YWI$", 1).gives(true, "aQ$abWI$");
  call(decode, "YQ$$\0####", 7).gives(true, "a\0\0\0\0\0\0##");
  call(decode, "YWJ\0#####", 9).gives(true, "ab@\0\0\0\0\0");
  call(decode, "YWJjZ", 1).gives(true, "abcd\0");
  call(decode, "YW$J", 5).gives(true, "a\0\xC9\0");

  call(decryptWith, "abcde", "").gives(false);
  call(decryptWith, "", "text").gives(false);
  call(decryptWith, "a", "a\xFF").gives(true, "a\x9E");
  call(decryptWith, "8W371KJ05926143DCF57", times(9, "8w371kj05926143dcf57"))
      .gives(true, times(9, "8 371  05926143   57"));
  call(decryptWith, "abcde", times(40, "ABCDE")).gives(true, times(40, "     "));
  call(decryptWith, times(62, "k") + "aX", times(126, "K"))
      .gives(true, times(62, " ") + "*" + times(62, " ") + "*");

  // The key is 8W371KJ05926143DCF57.
  call(secureText, "8W371KJ05926143DCF57\0########", 1).gives(true, "OFczNzFLSjA1OTI2MTQzRENGNTc$");
  call(secureText, "\xFB\xFF\xBF\xFE\0####", 1).gives(true, "w6iMyQ$$");
  call(secureText, "", 1).gives(false);
  call(secureText, times(1024, "A"), 1).gives(false);

  // Zeros fill the output up to its capacity, but a longer text is copied whole.
  call(plainText, "VjZeUg$$", raw("########"), 7).gives(true, raw("name\0\0\0#"));
  call(plainText, "TjZfQlQ$", raw("########"), 2).gives(true, raw("value\0##"));
  call(plainText, "AAAA", "#", 1).gives(false);
  call(plainText, "", "#", 1).gives(false);
  call(plainInPlace, "VjZeUg$$", 1).gives(true, "name");

  call(securePair, "name", "value", "#################", 1).gives(true, "VjZeUg$$=TjZfQlQ$");
  call(securePair, "name", "", "#########", 1).gives(false, "VjZeUg$$=");
  call(securePair, "name", times(1024, "v"), "#########", 1).gives(false, "VjZeUg$$=");
  call(securePair, "", "value", "#", 1).gives(false, "");
  call(securePair, times(1024, "n"), "value", times(1024, "#"), 1).gives(false, times(1024, "n"));

  call(toSecure, "p?a=b?a=1\0#####", 1).gives(true, "p?a=b?WQ$$=CQ$$");
  call(toSecure, "?k==v\0####", 1).gives(true, "?Uw$$=BSE$");
  call(toSecure, "p?&a=1&&k=1&\0#########", 1).gives(true, "p?WQ$$=CQ$$&Uw$$=CQ$$");
  call(toSecure, "p?a&k=\0######", 1).gives(true, "p?WQ$$=&Uw$$=");
  call(toSecure, "p?==a=1\0####", 1).gives(true, "p?WQ$$=CQ$$");
  call(toSecure, "", 1).gives(false);
  call(toSecure, "page?", 1).gives(false);
  call(toSecure, "p?&&", 1).gives(false, "p?");
  call(toSecure, "p?a=1&==\0####", 1).gives(false, "p?WQ$$=CQ$$&");
  call(toSecure, "p?" + times(766, "v") + "=1" + times(260, "\0"), 1).gives(false, "p?");
  call(toSecure, "p?" + times(765, "v") + "=1" + times(260, "\0"), 1).gives(true, raw("p?TiFFQU"));
  call(toSecure, "a=" + times(1023, "v") + times(360, "\0"), 1).gives(true, raw("WQ$$=TiFFQU"));
  call(toSecure, "a=" + times(1024, "v"), 1).gives(false, "WQ$$=");
  call(toSecure, times(5116, "&") + "a=1\0#####"s, 1).gives(true, "WQ$$=CQ$$");
  call(toSecure, times(5117, "&") + "a=1\0#####"s, 1).gives(false);

  call(transform, "a=1\0#####", 1, 1).gives(true, "WQ$$=CQ$$");
  call(transform, "p?WQ$$=CQ$$", 1, 0).gives(true, "p?a=1");
  call(transform, "p?WQ$$=CQ$$", 1, 2).gives(true, "p?a=1");
  call(toPlain, "p?VjZeUg$$=TjZfQlQ$&Uw$$", 1).gives(true, "p?name=value&k=");
  call(toPlain, "p?WQ$$=CQ$$&n-=x", 1).gives(false, "p?a=1&");
  call(toPlain, "p?WQ$$=no.secret", 1).gives(false, "p?a=");
  call(toPlain, "p?WQ$$=AAAA", 1).gives(false, "p?a=");
}

TEST(Strings, UnchangedTextMayBeConstant) {
  static const char16_t kText[] = u"MORE THAN 32 UNITS OF CONSTANT MEMORY";
  my_wcsupr(reinterpret_cast<unsigned short*>(const_cast<char16_t*>(kText)));
  EXPECT_STREQ("", Trim(const_cast<char*>("")));
}

#ifndef __SANITIZE_ADDRESS__  // the sanitizers refuse wide strings at odd addresses
TEST(Strings, OddAddresses) {
  Guarded text("a\0b\0\0\0"s, 1);
  EXPECT_EQ(2U, my_wcslen(text.data<unsigned short>()));
}
#endif

TEST(Strings, UpperCaseFollowsTheLocale) {
  ASSERT_EQ(0, std::system("localedef -c -i en_US -f ISO-8859-1 /scratch/latin 2> /scratch/log"));
  ::setenv("LOCPATH", "/scratch", 1);
  ASSERT_TRUE(std::setlocale(LC_CTYPE, "latin"));
  call(upper, times(70, "\xE9"), 70).gives(1, times(70, "\xC9"));
  std::setlocale(LC_CTYPE, "C");
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
  int thrown = 0;
  try {
    CCrypt crypt(nullptr);
  } catch (int code) {
    thrown = code;
  }
  EXPECT_EQ(1, thrown);
  char command[] = "p?a=1";
  EXPECT_FALSE(CPHPOperations("").ConvertToSecurePhpCommand(command, 1));
  EXPECT_STREQ("p?", command);
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
