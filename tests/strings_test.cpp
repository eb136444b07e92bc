#include <sys/mman.h>
#include <unistd.h>
#include <zrcommon/strings.h>

#include <csignal>

#include "support/child.h"
#include "support/placed.h"

namespace {

using Units = std::u16string;

// Six units, whatever they are; what a row leaves alone is '#'.
Units six(const Wide* units) {
  return {units, units + 6};
}

}  // namespace

TEST(Strings, NullIsAnswered) {
  char narrow[] = "n";
  Wide wide[] = {'w', 0};
  EXPECT_EQ(0U, my_strlen(nullptr) + my_wcslen(nullptr));
  for (const void* result : std::initializer_list<const void*>{My_StrLwr(nullptr),
                                                               My_StrUpr(nullptr),
                                                               my_strupr(nullptr),
                                                               my_strrev(nullptr),
                                                               my_strstr(nullptr, narrow),
                                                               my_strstr(narrow, nullptr),
                                                               TrimLeft(nullptr),
                                                               TrimRight(nullptr),
                                                               my_wcscpy(wide, nullptr),
                                                               my_wcscpy(nullptr, wide),
                                                               my_wcscat(wide, nullptr),
                                                               my_wcscat(nullptr, wide),
                                                               my_wcsncpy(wide, nullptr, 1),
                                                               my_wcsncpy(nullptr, wide, 1),
                                                               my_wcsncat(wide, nullptr, 1),
                                                               my_wcsncat(nullptr, wide, 1),
                                                               my_wcschr(nullptr, 'w'),
                                                               my_wcsrchr(nullptr, 'w'),
                                                               my_wcsstr(nullptr, wide),
                                                               my_wcsstr(wide, nullptr),
                                                               my_wcsrev(nullptr),
                                                               my_wcslwr(nullptr),
                                                               my_wcsupr(nullptr),
                                                               my_wcsset(nullptr, 'x'),
                                                               my_wcsnset(nullptr, 'x', 1),
                                                               my_wmemchr(nullptr, 'w', 1),
                                                               my_wmemcpy(wide, nullptr, 1),
                                                               my_wmemcpy(nullptr, wide, 1),
                                                               my_wmemmove(wide, nullptr, 1),
                                                               my_wmemmove(nullptr, wide, 1),
                                                               my_wmemset(nullptr, 0, 1),
                                                               CopySZToWSZ(wide, nullptr),
                                                               CopySZToWSZ(nullptr, narrow),
                                                               CatSZToWSZ(wide, nullptr),
                                                               CatSZToWSZ(nullptr, narrow),
                                                               CopyWSZToSZ(narrow, nullptr),
                                                               CopyWSZToSZ(nullptr, wide),
                                                               CatWSZToSZ(narrow, nullptr),
                                                               CatWSZToSZ(nullptr, wide)})
    EXPECT_EQ(nullptr, result);
  EXPECT_STREQ("n", narrow);
  EXPECT_EQ('w', wide[0]);
}

TEST(Strings, LengthsAndCopiesStayWithinTheirMemory) {
  for (std::size_t length = 0; length < 90; ++length)
    for (std::size_t behind : {0, 1, 7, 2100}) {
      SCOPED_TRACE(testing::Message() << length << " units, " << behind << " behind");
      const Units text(length, 'x');
      Placed<char16_t> from(text, behind);
      EXPECT_EQ(length, my_wcslen(from.get()));
      Guarded to((length + 1) * 2);
      EXPECT_EQ(to.data<Wide>(), my_wcscpy(to.data<Wide>(), from.get()));
      EXPECT_EQ(text, reinterpret_cast<char16_t*>(to.data<Wide>()));
      Placed<char16_t> part(text.substr(0, length / 2), length - length / 2);
      EXPECT_EQ(part.get(), my_wcscat(part.get(), from.get() + length / 2));
      EXPECT_EQ(text, part.text());
    }
  const Units twoPages(5000, 'x');
  EXPECT_EQ(5000U, my_wcslen(Placed<char16_t>(twoPages).get()));
  EXPECT_EQ(5U, my_strlen("bytes"));
}

TEST(Copy, Counted) {
  using namespace std::string_literals;
  const struct {
    int line;
    Units before, from;
    int count;
    Units copied, appended;
  } rows[] = {
      {__LINE__, u"\0#####"s, u"abcde", 3, u"abc\0##"s, u"abc###"s},
      {__LINE__, u"\0#####"s, u"abc", 3, u"abc\0##"s, u"abc###"s},
      {__LINE__, u"\0#####"s, u"a", 3, u"a\0####"s, u"a\0####"s},
      {__LINE__, u"x\0####"s, u"abcd", 2, u"ab\0###"s, u"xab###"s},
      {__LINE__, u"x\0####"s, u"ab", -1, u"ab\0###"s, u"xab\0##"s},
      {__LINE__, u"x\0####"s, u"ab", 0, u"\0\0####"s, u"x\0####"s},
      {__LINE__, u"x\0####"s, u"", 2, u"\0\0####"s, u"x\0####"s},
  };
  for (const auto& row : rows) {
    Placed<char16_t> from(row.from);
    Placed<char16_t> copied(row.before);
    Placed<char16_t> appended(row.before);
    EXPECT_EQ(copied.get(), my_wcsncpy(copied.get(), from.get(), row.count));
    EXPECT_EQ(appended.get(), my_wcsncat(appended.get(), from.get(), row.count));
    EXPECT_EQ(row.copied, six(copied.get())) << "line " << row.line;
    EXPECT_EQ(row.appended, six(appended.get())) << "line " << row.line;
  }
}

TEST(Copy, Fills) {
  Placed<char16_t> text(u"abcdef");
  EXPECT_EQ(u"axcdef", six(my_wcsnset(text.get() + 1, 'x', 1) - 1));
  EXPECT_EQ(u"ayyyyy", six(my_wcsnset(text.get() + 1, 'y', -1) - 1));
  EXPECT_EQ(u"zzzzzz", six(my_wcsset(text.get(), 'z')));
  EXPECT_EQ(u"zz", (my_wmemset(text.get() + 2, 0, 3), text.text()));
  EXPECT_EQ('z', text.get()[5]);
}

TEST(Memory, CopyGoesForwards) {
  Placed<char16_t> copied(u"abcdef");
  EXPECT_EQ(copied.get() + 2, my_wmemcpy(copied.get() + 2, copied.get(), 4));
  EXPECT_EQ(u"ababab", copied.text());
  Placed<char16_t> down(u"abcdef");
  EXPECT_EQ(down.get(), my_wmemcpy(down.get(), down.get() + 1, 5));
  EXPECT_EQ(u"bcdeff", down.text());
  Placed<char16_t> moved(u"abcdef");
  EXPECT_EQ(moved.get() + 1, my_wmemmove(moved.get() + 1, moved.get(), 5));
  EXPECT_EQ(u"aabcde", moved.text());
}

// Every length up to past the widest step, and every byte and unit, against a unit at a time.
TEST(Convert, Widening) {
  for (int length = 0; length < 256; ++length) {
    std::string text;
    Units expected = u"x";
    for (int byte = 256 - length; byte < 256; ++byte) {
      text.push_back(static_cast<char>(byte));
      expected.push_back(static_cast<char16_t>(byte < 0x80 ? byte : 0xFF00 + byte));
    }
    Placed<char> from(text);
    Placed<char16_t> to(u"x" + Units(text.size(), u'#'));
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
    if (length > 2) text[1] = u'\x0100';
    std::string expected = "x" + std::string(length, '\xAC') + std::string(1, '\0');
    if (length > 2) expected[2] = '\0';
    Placed<char16_t> from(text);
    Placed<char> to("x" + std::string(length, '#'));
    EXPECT_EQ(to.get() + 1, CopyWSZToSZ(to.get() + 1, from.get()));
    EXPECT_EQ(expected, to.bytes());
    to.get()[1] = '\0';
    EXPECT_EQ(to.get(), CatWSZToSZ(to.get(), from.get()));
    EXPECT_EQ(expected, to.bytes());
  }
}

TEST(Convert, Placeholders) {
  char narrow[] = "n";
  Wide wide[] = {'w', 0};
  const char* const noBytes = nullptr;
  const Wide* const noUnits = nullptr;
  EXPECT_TRUE(ConvertToWideChar(narrow, wide, 1) && ConvertToMultiByte(wide, narrow, 1));
  EXPECT_FALSE(ConvertToWideChar(noBytes, wide, 1) || ConvertToWideChar(narrow, nullptr, 1) ||
               ConvertToWideChar(narrow, wide, 0));
  EXPECT_FALSE(ConvertToMultiByte(noUnits, narrow, 1) || ConvertToMultiByte(wide, nullptr, 1) ||
               ConvertToMultiByte(wide, narrow, 0));
  EXPECT_STREQ("n", narrow);
  EXPECT_EQ('w', wide[0]);
}

TEST(Case, ChangesAsciiLettersOnly) {
  Units all, lower, upper;
  for (char16_t unit = 1; unit != 0; ++unit) {
    all.push_back(unit);
    lower.push_back(unit >= 'A' && unit <= 'Z' ? unit + 32 : unit);
    upper.push_back(unit >= 'a' && unit <= 'z' ? unit - 32 : unit);
  }
  for (const bool toUpper : {false, true}) {
    Placed<char16_t> wide(all);
    EXPECT_EQ(wide.get(), (toUpper ? my_wcsupr : my_wcslwr)(wide.get()));
    EXPECT_EQ(toUpper ? upper : lower, wide.text());
  }
  for (std::size_t from = 0; from < 255; ++from) {
    const std::string bytes(all.begin() + static_cast<long>(from), all.begin() + 255);
    for (auto change : {My_StrUpr, my_strupr}) {
      Placed<char> text(bytes);
      EXPECT_EQ(text.get(), change(text.get()));
      EXPECT_EQ(std::string(upper.begin() + static_cast<long>(from), upper.begin() + 255),
                text.text());
    }
    Placed<char> text(bytes);
    EXPECT_EQ(text.get(), My_StrLwr(text.get()));
    EXPECT_EQ(std::string(lower.begin() + static_cast<long>(from), lower.begin() + 255),
              text.text());
  }
}

TEST(Case, StoresNothingWhereNothingChanges) {
  Placed<char> narrow(std::string(200, 'A'));
  Placed<char16_t> wide(Units(200, u'A'));
  for (void* memory : {static_cast<void*>(narrow.get()), static_cast<void*>(wide.get())})
    ASSERT_EQ(0, ::mprotect(reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(memory) &
                                                    ~std::uintptr_t{4095}),
                            4096, PROT_READ));
  My_StrUpr(narrow.get());
  my_wcsupr(wide.get());
}

TEST(Case, UprTakesEveryByte) {
  char text[] = "ab\0cd";
  EXPECT_EQ(1, strUpr(text, 4));
  EXPECT_EQ(std::string("AB\0Cd", 5), std::string(text, 5));
  EXPECT_EQ(1, strUpr(text, -1));
  EXPECT_EQ(std::string("AB\0Cd", 5), std::string(text, 5));
}

TEST(Trim, Left) {
  const struct {
    const char* before;
    std::string after;  // all bytes
  } rows[] = {{"", std::string(1, '\0')},
              {"ab ", {"ab \0", 4}},
              {" \t\n\r\v\fa b", {"a b\0\0\0\0\0\0\0", 10}},
              {"  ", {"\0\0\0", 3}},
              {"\x1F x", {"\x1F x\0", 4}}};
  for (const auto& row : rows) {
    Placed<char> text(row.before);
    EXPECT_EQ(text.get(), TrimLeft(text.get()));
    EXPECT_EQ(row.after, text.bytes()) << row.before;
  }
}

TEST(Trim, Right) {
  for (const auto& [before, after] : std::initializer_list<std::pair<const char*, std::string>>{
           {"", {"\0", 1}},
           {"  ", {"\0\0\0", 3}},
           {" a b \t\r\n", {" a b\0\0\0\0\0", 9}},
           {"\xA0", {"\xA0\0", 2}}}) {
    Placed<char> text(before);
    EXPECT_EQ(text.get(), TrimRight(text.get()));
    EXPECT_EQ(after, text.bytes()) << before;
  }
}

TEST(Trim, Removing) {
  std::string empty, list = "a,b,,c,", none = "abc", all = ",,";
  EXPECT_EQ(1, RemoveCharFromString(&empty, ','));
  for (std::string* text : {&list, &none, &all}) EXPECT_EQ(0, RemoveCharFromString(text, ','));
  EXPECT_EQ("abcabc", list + none + all);
}

TEST(Trim, RemovingNeverPassesAZeroByte) {
  const Outcome outcome = runForked([] {
    std::string text("a\0b,", 4);
    ::alarm(1);
    RemoveCharFromString(&text, ',');
    return 0;
  });
  EXPECT_EQ(128 + SIGALRM, outcome.status);
}

TEST(Trim, Reverse) {
  for (std::size_t length = 0; length < 5; ++length) {
    const std::string text = std::string("abcde").substr(0, length);
    const std::string reversed(text.rbegin(), text.rend());
    Placed<char> narrow(text);
    EXPECT_EQ(reversed, my_strrev(narrow.get()));
    Placed<char16_t> wide(widened(text));
    EXPECT_EQ(wide.get(), my_wcsrev(wide.get()));
    EXPECT_EQ(widened(reversed), wide.text());
  }
}
