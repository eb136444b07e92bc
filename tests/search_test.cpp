#include <sys/mman.h>
#include <zrcommon/system.h>

#include "support/guarded_call.h"

namespace {

const unsigned char* unsignedBytes(const S& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

S repeat(const S& unit, std::size_t size) {
  S text;
  while (text.size() < size) text += unit;
  return text.substr(0, size);
}

const unsigned char* search(const unsigned char* text, int size, const unsigned char* pattern,
                            int patternSize) {
  const int place = SearchFor(text, size, pattern, patternSize);
  return place == -1 ? nullptr : text + place;
}

}  // namespace

TEST(SearchFor, Rows) {
  call(search, raw("abcabc"), 6, raw("abcabc"), 6).gives(0);
  call(search, raw("abcabc"), 5, raw("abcabc"), 6).gives(-1);
  call(search, raw("abc\0"), 4, raw("\0"), 1).gives(3);
  call(search, raw("abc\0"), 3, raw("\0"), 1).gives(-1);
  call(search, raw("a"), 0, raw("a"), 1).gives(-1);
  call(search, raw("a"), 1, raw("a"), 0).gives(-1);
  call(search, raw("a"), -1, raw("a"), -1).gives(-1);
  call(search, raw("a"), -1, raw("a"), -2).gives(-1);
}

// In texts that look like the pattern all over, one way of searching gives up and the next goes on
// from there: the match is put at every place, so also where that happens.
TEST(SearchFor, GivesUpWithoutLosingTheMatch) {
  for (const char* unit : {"ab", "abc", "aaaaaaab"})
    for (const std::size_t size : {15, 16, 300}) {
      const S background = repeat(unit, 17000);
      S pattern = background.substr(0, size), text = background;
      pattern.replace(size / 4 * 2, 2, "ba");
      for (std::size_t place = 0; place < 10000; place += place < 1504 ? 1 : 8) {
        text.replace(place, size, pattern);
        const std::size_t expected = text.find(pattern, place > size ? place - size : 0);
        ASSERT_EQ(int(expected),
                  SearchFor(unsignedBytes(text), 17000, unsignedBytes(pattern), int(size)))
            << unit << size;
        text.replace(place, size, background, place, size);
      }
    }
}

// Each place around the ends of the first three chunks, after a start in the middle of the file.
// Only the file is searched in upper case.
TEST(SearchInFile, FindsAcrossTheBordersOfChunks) {
  constexpr off_t kSize = 9000;
  const int file = ::memfd_create("searched", MFD_CLOEXEC);
  for (const int length : {1, 2, 15, 16, 100, 1000, 1500, 2041, 2042})
    for (const int chunk : {0, 1, 2})
      for (const int from :
           {-length - 6, -length - 5, -length - 4, -length - 1, -length, -1, 0, 1}) {
        const off_t place = 2048 + chunk * (2048 - length - 5) + from;
        if (place < 0) continue;
        const S stored = repeat("{q1werTZ", std::size_t(length));
        const S pattern = repeat("{Q1WERTZ", std::size_t(length));
        const S content = repeat(".,[q", kSize).replace(std::size_t(place), stored.size(), stored);
        EXPECT_EQ(kSize, ::pwrite(file, content.data(), content.size(), 0));
        for (const off_t start : {off_t{0}, std::min<off_t>(place, 77), place, place + 1}) {
          SCOPED_TRACE(testing::Message() << length << " bytes at " << place << " from " << start);
          const off_t expected = start <= place ? place : -1;
          EXPECT_EQ(expected, SearchInFile(file, unsignedBytes(pattern), length, start));
          EXPECT_EQ(start > place, ::lseek(file, 0, SEEK_CUR) == kSize);
        }
      }
  EXPECT_EQ(-1, SearchInFile(file, unsignedBytes("q"), 1, 0)) << "a lower-case letter";
  for (const int length : {2043, 1 << 30, 0, -1, -6, -7})
    EXPECT_EQ(-1, SearchInFile(file, unsignedBytes(repeat(".,[Q", 2043)), length, 0)) << length;
  EXPECT_EQ(-1, SearchInFile(file, nullptr, 1, 0));
  EXPECT_EQ(-1, SearchInFile(file, unsignedBytes("."), 1, -1));
  ::close(file);
}
