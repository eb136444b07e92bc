#include <benchmark/benchmark.h>
#include <strings.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <zrcommon/strings.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <vector>

#include "bench/contest.h"

namespace {

using Wide = unsigned short;

constexpr std::size_t kMost = 4096;

const char16_t* peer(const Wide* text) {
  return reinterpret_cast<const char16_t*>(text);
}
char16_t* peer(Wide* text) {
  return reinterpret_cast<char16_t*>(text);
}

// What the contestants of one size work on. The texts begin 2 bytes after an aligned place, as
// strings inside records do, and those of up to 256 units lie in one page.
struct Texts {
  explicit Texts(std::size_t length) : units(length) {
    std::fill_n(a, length + 1, Wide{'a'});
    std::fill_n(b, length + 1, Wide{'a'});
    std::fill_n(upper, length + 1, Wide{'A'});
    std::fill_n(narrow, length + 1, 'a');
    std::fill_n(narrowUpper, length + 1, 'A');
    std::fill_n(platform, length, L'a');
  }

  static constexpr std::size_t kPlaceBytes = 1024;

  std::size_t units;
  alignas(kPlaceBytes) Wide a[kMost + 2] = {};
  alignas(kPlaceBytes) Wide b[kMost + 2] = {};
  alignas(kPlaceBytes) Wide upper[kMost + 2] = {};
  alignas(kPlaceBytes) Wide out[kMost + 2] = {};
  alignas(kPlaceBytes) char narrow[kMost + 2] = {};
  alignas(kPlaceBytes) char narrowUpper[kMost + 2] = {};
  alignas(kPlaceBytes) wchar_t platform[kMost + 2] = {};
};

using Traits = std::char_traits<char16_t>;

template <typename Body>
auto keeping(Body body) {
  return [body] { benchmark::DoNotOptimize(body()); };
}

void enterWideReading(const Texts& t, const std::string& size) {
  const Wide* const a = t.a + 1;
  const Wide* const b = t.b + 1;
  const Wide* const upper = t.upper + 1;
  const std::size_t n = t.units;
  enter("wide length", size, "ours", keeping([=] { return my_wcslen(a); }));
  enter("wide length", size, "ICU", keeping([=] { return u_strlen(peer(a)); }));
  enter("wide length", size, "char_traits", keeping([=] { return Traits::length(peer(a)); }));
  const wchar_t* const platform = t.platform;
  enter("wide length", size, "glibc wcslen", keeping([=] { return std::wcslen(platform); }));
  enter("wide compare", size, "ours", keeping([=] { return my_wcscmp(a, b); }));
  enter("wide compare", size, "ICU", keeping([=] { return u_strcmp(peer(a), peer(b)); }));
  enter("wide compare", size, "char_traits",
        keeping([=] { return Traits::compare(peer(a), peer(b), n); }));
  enter("wide fold-compare", size, "ours", keeping([=] { return my_wcsicmp(a, upper); }));
  enter("wide find", size, "ours", keeping([=] { return my_wcschr(a, 'b'); }));
  enter("wide find", size, "ICU", keeping([=] { return u_strchr(peer(a), u'b'); }));
  enter("wide find", size, "char_traits", keeping([=] { return Traits::find(peer(a), n, u'b'); }));
}

void enterWideWriting(Texts& t, const std::string& size) {
  const Wide* const a = t.a + 1;
  Wide* const out = t.out + 1;
  enter("wide copy", size, "ours", keeping([=] { return my_wcscpy(out, a); }));
  enter("wide copy", size, "ICU", keeping([=] { return u_strcpy(peer(out), peer(a)); }));
  // To upper and to lower case, so that every letter changes every time.
  Wide* const text = t.b + 1;
  enter("wide case", size, "ours", keeping([=] { return my_wcslwr(my_wcsupr(text)); }));
}

void enterConversions(Texts& t, const std::string& size) {
  const char* const narrow = t.narrow + 1;
  const Wide* const a = t.a + 1;
  Wide* const wide = t.out + 1;
  char* const bytes = reinterpret_cast<char*>(wide);
  enter("widen", size, "ours", keeping([=] { return CopySZToWSZ(wide, narrow); }));
  enter("widen", size, "ICU", [=] {
    u_charsToUChars(narrow, peer(wide), static_cast<std::int32_t>(std::strlen(narrow)) + 1);
    benchmark::ClobberMemory();
  });
  enter("narrow", size, "ours", keeping([=] { return CopyWSZToSZ(bytes, a); }));
  enter("narrow", size, "ICU", [=] {
    u_UCharsToChars(peer(a), bytes, u_strlen(peer(a)) + 1);
    benchmark::ClobberMemory();
  });
}

void enterNarrow(const Texts& t, const std::string& size) {
  const char* const text = t.narrow + 1;
  const char* const upper = t.narrowUpper + 1;
  enter("narrow length", size, "ours", keeping([=] { return my_strlen(text); }));
  enter("narrow length", size, "glibc", keeping([=] { return std::strlen(text); }));
  enter("narrow fold-compare", size, "ours", keeping([=] { return my_stricmp(text, upper); }));
  enter("narrow fold-compare", size, "glibc strcasecmp",
        keeping([=] { return ::strcasecmp(text, upper); }));
}

// A pattern that has a middle and one that has none.
void enterSearch(std::size_t length) {
  static std::vector<std::string> texts;
  texts.reserve(8);
  std::string& text = texts.emplace_back();
  while (text.size() < length) text += "the quick brown fox jumps over the lazy dog ";
  const char* const begin = text.c_str();
  const std::string size = std::to_string(length >> 10U) + " KiB";
  for (const char* const pattern : {"lazy cats ", "lazy cats"}) {
    const std::string row = "search for \"" + std::string(pattern) + "\"";
    enter(row, size, "ours", keeping([=] { return my_strstr(begin, pattern); }));
    enter(row, size, "strstr", keeping([=] { return std::strstr(begin, pattern); }));
  }
}

}  // namespace

void enterStringRows() {
  enterFamily("Strings");
  static std::vector<Texts> texts;
  for (const std::size_t length : {8, 32, 256, 4096}) texts.emplace_back(length);
  for (Texts& each : texts) {
    const std::string size = std::to_string(each.units);
    enterWideReading(each, size);
    enterWideWriting(each, size);
    enterConversions(each, size);
    enterNarrow(each, size);
  }
  for (const std::size_t length : {1024, 65536}) enterSearch(length);
}
