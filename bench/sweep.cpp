// Measures how the cost of an operation grows with its input, and what the input can do to it.
// Prints a line for each measurement: operation, input, size and nanoseconds per byte, separated
// by tabs. Progress goes to standard error. Where the time per byte stays level, the cost is
// proportional to the size.
#include <zrcommon/codecs.h>
#include <zrcommon/profile.h>
#include <zrcommon/strings.h>
#include <zrcommon/system.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <vector>

#include "bench/measure.h"
#include "bench/sandbox.h"
#include "bench/sweep_inputs.h"

namespace {

using Body = std::function<void()>;

constexpr std::size_t kSmallest = std::size_t{4} << 10U;
constexpr std::size_t kLargest = std::size_t{4} << 20U;
constexpr std::size_t kLargestCommand = 5119;

struct Row {
  const char* operation;
  const char* input;
  std::string (*make)(std::size_t size);
  Body (*prepare)(const std::string& text);
};

volatile bool g_sink;  // keeps the compiler from removing work whose result is not used

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

// The text follows the pattern, with a line feed between them.
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

// The next two change their text, so each repetition makes a copy, whose time counts too.
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
    {"read a string", "one large section", oneSection, readString},
    {"read a string", "headers alone", headersAlone, readString},
    {"read a string", "headers without an end", openHeaders, readString},
    {"read a string", "blank lines in the section", blankLines, readString},
    {"read a string", "long lines of blanks", blankPieces, readString},
    {"read a number", "many sections", ordinaryProfile, readNumber},
    {"read a number", "blank lines in the section", blankLines, readNumber},
    {"change a value", "many sections", ordinaryProfile, changeLast},
    {"change a value", "one large section", oneSection, changeLast},
    {"change a value", "headers alone", headersAlone, changeLast},
    {"change a value", "blank lines in the section", blankLines, changeLast},
    {"change a value", "a zero byte in every line", zeroBytes, changeLast},
    {"SearchFor", "text", wordsAndText, searchFor},
    {"SearchFor", "nearly repeats itself, at every length", nearRepeats, searchFor},
    {"SearchFor", "seven alike, then another", sevenAlike, searchFor},
    {"my_strstr", "text", wordsAndText, searchNarrow},
    {"my_strstr", "nearly repeats itself, at every length", nearRepeats, searchNarrow},
    {"my_strstr", "wrong next to the middle", wrongNearMiddle, searchNarrow},
    {"my_strstr", "blocks that look the same in a sum", equalSums, searchNarrow},
    {"my_wcsstr", "text", wordsAndText, searchWide},
    {"my_wcsstr", "nearly repeats itself, at every length", nearRepeats, searchWide},
    {"my_wcsstr", "wrong next to the middle", wrongNearMiddle, searchWide},
    {"my_wcsstr", "blocks that look the same in a sum", equalSums, searchWide},
    {"TrimLeft", "text after 16 blanks", fewBlanks, trimLeft},
    {"TrimLeft", "half blanks", halfBlanks, trimLeft},
    {"RemoveCharFromString", "one byte in 16 is a comma", fewCommas, removeComma},
    {"RemoveCharFromString", "every other byte is a comma", everyOtherComma, removeComma},
};

const Row kCommandRows[] = {
    {"secure command", "names and values", ordinaryPairs, secureCommand},
    {"secure command", "pairs of one letter", oneLetterPairs, secureCommand},
    {"secure command", "separators, then a pair", separators, secureCommand},
    {"secure command", "values of 1,023 bytes", longValues, secureCommand},
};

template <std::size_t kCount>
void measure(const Row (&rows)[kCount], std::size_t smallest, std::size_t largest) {
  for (const Row& row : rows) {
    std::fprintf(stderr, "%s, %s\n", row.operation, row.input);
    for (std::size_t size = smallest; size <= largest; size *= 2) {
      const std::string text = row.make(size);
      const double time = leastTimes({callsOf(row.prepare(text))}).front();
      const double perByte = time / static_cast<double>(text.size());
      std::printf("%s\t%s\t%zu\t%.3f\n", row.operation, row.input, size, perByte);
    }
  }
}

}  // namespace

int main() {
  enterSandbox();
  measure(kRows, kSmallest, kLargest);
  measure(kCommandRows, kLargestCommand / 64, kLargestCommand);
}
