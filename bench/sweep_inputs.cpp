#include "bench/sweep_inputs.h"

#include <algorithm>
#include <utility>

namespace {

const std::string kLastEntry = "\n[last]\nkey=value\n";

// The piece repeated as often as it fits.
std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  while (text.size() + piece.size() <= size) text += piece;
  return text;
}

std::string numbered(const std::string& before, int number) {
  return before + std::to_string(number);
}

// 2048 letters, and the same with a and b exchanged: a hash that sums powers of an odd number
// modulo a power of two is the same for both.
std::string block(bool isExchanged) {
  std::string text;
  for (unsigned int i = 0; i < 2048; ++i)
    text += (__builtin_parity(i) != 0) != isExchanged ? 'b' : 'a';
  return text;
}

}  // namespace

std::string ordinaryProfile(std::size_t size) {
  std::string text;
  for (int section = 0; text.size() + 600 < size; ++section) {
    text += "# settings of this part\n" + numbered("[section", section) + "]\n";
    for (int key = 10; key < 30; ++key) text += numbered("setting", key) + "=some value\n";
  }
  return text + kLastEntry;
}

std::string oneSection(std::size_t size) {
  return "[last]\n" + repeated("setting=some value\n", size) + "key=value\n";
}

std::string headersAlone(std::size_t size) {
  return repeated("[]\n", size) + kLastEntry;
}

std::string openHeaders(std::size_t size) {
  return repeated("[\n", size) + kLastEntry;
}

std::string blankLines(std::size_t size) {
  return "[last]" + std::string(size, '\n') + "key=value\n";
}

std::string shortComments(std::size_t size) {
  return "[last]\n" + repeated(";\n", size) + "key=value\n";
}

std::string blankPieces(std::size_t size) {
  return repeated(std::string(1021, ' ') + "x[", size) + kLastEntry;
}

std::string zeroBytes(std::size_t size) {
  return repeated(std::string("\0\n", 2), size) + kLastEntry;
}

std::string wordsAndText(std::size_t size) {
  return "the pattern that never comes!\n" +
         repeated("some words of an ordinary text, and then a few more of them; ", size);
}

// Words that nearly repeat themselves at every length.
std::string nearRepeats(std::size_t size) {
  std::string shorter = "b";
  std::string word = "a";
  while (word.size() < size) shorter = std::exchange(word, word + shorter);
  std::string pattern = word.substr(0, size / 8 | 1U);
  pattern.back() = pattern.back() == 'a' ? 'b' : 'a';
  return pattern + "\n" + word.substr(0, size - pattern.size());
}

std::string sevenAlike(std::size_t size) {
  return repeated("aaaaaaab", 64) + "aaaaaaaab\n" + repeated("aaaaaaab", size);
}

std::string wrongNearMiddle(std::size_t size) {
  const std::string half(size / 8, 'a');
  return half + "bXa" + half + "\n" + std::string(size - size / 4, 'a');
}

std::string equalSums(std::size_t size) {
  const std::string blocks = repeated(block(false) + "c", size / 8);
  return blocks + block(true) + "X" + blocks + block(false) + "\n" +
         repeated(block(false) + "c", size - size / 4);
}

std::string fewBlanks(std::size_t size) {
  return std::string(16, ' ') + std::string(size - 16, 'x');
}

std::string halfBlanks(std::size_t size) {
  return std::string(size / 2, ' ') + std::string(size / 2, 'x');
}

std::string fewCommas(std::size_t size) {
  return repeated("fifteen letters,", size);
}

std::string everyOtherComma(std::size_t size) {
  return repeated("a,", size);
}

std::string ordinaryPairs(std::size_t size) {
  return repeated("setting=some value&", size);
}

std::string oneLetterPairs(std::size_t size) {
  return repeated("a&", size);
}

std::string separators(std::size_t size) {
  return std::string(size - 3, '&') + "a=b";
}

std::string longValues(std::size_t size) {
  std::string text;
  while (text.size() + 3 < size)
    text += "a=" + std::string(std::min<std::size_t>(1023, size - text.size() - 3), 'v') + "&";
  return text;
}
