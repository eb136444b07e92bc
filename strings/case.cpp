#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>

#include "strings/length.h"
#include "zrcommon/strings.h"

using namespace zrcommon;

namespace {

constexpr unsigned int kLetters = 26;
constexpr unsigned char kCaseBit = 0x20;
constexpr std::size_t kBlockBytes = 64;

template <typename Unit>
Unit caseBit(Unit unit, Unit firstLetter) {
  return static_cast<Unit>(unit - firstLetter) < kLetters ? kCaseBit : 0;
}

// Nothing is stored if nothing changes: text without such letters may lie in read-only memory.
template <typename Unit>
void changeBlock(Unit* text, Unit firstLetter) {
  constexpr std::size_t kUnits = kBlockBytes / sizeof(Unit);
  Unit changed[kUnits];
  Unit changes = 0;
  for (std::size_t i = 0; i < kUnits; ++i) {
    const Unit change = caseBit(text[i], firstLetter);
    changed[i] = text[i] ^ change;
    changes |= change;
  }
  if (changes) std::memcpy(text, changed, sizeof changed);
}

// Changes the case of the 26 letters from firstLetter on.
template <typename Unit>
void changeCase(Unit* text, std::size_t length, Unit firstLetter) {
  constexpr std::size_t kUnits = kBlockBytes / sizeof(Unit);
  for (; length >= kUnits; text += kUnits, length -= kUnits) changeBlock(text, firstLetter);
  for (; length > 0; ++text, --length)
    if (const Unit change = caseBit(*text, firstLetter)) *text ^= change;
}

char* changeCase(char* text, unsigned char firstLetter) {
  if (text) changeCase(reinterpret_cast<unsigned char*>(text), lengthOf(text), firstLetter);
  return text;
}

WideUnit* changeCase(WideUnit* text, unsigned char firstLetter) {
  if (text) changeCase(text, lengthOf(text), WideUnit{firstLetter});
  return text;
}

constexpr std::array<std::int32_t, 256> makeAsciiUpper() {
  std::array<std::int32_t, 256> upper = {};
  for (std::int32_t byte = 0; byte < 256; ++byte)
    upper[static_cast<std::size_t>(byte)] = byte >= 'a' && byte <= 'z' ? byte - kCaseBit : byte;
  return upper;
}
constexpr std::array<std::int32_t, 256> kAsciiUpper = makeAsciiUpper();

}  // namespace

char* My_StrLwr(char* text) {
  return changeCase(text, 'A');
}

char* My_StrUpr(char* text) {
  return changeCase(text, 'a');
}

char* my_strupr(char* text) {
  return My_StrUpr(text);
}

unsigned short* my_wcslwr(unsigned short* text) {
  return changeCase(text, 'A');
}

unsigned short* my_wcsupr(unsigned short* text) {
  return changeCase(text, 'a');
}

// toupper() is a look-up in the table of the locale. If that table changes only the letters of
// ASCII, as in most locales, the vectorised loops do the same. For a short text, the look-ups cost
// less than the comparison of the tables.
int strUpr(char* text, int length) {
  if (length <= 0) return 1;
  auto* const bytes = reinterpret_cast<unsigned char*>(text);
  const std::int32_t* const upper = *::__ctype_toupper_loc();
  if (length >= static_cast<int>(kBlockBytes) &&
      std::memcmp(upper, kAsciiUpper.data(), sizeof kAsciiUpper) == 0)
    changeCase(bytes, static_cast<std::size_t>(length), static_cast<unsigned char>('a'));
  else
    std::for_each(bytes, bytes + length, [upper](unsigned char& byte) {
      if (const auto changed = static_cast<unsigned char>(upper[byte]); changed != byte)
        byte = changed;
    });
  return 1;
}
