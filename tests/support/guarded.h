#ifndef ZRCOMMON_TESTS_SUPPORT_GUARDED_H
#define ZRCOMMON_TESTS_SUPPORT_GUARDED_H

#include <cstring>
#include <string>
#include <type_traits>

/// Bytes between two unreadable pages. They are '#' at first, like the readable bytes around them,
/// which must stay so. They end @p after bytes before the second unreadable page; with kAtStart
/// they begin directly after the first one.
class Guarded {
 public:
  static constexpr std::size_t kAtStart = 4096;

  explicit Guarded(std::size_t size, std::size_t after = 0);
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
  std::size_t size_;
  std::size_t readableBytes_;
  char* readable_;
  char* data_;
};

/// A zero-terminated copy of a string of bytes or of 16-bit units.
template <typename Char>
class GuardedString : public Guarded {
 public:
  using Unit = std::conditional_t<sizeof(Char) == 1, char, unsigned short>;

  explicit GuardedString(const std::basic_string<Char>& text, std::size_t unitsAfter = 0)
      : Guarded((text.size() + 1) * sizeof(Char), unitsAfter * sizeof(Char)) {
    std::memcpy(data(), text.c_str(), size());
  }
  Unit* get() { return data<Unit>(); }

  /// The text at present, without its terminator.
  std::basic_string<Char> text() { return data<Char>(); }
};

using GuardedText = GuardedString<char>;
using GuardedUnits = GuardedString<char16_t>;

#endif  // ZRCOMMON_TESTS_SUPPORT_GUARDED_H
