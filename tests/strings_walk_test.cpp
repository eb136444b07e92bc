#include <zrcommon/strings.h>

#include <algorithm>

#include "support/dice.h"
#include "support/placed.h"
#include "text/occurrences.h"

namespace {

using Units = std::u16string;

const Wide* units(const char16_t* text) {
  return reinterpret_cast<const Wide*>(text);
}

// The rule of all comparisons, a unit at a time.
template <typename Char>
int modelCompare(const std::basic_string<Char>& a, const std::basic_string<Char>& b,
                 std::size_t count, unsigned mask) {
  for (std::size_t i = 0; i < count; ++i) {
    if (i == a.size() || i == b.size()) return int(i < a.size()) - int(i < b.size());
    const unsigned x = std::make_unsigned_t<Char>(a[i]) & mask;
    const unsigned y = std::make_unsigned_t<Char>(b[i]) & mask;
    if (x != y) return x > y ? 1 : -1;
  }
  return 0;
}

// Where the pattern is, its middle unit aside; npos if nowhere.
template <typename String>
std::size_t modelSearch(const String& text, String pattern) {
  for (std::size_t at = 0; at + pattern.size() <= text.size(); ++at) {
    if (pattern.size() % 2 && !text.empty())
      pattern[pattern.size() / 2] = text[at + pattern.size() / 2];
    if (text.compare(at, pattern.size(), pattern) == 0) return at;
  }
  return String::npos;
}

;

void expectSearches(const std::string& text, const std::string& pattern) {
  const std::size_t expected = modelSearch(text, pattern);
  Placed<char> narrow(text), narrowPattern(pattern);
  const char* const found = my_strstr(narrow.get(), narrowPattern.get());
  EXPECT_EQ(expected, found ? std::size_t(found - narrow.get()) : std::string::npos)
      << pattern << " in " << text;
  Placed<char16_t> wide(widened(text)), widePattern(widened(pattern));
  const Wide* const wideFound = my_wcsstr(wide.get(), widePattern.get());
  EXPECT_EQ(expected, wideFound ? std::size_t(wideFound - wide.get()) : std::string::npos)
      << "wide " << pattern << " in " << text;
}

}  // namespace

TEST(Compare, AsIs) {
  const Wide* const null = nullptr;
  const Wide* const some = units(u"s");
  EXPECT_EQ(8, my_wcscmp(null, some) + my_wcscmp(some, null) + my_wcscmp(null, null) +
                   my_wcsncmp(null, some, 0) + my_wcsncmp(some, null, 0) +
                   my_wmemcmp(null, some, 1) + my_wmemcmp(some, null, 1) +
                   my_wmemcmp(null, null, 0));
  const struct {
    int line;
    const char16_t *a, *b;
    int count, counted, whole;
  } rows[] = {
      {__LINE__, u"", u"", 1, 0, 0},        {__LINE__, u"a", u"ab", 2, -1, -1},
      {__LINE__, u"ab", u"a", 1, 0, 1},     {__LINE__, u"ab", u"ac", 1, 0, -1},
      {__LINE__, u"ab", u"ac", -1, -1, -1}, {__LINE__, u"\xFFFF", u"\x0001", 5, 1, 1},
      {__LINE__, u"a", u"b", 0, 0, -1},     {__LINE__, u"\x8000", u"\x7FFF", 1, 1, 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.counted, my_wcsncmp(units(row.a), units(row.b), row.count)) << row.line;
    EXPECT_EQ(row.whole, my_wcscmp(units(row.a), units(row.b))) << row.line;
  }
}

TEST(Compare, Folded) {
  EXPECT_EQ(6, my_stricmp(nullptr, "a") + my_stricmp("a", nullptr) +
                   my_strnicmp(nullptr, nullptr, 0) + my_wcsicmp(nullptr, nullptr) +
                   my_wcsicmp(units(u"a"), nullptr) + my_wcsnicmp(nullptr, units(u"a"), 0));
  const struct {
    int line;
    const char *a, *b;
    unsigned count;
    int counted, whole;
  } rows[] = {
      {__LINE__, "abc", "ABC", 9, 0, 0},
      {__LINE__, "a", "b", 1, -1, -1},
      {__LINE__, "@[\\]^_0", "`{|}~\x7F\x10", 7, 0, 0},
      {__LINE__, "abcd", "ABxx", 2, 0, -1},
      {__LINE__, "ab", "abc", 5, -1, -1},
      {__LINE__, " ", "", 1, 1, 1},
      {__LINE__, "", " ", 1, -1, -1},
      {__LINE__, "z", "a", 0, 0, 1},
      {__LINE__, "\xE9", "\xC9", 1, 0, 0},
      {__LINE__, "\xE9", "z", ~0U, 1, 1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.whole, my_stricmp(row.a, row.b)) << row.line;
    EXPECT_EQ(row.counted, my_strnicmp(row.a, row.b, row.count)) << row.line;
  }
  EXPECT_EQ(0, my_wcsicmp(units(u"\x0141["), units(u"A{")));
  EXPECT_EQ(0, my_wcsicmp(units(u"\x0100\x20"), units(u"\x0200\xFF00")));
  EXPECT_EQ(1, my_wcsicmp(units(u"\x0100"), units(u"")));
  EXPECT_EQ(-1, my_wcsnicmp(units(u"\x0141"), units(u"\x0062"), ~0U));
}

TEST(Compare, WideWithNarrow) {
  const struct {
    const char16_t* wide;
    const char* narrow;
    int result;
  } rows[] = {{u"", "", 0},      {u"ab", "ab", 0},     {u"a", "ab", -1},       {u"ab", "a", 1},
              {u"a", "b", -1},   {u"\xE9", "\xE9", 1}, {u"\xFFE9", "\xE9", 1}, {u"\x01", "\xFF", 1},
              {u"", "\xE9", -1}, {u"\x0161", "a", 1}};
  for (const auto& row : rows)
    EXPECT_EQ(row.result, my_wcscscmp(units(row.wide), row.narrow)) << row.narrow;
  EXPECT_EQ(2, my_wcscscmp(nullptr, "a") + my_wcscscmp(units(u"a"), nullptr));
}

TEST(Compare, AgreesWithTheModelUpToTheEndOfMemory) {
  Dice dice;
  for (int round = 0; round < 20000; ++round) {
    const std::size_t length = dice.below(round % 50 ? 100 : 5000);
    Units a = dice.text(length, Units(u"Aa[{\x0141\x20\x0100"));
    Units b = a;
    for (char16_t& unit : b)
      if (dice.below(4) == 0) unit = static_cast<char16_t>((unit & 0xFF) == 'A' ? 'a' : unit);
    if (dice.below(2) && length) b[dice.below(length)] = dice.below(2) ? u'\x8041' : u'@';
    if (dice.below(4) == 0) b.resize(dice.below(length + 1));
    const std::size_t count = dice.below(length + 3);
    Placed<char16_t> x(a, dice.below(20)), y(b, dice.below(20));
    ASSERT_EQ(modelCompare(a, b, ~0U, 0xFFFF), my_wcscmp(x.get(), y.get()));
    ASSERT_EQ(modelCompare(b, a, count, 0xFFFF), my_wcsncmp(y.get(), x.get(), int(count)));
    ASSERT_EQ(modelCompare(a, b, ~0U, 0xDF), my_wcsicmp(x.get(), y.get()));
    ASSERT_EQ(modelCompare(b, a, count, 0xDF), my_wcsnicmp(y.get(), x.get(), unsigned(count)));
    const std::size_t both = std::min(a.size(), b.size()) + 1;
    a.resize(both), b.resize(both);
    ASSERT_EQ(modelCompare(a, b, both, 0xFFFF), my_wmemcmp(x.get(), y.get(), int(both)));
    std::string narrow(a.begin(), a.end() - 1), other(b.begin(), b.end() - 1);
    for (std::string* text : {&narrow, &other})
      std::replace(text->begin(), text->end(), '\0', '\xE1');
    Placed<char> s(narrow, dice.below(20)), t(other, dice.below(20));
    ASSERT_EQ(modelCompare(narrow, other, ~0U, 0xDF), my_stricmp(s.get(), t.get()));
    ASSERT_EQ(modelCompare(narrow, other, count, 0xDF),
              my_strnicmp(s.get(), t.get(), unsigned(count)));
  }
}

TEST(Search, TwoEnded) {
  const struct {
    const char *text, *pattern;
    std::size_t at;
  } rows[] = {{"xyz", "q", 0},
              {"", "q", std::string::npos},
              {"", "", 0},
              {"xyz", "", 0},
              {"xyz", "qyq", std::string::npos},
              {"xyz", "xqz", 0},
              {"axc", "abc", 0},
              {"aab", "ab", 1},
              {"hello", "l?o", 2},
              {"hello", "LL", std::string::npos},
              {"ab", "abc", std::string::npos}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.at, modelSearch(std::string(row.text), std::string(row.pattern)));
    expectSearches(row.text, row.pattern);
  }
}

TEST(Search, AgreesWithTheModel) {
  Dice dice;
  for (int round = 0; round < 4000; ++round) {
    const std::string text = dice.text(dice.below(300), std::string(round % 2 ? "aaab" : "ab\xE9"));
    std::string pattern = text.substr(dice.below(text.size() + 1), dice.below(40));
    for (char& byte : pattern)
      if (dice.below(30) == 0) byte = 'b';
    expectSearches(text, pattern);
  }
  // Texts that a search at every place would be slow on.
  for (const std::size_t half : {20, 21, 400}) {
    const std::string run(half, 'a');
    for (const std::string& end : {run + "b" + run, run + "bba" + run, run + "b" + run + "a", run})
      for (const char* pattern : {"?", "b?a", "b?", "bba", "c"})
        expectSearches(std::string(3000, 'a') + end, run + pattern + run);
  }
}

// A one in front of the bits makes words of every length of them.
TEST(Search, EveryOccurrenceOfEveryPattern) {
  const auto word = [](unsigned int bits) {
    std::string text;
    for (; bits > 1; bits /= 2) text += bits % 2 ? 'b' : 'a';
    return text;
  };
  for (unsigned int textBits = 2048; textBits < 4096; ++textBits) {
    const std::string text = word(textBits);
    for (unsigned int patternBits = 2; patternBits < 512; ++patternBits) {
      const std::string pattern = word(patternBits);
      Occurrences<char> places(text.data(), text.size(), pattern.data(), pattern.size());
      for (std::size_t at = text.find(pattern); at != text.npos; at = text.find(pattern, at + 1))
        ASSERT_EQ(at, places.next()) << pattern << " in " << text;
      ASSERT_EQ(SIZE_MAX, places.next()) << pattern << " in " << text;
    }
  }
}

TEST(Search, ForAUnit) {
  for (std::size_t length = 0; length < 70; ++length)
    for (std::size_t behind : {0, 3, 2060}) {
      Units text(length, u'x');
      for (std::size_t at = 0; at < length; at += 3) text[at] = u'\x78FF';
      Placed<char16_t> placed(text, behind);
      const Wide* const first = placed.get();
      const auto find = [&](std::size_t at) { return at < length ? first + at : nullptr; };
      EXPECT_EQ(nullptr, my_wcschr(first, 0)) << length;
      EXPECT_EQ(nullptr, my_wcsrchr(first, 0)) << length;
      EXPECT_EQ(nullptr, my_wcschr(first, 0xFF78)) << length;
      EXPECT_EQ(find(1), my_wcschr(first, 'x')) << length;
      EXPECT_EQ(find(text.rfind(u'\x78FF')), my_wcsrchr(first, 0x78FF)) << length;
      EXPECT_EQ(find(text.rfind(u'x')), my_wcsrchr(first, 'x')) << length;
      EXPECT_EQ(nullptr, my_wmemchr(first, 0, int(length))) << length;
      EXPECT_EQ(first + length, my_wmemchr(first, 0, -1)) << length;
      if (length > 0) text.back() = placed.get()[length - 1] = u'@';
      EXPECT_EQ(find(length - 1), my_wcschr(first, '@')) << length;
      EXPECT_EQ(nullptr, my_wmemchr(first, '@', int(length) - 1 + (length == 0))) << length;
    }
}
