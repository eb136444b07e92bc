#include <zrcommon/codecs.h>
#include <zrcommon/strings.h>

#include "support/test.h"

namespace {

using Units = std::u16string;
using Wide = unsigned short;

const Wide* units(const char16_t* text) {
  return reinterpret_cast<const Wide*>(text);
}

// The numbers of the results that are not null.
template <typename... Result>
S notNull(const Result*... results) {
  S numbers;
  int number = 0;
  ((++number, results ? numbers += std::to_string(number) + " " : numbers), ...);
  return numbers;
}

template <typename Convert, typename From, typename To>
bool onlyLooks(Convert convert, const From* from, To* to) {
  const To before = *to;
  const From* const none = nullptr;
  To* const nowhere = nullptr;
  return convert(from, to, 1) && !convert(none, to, 1) && !convert(from, nowhere, 1) &&
         !convert(from, to, 0) && *to == before;
}

}  // namespace

TEST(Strings, NullIsAnswered) {
  char narrow[] = "n";
  Wide wide[] = {'w', 0};
  EXPECT_EQ(0U, my_strlen(nullptr) + my_wcslen(nullptr));
  EXPECT_EQ("", notNull(My_StrLwr(nullptr), My_StrUpr(nullptr), my_strupr(nullptr),
                        my_strrev(nullptr), my_strstr(nullptr, narrow), my_strstr(narrow, nullptr),
                        TrimLeft(nullptr), TrimRight(nullptr), my_wcsrev(nullptr),
                        my_wcslwr(nullptr), my_wcsupr(nullptr), my_wcsset(nullptr, 'x')));
  EXPECT_EQ("", notNull(my_wcscpy(wide, nullptr), my_wcscpy(nullptr, wide),
                        my_wcscat(wide, nullptr), my_wcscat(nullptr, wide),
                        my_wcsncpy(wide, nullptr, 1), my_wcsncpy(nullptr, wide, 1),
                        my_wcsncat(wide, nullptr, 1), my_wcsncat(nullptr, wide, 1),
                        my_wmemcpy(wide, nullptr, 1), my_wmemcpy(nullptr, wide, 1),
                        my_wmemmove(wide, nullptr, 1), my_wmemmove(nullptr, wide, 1)));
  EXPECT_EQ("", notNull(my_wcschr(nullptr, 'w'), my_wcsrchr(nullptr, 'w'), my_wcsstr(nullptr, wide),
                        my_wcsstr(wide, nullptr), my_wcsnset(nullptr, 'x', 1),
                        my_wmemchr(nullptr, 'w', 1), my_wmemset(nullptr, 0, 1)));
  EXPECT_EQ("", notNull(CopySZToWSZ(wide, nullptr), CopySZToWSZ(nullptr, narrow),
                        CatSZToWSZ(wide, nullptr), CatSZToWSZ(nullptr, narrow),
                        CopyWSZToSZ(narrow, nullptr), CopyWSZToSZ(nullptr, wide),
                        CatWSZToSZ(narrow, nullptr), CatWSZToSZ(nullptr, wide)));
  EXPECT_TRUE(*narrow == 'n' && *wide == 'w');
}

TEST(Strings, PlaceholdersOnlyLookAtTheirArguments) {
  char narrow[] = "n";
  Wide wide[] = {'w', 0};
  EXPECT_TRUE(onlyLooks(ConvertToWideChar, narrow, wide));
  EXPECT_TRUE(onlyLooks(ConvertToMultiByte, wide, narrow));
  EXPECT_TRUE(onlyLooks([](auto... all) { return CUTF8().Encode(all...); }, wide, narrow));
  EXPECT_TRUE(onlyLooks([](auto... all) { return CUTF8().Decode(all...); }, narrow, wide));
}

// Up to past the widest step, in memory that ends with the string or goes on.
TEST(Strings, EveryLength) {
  for (std::size_t length = 0; length < 90; ++length)
    for (std::size_t behind : {0, 1, 7, 2100}) {
      SCOPED_TRACE(testing::Message() << length << " units, " << behind << " behind");
      Units text(length, u'x');
      for (std::size_t at = 0; at < length; at += 3) text[at] = u'\x78FF';
      if (length) text.back() = u'@';
      GuardedUnits placed(text, behind), part(text.substr(0, length / 2), length);
      Guarded memory((length + 1) * 2);
      Wide* const to = memory.data<Wide>();
      Wide* const first = placed.get();
      const auto placeOf = [&](std::size_t at) { return at < length ? first + at : nullptr; };
      EXPECT_EQ(length, my_wcslen(first));
      EXPECT_EQ(nullptr, my_wcschr(first, 0));
      EXPECT_EQ(nullptr, my_wcsrchr(first, 0));
      EXPECT_EQ(nullptr, my_wcschr(first, 0xFF78));
      for (const char16_t unit : {u'x', u'\x78FF', u'@'}) {
        EXPECT_EQ(placeOf(text.find(unit)), my_wcschr(first, unit));
        EXPECT_EQ(placeOf(text.rfind(unit)), my_wcsrchr(first, unit));
        EXPECT_EQ(placeOf(text.find(unit)), my_wmemchr(first, unit, int(length)));
      }
      EXPECT_EQ(nullptr, my_wmemchr(first, 0, int(length)));
      EXPECT_EQ(first + length, my_wmemchr(first, 0, -1));
      EXPECT_EQ(to, my_wcscpy(to, first));
      EXPECT_EQ(text, memory.data<char16_t>());
      EXPECT_EQ(part.get(), my_wcscat(part.get(), first + length / 2));
      EXPECT_EQ(text, part.text());
      EXPECT_EQ(to, my_wcsrev(to));
      EXPECT_EQ(Units(text.rbegin(), text.rend()), memory.data<char16_t>());
    }
  EXPECT_EQ(5000U, my_wcslen(GuardedUnits(Units(5000, u'x')).get()));
  EXPECT_EQ(5U, my_strlen("bytes"));
  for (const auto& [text, reversed] : Rows<const char*, const char*>{{"", ""}, {"abc", "cba"}})
    EXPECT_STREQ(reversed, my_strrev(GuardedText(text).get()));
}

// All of the six units of memory; what an operation leaves alone is '#'.
TEST(Copy, Counted) {
  const Rows<Units, Units, int, Units, Units> rows = {
      {u"\0#####"s, u"abcde", 3, u"abc\0##"s, u"abc###"s},
      {u"\0#####"s, u"abc", 3, u"abc\0##"s, u"abc###"s},
      {u"x\0####"s, u"a", 3, u"a\0####"s, u"xa\0###"s},
      {u"x\0####"s, u"ab", -1, u"ab\0###"s, u"xab\0##"s},
      {u"x\0####"s, u"ab", 0, u"\0\0####"s, u"x\0####"s},
      {u"x\0####"s, u"", 2, u"\0\0####"s, u"x\0####"s}};
  for (const auto& [before, text, count, copied, appended] : rows) {
    GuardedUnits from(text), copy(before), cat(before);
    EXPECT_EQ(copy.get(), my_wcsncpy(copy.get(), from.get(), count));
    EXPECT_EQ(cat.get(), my_wcsncat(cat.get(), from.get(), count));
    EXPECT_EQ(copied, Units(copy.data<char16_t>(), 6))
        << "appended: " << testing::PrintToString(appended);
    EXPECT_EQ(appended, Units(cat.data<char16_t>(), 6));
  }
}

TEST(Copy, Fills) {
  GuardedUnits text(u"abcdef");
  EXPECT_EQ(text.get() + 1, my_wcsnset(text.get() + 1, 'x', 1));
  EXPECT_EQ(u"axcdef", text.text());
  EXPECT_EQ(text.get() + 1, my_wcsnset(text.get() + 1, 'y', -1));
  EXPECT_EQ(u"ayyyyy", text.text());
  EXPECT_EQ(text.get(), my_wcsset(text.get(), 'z'));
  EXPECT_EQ(text.get() + 2, my_wmemset(text.get() + 2, 0, 3));
  EXPECT_EQ(u"zz\0\0\0z"s, Units(text.data<char16_t>(), 6));
}

TEST(Copy, MemoryGoesForwards) {
  const auto after = [](auto copy, int to, int from, int count) {
    GuardedUnits text(u"abcdef");
    EXPECT_EQ(text.get() + to, copy(text.get() + to, text.get() + from, count));
    return text.text();
  };
  EXPECT_EQ(u"ababab", after(my_wmemcpy, 2, 0, 4));
  EXPECT_EQ(u"bcdeff", after(my_wmemcpy, 0, 1, 5));
  EXPECT_EQ(u"aabcde", after(my_wmemmove, 1, 0, 5));
}

TEST(Convert, Widening) {
  for (int length = 0; length < 256; ++length) {
    S text;
    Units expected = u"x";
    for (int byte = 256 - length; byte < 256; ++byte) {
      text.push_back(static_cast<char>(byte));
      expected.push_back(static_cast<char16_t>(byte < 0x80 ? byte : 0xFF00 + byte));
    }
    GuardedText from(text);
    GuardedUnits to(u"x" + Units(text.size(), u'#'));
    to.get()[1 + length] = '#';
    EXPECT_EQ(to.get() + 1, CopySZToWSZ(to.get() + 1, from.get()));
    EXPECT_EQ(expected, to.text());
    to.get()[1] = 0;
    EXPECT_EQ(to.get(), CatSZToWSZ(to.get(), from.get()));
    EXPECT_EQ(expected, to.text());
  }
}

TEST(Convert, Narrowing) {
  for (std::size_t length = 0; length < 90; ++length) {
    Units text(length, u'\x20AC');
    S expected = "x" + S(length, '\xAC') + '\0';
    if (length > 2) text[1] = u'\x0100', expected[2] = '\0';
    GuardedUnits from(text);
    GuardedText to("x" + S(length, '#'));
    to.get()[1 + length] = '#';
    EXPECT_EQ(to.get() + 1, CopyWSZToSZ(to.get() + 1, from.get()));
    EXPECT_EQ(expected, to.bytes());
    to.get()[1] = '\0';
    EXPECT_EQ(to.get(), CatWSZToSZ(to.get(), from.get()));
    EXPECT_EQ(expected, to.bytes());
  }
}

TEST(Case, ChangesAsciiLettersOnly) {
  Units all, lower, upper;
  for (char16_t unit = 1; unit != 0; ++unit) {
    all.push_back(unit);
    lower.push_back(unit >= 'A' && unit <= 'Z' ? unit + 32 : unit);
    upper.push_back(unit >= 'a' && unit <= 'z' ? unit - 32 : unit);
  }
  for (const auto& [change, expected] :
       {std::pair(my_wcslwr, lower), std::pair(my_wcsupr, upper)}) {
    GuardedUnits text(all);
    EXPECT_EQ(text.get(), change(text.get()));
    EXPECT_EQ(expected, text.text());
  }
  for (const auto& [change, expected] :
       {std::pair(My_StrLwr, lower), std::pair(My_StrUpr, upper), std::pair(my_strupr, upper)})
    for (long from = 0; from < 255; ++from) {
      GuardedText text(S(all.begin() + from, all.begin() + 255));
      EXPECT_EQ(text.get(), change(text.get()));
      EXPECT_EQ(S(expected.begin() + from, expected.begin() + 255), text.text());
    }
  // Where nothing changes nothing is stored: these cannot be written to.
  static const char kNarrow[] =
      "AN UPPER-CASE TEXT THAT IS LONGER THAN WHAT IS CHANGED IN ONE STEP";
  static const char16_t kWide[] = u"ANOTHER ONE, OF SIXTEEN-BIT UNITS, IN CONSTANT MEMORY";
  My_StrUpr(const_cast<char*>(kNarrow));
  my_wcsupr(const_cast<Wide*>(units(kWide)));
}

TEST(Case, UprTakesEveryByte) {
  GuardedText text("ab\0cd"s);
  EXPECT_EQ(2, strUpr(text.get(), 4) + strUpr(text.get(), -1));
  EXPECT_EQ("AB\0Cd\0"s, text.bytes());
}

TEST(Trim, Sides) {
  const Rows<const char*, S, S> rows = {
      // all the bytes
      {"", "\0"s, "\0"s},
      {"  ", "\0\0\0"s, "\0\0\0"s},
      {" \t\n\r\v\fa b", "a b\0\0\0\0\0\0\0"s, " \t\n\r\v\fa b\0"s},
      {"\x1F b \t\r\n", "\x1F b \t\r\n\0"s, "\x1F b\0\0\0\0\0"s},
      {" \xA0", "\xA0\0\0"s, " \xA0\0"s}};
  for (const auto& [text, left, right] : rows) {
    GuardedText first(text), second(text);
    EXPECT_EQ(first.get(), TrimLeft(first.get()));
    EXPECT_EQ(second.get(), TrimRight(second.get()));
    EXPECT_EQ(left, first.bytes());
    EXPECT_EQ(right, second.bytes());
  }
}

TEST(Trim, Removing) {
  for (const auto& [before, after] :
       Rows<S, S>{{"", ""}, {"a,b,,c,", "abc"}, {"abc", "abc"}, {",,", ""}}) {
    S text = before;
    EXPECT_EQ(before.empty() ? 1 : 0, RemoveCharFromString(&text, ','));
    EXPECT_EQ(after, text);
  }
  const Outcome neverPassesAZero = runForked([] {
    S text = "a\0b,"s;
    ::alarm(1);
    return RemoveCharFromString(&text, ',');
  });
  EXPECT_EQ(128 + SIGALRM, neverPassesAZero.status);
}
