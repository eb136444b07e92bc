#ifndef ZRCOMMON_TESTS_SUPPORT_GUARDED_H
#define ZRCOMMON_TESTS_SUPPORT_GUARDED_H

#include <cstddef>
#include <cstring>
#include <string>

/// Bytes that end exactly where an unreadable page begins: touching one more is a crash. Filled
/// with '#' at first. Different sizes begin at different alignments.
class Guarded {
 public:
  explicit Guarded(std::size_t size);
  ~Guarded();
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  template <typename Unit = char>
  Unit* data() {
    return reinterpret_cast<Unit*>(data_);
  }
  std::size_t size() const { return size_; }
  std::string bytes() const { return std::string(data_, size_); }

 private:
  char* mapping_;
  std::size_t mappedBytes_;
  char* data_;
  std::size_t size_;
};

/// A zero-terminated copy of a string of bytes or 16-bit units, so many units of '#' before an
/// unreadable page.
template <typename Char>
class GuardedString : public Guarded {
 public:
  using Unit = std::conditional_t<sizeof(Char) == 1, char, unsigned short>;

  GuardedString(const std::basic_string<Char>& text, std::size_t behind = 0)
      : Guarded((text.size() + 1 + behind) * sizeof(Char)) {
    std::memcpy(data(), text.c_str(), (text.size() + 1) * sizeof(Char));
  }
  Unit* get() { return data<Unit>(); }

  /// What is there now, up to the terminator.
  std::basic_string<Char> text() { return data<Char>(); }
};

using GuardedText = GuardedString<char>;
using GuardedUnits = GuardedString<char16_t>;

#endif  // ZRCOMMON_TESTS_SUPPORT_GUARDED_H
