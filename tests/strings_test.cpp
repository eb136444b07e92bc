#include <zrcommon/profile.h>
#include <zrcommon/strings.h>

#include <clocale>

#include "support/guarded_call.h"

namespace {

int upper(char* text, int length) {
  return text ? strUpr(text, length) : 1;
}

unsigned short* copyWithin(unsigned short* text, int to, int from, int count) {
  return my_wmemcpy(text + to, text + from, count);
}

unsigned short* moveWithin(unsigned short* text, int to, int from, unsigned int count) {
  return my_wmemmove(text + to, text + from, count);
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
