// How the cost of an operation grows with its input, and what the input can do to it: one table,
// sizes doubling, nanoseconds of processor
// time a byte. A row that stays level has a cost in proportion to the size.
#include <zrcommon/codecs.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <vector>

#include "bench/sandbox.h"
#include "bench/sweep_inputs.h"

namespace {

using Body = std::function<void()>;

constexpr double kLeastNanoseconds = 2e6;  // of one measurement
constexpr int kMeasurements = 5;
constexpr std::size_t kSmallest = std::size_t{4} << 10U;
constexpr std::size_t kLargest = std::size_t{4} << 20U;
constexpr std::size_t kLargestCommand = 5119;

struct Row {
  const char* operation;
  const char* input;
  std::string (*make)(std::size_t size);
  Body (*prepare)(const std::string& text);
};

volatile bool g_sink;  // what keeps the compiler from leaving out work that nobody looks at

Body readString(const std::string& text) {
  std::ofstream("/scratch/sweep", std::ios::binary) << text;
  return [] {
    char out[1025];
    unsigned int error = 0;
    g_sink = GetPrivateProfileString("last", "key", "", out, sizeof out, "/scratch/sweep", &error);
  };
}

Body readNumber(const std::string& text) {
  std::ofstream("/scratch/sweep", std::ios::binary) << text;
  return [] {
    unsigned int error = 0;
    g_sink = GetPrivateProfileInt("last", "key", 1, "/scratch/sweep", &error) != 0;
  };
}

// The value keeps its length, so every repetition finds a file of the same size.
Body changeLast(const std::string& text) {
  std::ofstream("/scratch/sweep", std::ios::binary) << text;
  return [] {
    unsigned int error = 0;
    g_sink = WritePrivateProfileString("last", "key", "value", "/scratch/sweep", &error);
  };
}

// Pattern and text stand one behind the other, with a line feed between.
Body searchFor(const std::string& both) {
  return [both, length = both.find('\n')] {
    const auto* const pattern = reinterpret_cast<const unsigned char*>(both.data());
    g_sink = SearchFor(pattern + length + 1, static_cast<int>(both.size() - length - 1), pattern,
                       static_cast<int>(length)) >= 0;
  };
}

Body searchNarrow(const std::string& both) {
  const std::size_t length = both.find('\n');
  return [pattern = both.substr(0, length), text = both.substr(length + 1)] {
    g_sink = my_strstr(text.c_str(), pattern.c_str()) != nullptr;
  };
}

Body searchWide(const std::string& both) {
  const auto length = static_cast<std::ptrdiff_t>(both.find('\n'));
  std::vector<unsigned short> wide(both.begin(), both.end());
  wide[static_cast<std::size_t>(length)] = 0;
  wide.push_back(0);
  return [wide, length] { g_sink = my_wcsstr(wide.data() + length + 1, wide.data()) != nullptr; };
}

// These change their text, so each repetition works on a copy, which is counted in.
Body trimLeft(const std::string& text) {
  return [text, copy = text]() mutable {
    std::memcpy(copy.data(), text.c_str(), text.size() + 1);
    g_sink = TrimLeft(copy.data()) != nullptr;
  };
}

Body removeComma(const std::string& text) {
  return [text, copy = text]() mutable {
    copy.assign(text);
    g_sink = RemoveCharFromString(&copy, ',') != 0;
  };
}

Body secureCommand(const std::string& text) {
  return [text, copy = std::vector<char>(text.size() * 8 + 16)]() mutable {
    std::memcpy(copy.data(), text.c_str(), text.size() + 1);
    g_sink = CPHPOperations("8W371KJ05926143DCF57").ConvertToSecurePhpCommand(copy.data(), 1);
  };
}

const Row kRows[] = {
    {"read a string", "many sections", ordinaryProfile, readString},
    {"", "one large section", oneSection, readString},
    {"", "headers alone", headersAlone, readString},
    {"", "headers without an end", openHeaders, readString},
    {"", "blank lines in the section", blankLines, readString},
    {"", "long lines of blanks", blankPieces, readString},
    {"read a number", "many sections", ordinaryProfile, readNumber},
    {"", "blank lines in the section", blankLines, readNumber},
    {"change a value", "many sections", ordinaryProfile, changeLast},
    {"", "one large section", oneSection, changeLast},
    {"", "headers alone", headersAlone, changeLast},
    {"", "blank lines in the section", blankLines, changeLast},
    {"", "a zero byte in every line", zeroBytes, changeLast},
    {"`SearchFor`", "text", wordsAndText, searchFor},
    {"", "nearly repeats itself, at every length", nearRepeats, searchFor},
    {"", "seven alike, then another", sevenAlike, searchFor},
    {"`my_strstr`", "text", wordsAndText, searchNarrow},
    {"", "nearly repeats itself, at every length", nearRepeats, searchNarrow},
    {"", "wrong next to the middle", wrongNearMiddle, searchNarrow},
    {"", "blocks that look the same in a sum", equalSums, searchNarrow},
    {"`my_wcsstr`", "text", wordsAndText, searchWide},
    {"", "nearly repeats itself, at every length", nearRepeats, searchWide},
    {"", "wrong next to the middle", wrongNearMiddle, searchWide},
    {"", "blocks that look the same in a sum", equalSums, searchWide},
    {"`TrimLeft`", "text behind 16 blanks", fewBlanks, trimLeft},
    {"", "blanks, half of it", halfBlanks, trimLeft},
    {"`RemoveCharFromString`", "a comma in 16", fewCommas, removeComma},
    {"", "every other one a comma", everyOtherComma, removeComma},
};

const Row kCommandRows[] = {
    {"secure command", "names and values", ordinaryPairs, secureCommand},
    {"", "pairs of one letter", oneLetterPairs, secureCommand},
    {"", "separators, then a pair", separators, secureCommand},
    {"", "one value of 1,023 after another", longValues, secureCommand},
};

// Processor time: what else the machine does does not count.
double now() {
  timespec time = {};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return 1e9 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec);
}

double nanoseconds(const Body& body, int times) {
  const double start = now();
  for (int i = 0; i < times; ++i) body();
  return now() - start;
}

double best(const Body& body) {
  const double once = nanoseconds(body, 1);
  const int times = once > kLeastNanoseconds ? 1 : static_cast<int>(kLeastNanoseconds / once) + 1;
  double least = once;
  for (int i = 0; i < kMeasurements; ++i) least = std::min(least, nanoseconds(body, times) / times);
  return least;
}

std::string sizeName(std::size_t size) {
  if (size >= std::size_t{1} << 20U) return std::to_string(size >> 20U) + " MiB";
  if (size % 1024 == 0) return std::to_string(size >> 10U) + " KiB";
  return std::to_string(size);
}

template <std::size_t kCount>
void printTable(const Row (&rows)[kCount], const std::vector<std::size_t>& sizes) {
  std::string line = "|---|---|";
  std::printf("| operation | input |");
  for (const std::size_t size : sizes) {
    std::printf(" %s |", sizeName(size).c_str());
    line += "---|";
  }
  std::printf("\n%s\n", line.c_str());
  for (const Row& row : rows) {
    std::printf("| %s | %s |", row.operation, row.input);
    for (const std::size_t size : sizes) {
      const std::string text = row.make(size);
      std::printf(" %.2f |", best(row.prepare(text)) / static_cast<double>(text.size()));
      std::fflush(stdout);
    }
    std::printf("\n");
  }
}

}  // namespace

int main() {
  enterSandbox();
  std::vector<std::size_t> sizes;
  for (std::size_t size = kSmallest; size <= kLargest; size *= 2) sizes.push_back(size);
  printTable(kRows, sizes);
  std::printf("\n");
  std::vector<std::size_t> commandSizes;
  for (std::size_t size = kLargestCommand / 64; size <= kLargestCommand; size *= 2)
    commandSizes.push_back(size);
  printTable(kCommandRows, commandSizes);
}
