#include <zrcommon/system.h>

#include "support/test.h"

namespace {

const unsigned char* bytesOf(const S& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

S repeat(const S& unit, std::size_t size) {
  S text;
  while (text.size() < size) text += unit;
  text.resize(size);
  return text;
}

// Against the standard library; both stand before unreadable pages.
void expectAgreement(const S& text, const S& pattern) {
  Guarded buffer(text.size()), wanted(pattern.size());
  text.copy(buffer.data(), text.size());
  pattern.copy(wanted.data(), pattern.size());
  ASSERT_EQ(static_cast<int>(text.find(pattern)),
            SearchFor(buffer.data<unsigned char>(), static_cast<int>(text.size()),
                      wanted.data<unsigned char>(), static_cast<int>(pattern.size())))
      << text.size() << " bytes, pattern of " << pattern.size() << ": " << pattern;
}

class File {
 public:
  explicit File(const S& content) {
    putFile(scratch_ / "f", content);
    fd_ = ::open((scratch_ / "f").c_str(), O_RDONLY | O_CLOEXEC);
  }
  ~File() { ::close(fd_); }
  long long search(const S& pattern, long long start) const {
    return SearchInFile(fd_, bytesOf(pattern), static_cast<int>(pattern.size()), start);
  }
  off_t position() const { return ::lseek(fd_, 0, SEEK_CUR); }
  int get() const { return fd_; }

 private:
  ScratchDirectory scratch_;
  int fd_;
};

// Where a search that finds nothing, or a match at this place, leaves a file of this size.
off_t stopsAt(off_t size, off_t length, off_t start, long long found) {
  off_t begin = start;
  while (std::min(begin + 2048, size) < size && (found < 0 || begin + 2048 < found + length))
    begin += 2048 - length - 5;
  return std::min(begin + 2048, size);
}

}  // namespace

TEST(SearchFor, Arguments) {
  const auto* const bytes = reinterpret_cast<const unsigned char*>("abcabc");
  for (const auto& [buffer, length, pattern, patternLength, result] :
       Rows<const unsigned char*, int, const unsigned char*, int, int>{{bytes, 6, bytes, 6, 0},
                                                                       {bytes, 6, bytes + 5, 1, 2},
                                                                       {bytes, 5, bytes, 6, -1},
                                                                       {bytes, 7, bytes + 6, 1, 6},
                                                                       {bytes, 6, bytes + 6, 1, -1},
                                                                       {nullptr, 6, bytes, 1, -1},
                                                                       {bytes, 6, nullptr, 1, -1},
                                                                       {bytes, 0, bytes, 1, -1},
                                                                       {bytes, -1, bytes, 1, -1},
                                                                       {bytes, 6, bytes, 0, -1},
                                                                       {bytes, -1, bytes, -2, -1},
                                                                       {bytes, -2, bytes, -1, -1}})
    EXPECT_EQ(result, SearchFor(buffer, length, pattern, patternLength))
        << length << " " << patternLength;
}

// Sizes around the borders of each way of searching, in texts that suit one and not another; the
// pattern is a piece of the text, sometimes with a byte changed.
TEST(SearchFor, AgreesWithAModel) {
  Dice dice;
  const std::size_t textSizes[] = {1, 2, 63, 64, 65, 130, 700, 1310, 4096, 16384, 30000};
  const std::size_t patternSizes[] = {1,   2,   3,   4,   5,   15,  16,  17,  64,
                                      100, 101, 200, 258, 259, 260, 261, 1000};
  for (int round = 0; round < 12000; ++round) {
    const std::size_t kinds = std::size_t{1} << dice.below(9);
    S text(textSizes[dice.below(std::size(textSizes))], 'a');
    const std::size_t noise = round % 3 == 0 ? text.size() / 500 + 1 : text.size();
    for (std::size_t i = 0; i < noise; ++i)
      text[noise == text.size() ? i : dice.below(text.size())] = char('a' + dice.below(kinds));
    const std::size_t size =
        std::min(patternSizes[dice.below(std::size(patternSizes))], text.size());
    S pattern = text.substr(dice.below(text.size() - size + 1), size);
    if (round % 2) pattern[dice.below(size)] = char('a' + dice.below(kinds));
    ASSERT_NO_FATAL_FAILURE(expectAgreement(text, pattern)) << "round " << round;
  }
}

// In texts that look like the pattern all over, one way of searching gives up and the next goes on
// from there: the match is put at every place, so also where that happens.
TEST(SearchFor, GivesUpWithoutLosingTheMatch) {
  for (const char* unit : {"ab", "abc", "aaaaaaab"})
    for (const std::size_t size : {15, 16, 300}) {
      S pattern = repeat(unit, size);
      pattern.replace(size / 4 * 2, 2, "ba");
      for (std::size_t place = 0; place < 10000; place += place < 1500 ? 1 : 8) {
        S text = repeat(unit, 17000);
        text.replace(place, size, pattern);
        const std::size_t expected = text.find(pattern, place > size ? place - size : 0);
        ASSERT_EQ(static_cast<int>(expected),
                  SearchFor(bytesOf(text), 17000, bytesOf(pattern), static_cast<int>(size)))
            << unit << size;
      }
    }
}

// Each place around the ends of the first three pieces, behind a start in mid-file.
TEST(SearchInFile, FindsAcrossTheBordersOfPieces) {
  constexpr off_t kSize = 9000;
  for (const off_t length : {1, 2, 15, 16, 100, 1000, 1500, 2041, 2042})
    for (const off_t piece : {0, 1, 2})
      for (const off_t from : {-length - 6, -length - 5, -length - 4, -length - 1, -length,
                               -length + 1, off_t{-1}, off_t{0}, off_t{1}}) {
        const off_t place = 2048 + piece * (2048 - length - 5) + from;
        if (place < 0) continue;
        S content = repeat(".,;", kSize);
        const S pattern = repeat("Q1WERTZ2", static_cast<std::size_t>(length));
        content.replace(static_cast<std::size_t>(place), pattern.size(), pattern);
        const File file(content);
        for (const off_t start : {off_t{0}, std::min<off_t>(place, 77), place}) {
          EXPECT_EQ(place, file.search(pattern, start)) << length << " from " << start;
          EXPECT_EQ(stopsAt(kSize, length, start, place), file.position()) << length;
        }
        EXPECT_EQ(-1, file.search(pattern, place + 1));
        EXPECT_EQ(kSize, file.position());
      }
}

TEST(SearchInFile, OnlyTheFileIsUpperCased) {
  const File file(repeat("-", 3000) + "Virus [virus] VIRUS{|}");
  for (const auto& [pattern, start, result] :
       Rows<const char*, long long, long long>{{"VIRUS", 0, 3000},
                                               {"VIRUS", 3001, 3007},
                                               {"VIRUS", 3008, 3014},
                                               {"virus", 0, -1},
                                               {"Virus", 0, -1},
                                               {"[VIRUS]", 0, 3006},
                                               {"{|}", 0, 3019},
                                               {"[|]", 0, -1},
                                               {"VIRUS", 3015, -1},
                                               {"}", 3021, 3021},
                                               {"}", 3022, -1},
                                               {"}", 1LL << 40, -1}})
    EXPECT_EQ(result, file.search(pattern, start)) << pattern << " from " << start;
}

TEST(SearchInFile, RefusesBeforeItSeeks) {
  const File file(repeat("A", 5000));
  const S pattern(2043, 'A');
  ASSERT_EQ(10, ::lseek(file.get(), 10, SEEK_SET));
  for (const int length : {2043, 1 << 30, 0, -1, -6, -7})
    EXPECT_EQ(-1, SearchInFile(file.get(), bytesOf(pattern), length, 0)) << length;
  EXPECT_EQ(-1, SearchInFile(file.get(), bytesOf(pattern), 1, -1));
  EXPECT_EQ(-1, SearchInFile(file.get(), nullptr, 1, 0));
  EXPECT_EQ(10, file.position());
  EXPECT_EQ(-1, SearchInFile(-1, bytesOf(pattern), 1, 0));
  int ends[2];
  ASSERT_EQ(0, ::pipe2(ends, O_CLOEXEC));
  EXPECT_EQ(1, ::write(ends[1], "A", 1));
  EXPECT_EQ(-1, SearchInFile(ends[0], bytesOf(pattern), 1, 0));
  ::close(ends[0]), ::close(ends[1]);
}
