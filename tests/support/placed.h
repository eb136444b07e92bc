#ifndef ZRCOMMON_TESTS_SUPPORT_PLACED_H
#define ZRCOMMON_TESTS_SUPPORT_PLACED_H

#include <cstring>
#include <string>

#include "support/guarded.h"

using Wide = unsigned short;

inline std::basic_string<char16_t> widened(const std::string& text) {
  return {text.begin(), text.end()};
}

/// A zero-terminated copy of a string of bytes or wide units, so many units of '#' before an
/// unreadable page. Different lengths begin at different alignments.
template <typename Char>
class Placed : public Guarded {
 public:
  using Unit = std::conditional_t<sizeof(Char) == 1, char, Wide>;

  explicit Placed(const std::basic_string<Char>& text, std::size_t behind = 0)
      : Guarded((text.size() + 1 + behind) * sizeof(Char)) {
    std::memcpy(data(), text.c_str(), (text.size() + 1) * sizeof(Char));
  }
  Unit* get() { return data<Unit>(); }

  /// What is there now, up to the terminator.
  std::basic_string<Char> text() { return reinterpret_cast<Char*>(get()); }
};

#endif  // ZRCOMMON_TESTS_SUPPORT_PLACED_H
