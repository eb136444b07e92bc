#include <zrcommon/codecs.h>

#include "support/guarded_call.h"

namespace {

template <typename Class, typename Result, typename... Parameter, typename... Each>
GuardedCall<Result, Parameter...> call(Result (Class::*method)(Parameter...), const Each&... each) {
  static std::tuple<CBase64Url, CUTF8, CPHPOperations> objects({}, {}, "8W371KJ05926143DCF57");
  return {[=](Parameter... value) { return (std::get<Class>(objects).*method)(value...); },
          {each...}};
}

unsigned char* swapHalves(unsigned char* bytes, int count) {
  for (const auto swap : {Encrypt, Decrypt, Encrypt}) swap(bytes, count);
  return bytes;
}

bool decryptWith(const char* key, char* text) {
  return CCrypt(key ? key : "").Decrypt(text);
}

}  // namespace

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

  // These only look at their arguments.
  call(&CUTF8::Encode, u"w", "n", 1).gives(true);
  call(&CUTF8::Decode, "n", u"w", 1).gives(true);

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

  call(securePair, "name", "values", "#################", 1).gives(true, "VjZeUg$$=TjZfQlQ4");
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
  call(toSecure, times(9999, "p") + "?a=1\0#####"s, 1).gives(true, times(9999, "p") + "?WQ$$=CQ$$");

  call(transform, "a=1\0#####", 1, 1).gives(true, "WQ$$=CQ$$");
  call(transform, "p?WQ$$=CQ$$", 1, 0).gives(true, "p?a=1");
  call(transform, "p?WQ$$=CQ$$", 1, 2).gives(true, "p?a=1");
  call(toPlain, "p?VjZeUg$$VjZeUg$$=TjZfQlQ$&Uw$$", 1).gives(true, "p?name=value&k=");
  call(toPlain, "p?WQ$$=CQ$$&n-=x", 1).gives(false, "p?a=1&");
  call(toPlain, "p?WQ$$=no.secret", 1).gives(false, "p?a=");
  call(toPlain, "p?WQ$$=AAAA", 1).gives(false, "p?a=");
  call(toPlain, "p?WQ$$=" + times(256, "WQ$$"), 1).gives(false, "p?a=");
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
  alignas(16) char command[] = "?\0a=1";
  EXPECT_FALSE(CPHPOperations("").ConvertToSecurePhpCommand(command + 2, 1));
  EXPECT_EQ("?\0\0=1"s, S(command, 5));
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
