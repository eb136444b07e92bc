#include <zrcommon/strings.h>

#include "strings/two_way.h"
#include "support/test.h"

using namespace zrcommon;

namespace {

using Units = std::u16string;
using Wide = unsigned short;

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
std::size_t modelSearch(const S& text, S pattern) {
  for (std::size_t at = 0; at + pattern.size() <= text.size(); ++at) {
    if (pattern.size() % 2 && !text.empty())
      pattern[pattern.size() / 2] = text[at + pattern.size() / 2];
    if (text.compare(at, pattern.size(), pattern) == 0) return at;
  }
  return S::npos;
}

void expectAt(std::size_t expected, const S& text, const S& pattern) {
  GuardedText narrow(text), narrowPattern(pattern);
  GuardedUnits wide(Units(text.begin(), text.end())),
      widePattern(Units(pattern.begin(), pattern.end()));
  const char* const found = my_strstr(narrow.get(), narrowPattern.get());
  const Wide* const wideFound = my_wcsstr(wide.get(), widePattern.get());
  EXPECT_EQ(expected, found ? std::size_t(found - narrow.get()) : S::npos)
      << pattern << " in " << text;
  EXPECT_EQ(expected, wideFound ? std::size_t(wideFound - wide.get()) : S::npos)
      << "wide " << pattern << " in " << text;
}

}  // namespace

TEST(Compare, NullIsGreater) {
  const Wide* const null = nullptr;
  const Wide* const w = units(u"a");
  EXPECT_EQ(14, my_wcscmp(null, w) + my_wcscmp(w, null) + my_wcscmp(null, null) +
                    my_wcsncmp(null, w, 0) + my_wmemcmp(null, w, 1) + my_wmemcmp(w, null, 1) +
                    my_wcscscmp(nullptr, "a") + my_wcscscmp(w, nullptr) + my_stricmp(nullptr, "a") +
                    my_stricmp("a", nullptr) + my_strnicmp(nullptr, nullptr, 0) +
                    my_wcsicmp(null, null) + my_wcsicmp(w, nullptr) + my_wcsnicmp(nullptr, w, 0));
}

// Bit 0x20 counts nowhere, nor does the upper byte of a wide unit.
TEST(Compare, Folded) {
  EXPECT_EQ(0, my_stricmp("@[\\]^_0\xE9", "`{|}~\x7F\x10\xC9"));
  EXPECT_EQ(0, my_wcsicmp(units(u"\x0141[\x20"), units(u"A{\xFF00")));
  EXPECT_EQ(2, my_stricmp(" ", "") + my_wcsicmp(units(u"\x0100"), units(u"")));
  EXPECT_EQ(-3, my_wcsncmp(units(u"ab"), units(u"ac"), -1) + my_strnicmp("Ab", "aC", ~0U) +
                    my_wcsnicmp(units(u"\x0141"), units(u"\x0062"), ~0U));
}

TEST(Compare, WideWithNarrow) {
  const Rows<const char16_t*, const char*, int> rows = {
      {u"", "", 0},      {u"ab", "ab", 0},     {u"a", "ab", -1},       {u"ab", "a", 1},
      {u"a", "b", -1},   {u"\xE9", "\xE9", 1}, {u"\xFFE9", "\xE9", 1}, {u"\x01", "\xFF", 1},
      {u"", "\xE9", -1}, {u"\x0161", "a", 1}};
  for (const auto& [wide, narrow, result] : rows)
    EXPECT_EQ(result, my_wcscscmp(units(wide), narrow)) << narrow;
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
    GuardedUnits x(a, dice.below(20)), y(b, dice.below(20));
    ASSERT_EQ(modelCompare(a, b, ~0U, 0xFFFF), my_wcscmp(x.get(), y.get()));
    ASSERT_EQ(modelCompare(b, a, count, 0xFFFF), my_wcsncmp(y.get(), x.get(), int(count)));
    ASSERT_EQ(modelCompare(a, b, ~0U, 0xDF), my_wcsicmp(x.get(), y.get()));
    ASSERT_EQ(modelCompare(b, a, count, 0xDF), my_wcsnicmp(y.get(), x.get(), unsigned(count)));
    const std::size_t both = std::min(a.size(), b.size()) + 1;
    a.resize(both), b.resize(both);
    ASSERT_EQ(modelCompare(a, b, both, 0xFFFF), my_wmemcmp(x.get(), y.get(), int(both)));
    S narrow(a.begin(), a.end() - 1), other(b.begin(), b.end() - 1);
    for (S* text : {&narrow, &other}) std::replace(text->begin(), text->end(), '\0', '\xE1');
    GuardedText s(narrow, dice.below(20)), t(other, dice.below(20));
    ASSERT_EQ(modelCompare(narrow, other, ~0U, 0xDF), my_stricmp(s.get(), t.get()));
    ASSERT_EQ(modelCompare(narrow, other, count, 0xDF),
              my_strnicmp(s.get(), t.get(), unsigned(count)));
  }
}

TEST(Search, TwoEnded) {
  constexpr std::size_t kNone = S::npos;
  for (const auto& [text, pattern, at] :
       Rows<const char*, const char*, std::size_t>{{"xyz", "q", 0},
                                                   {"", "q", kNone},
                                                   {"", "", 0},
                                                   {"xyz", "", 0},
                                                   {"xyz", "qyq", kNone},
                                                   {"xyz", "xqz", 0},
                                                   {"aab", "ab", 1},
                                                   {"hello", "l?o", 2},
                                                   {"ab", "abc", kNone}}) {
    EXPECT_EQ(at, modelSearch(text, pattern));
    expectAt(at, text, pattern);
  }
}

TEST(Search, AgreesWithTheModel) {
  Dice dice;
  for (int round = 0; round < 4000; ++round) {
    const S text = dice.text(dice.below(300), S(round % 2 ? "aaab" : "ab\xE9"));
    S pattern = text.substr(dice.below(text.size() + 1), dice.below(40));
    for (char& byte : pattern)
      if (dice.below(30) == 0) byte = 'b';
    expectAt(modelSearch(text, pattern), text, pattern);
  }
  // Texts that a search at every place would be slow on.
  for (const std::size_t half : {20, 21, 400}) {
    const S run(half, 'a');
    for (const S& end : {run + "b" + run, run + "bba" + run, run + "b" + run + "a", run})
      for (const char* middle : {"?", "b?a", "b?", "bba", "c"}) {
        const S text = S(3000, 'a') + end, pattern = run + middle + run;
        expectAt(modelSearch(text, pattern), text, pattern);
      }
  }
}

// A one in front of the bits makes words of every length of them.
TEST(Search, EveryOccurrenceOfEveryPattern) {
  const auto word = [](unsigned int bits) {
    S text;
    for (; bits > 1; bits /= 2) text += bits % 2 ? 'b' : 'a';
    return text;
  };
  for (unsigned int textBits = 2048; textBits < 4096; ++textBits) {
    const S text = word(textBits);
    for (unsigned int patternBits = 2; patternBits < 512; ++patternBits) {
      const S pattern = word(patternBits);
      TwoWaySearch<char> places(text.data(), text.size(), pattern.data(), pattern.size());
      for (std::size_t at = text.find(pattern); at != text.npos; at = text.find(pattern, at + 1))
        ASSERT_EQ(at, places.next()) << pattern << " in " << text;
      ASSERT_EQ(SIZE_MAX, places.next()) << pattern << " in " << text;
    }
  }
}
