#ifndef ZRCOMMON_TESTS_SUPPORT_GUARDED_H
#define ZRCOMMON_TESTS_SUPPORT_GUARDED_H

#include <cstring>
#include <string>
#include <type_traits>

/// Bytes between two unreadable pages. The readable bytes around them are '#' and must stay so.
class Guarded {
 public:
  /// @param after  readable bytes before the second unreadable page; a page or more puts the bytes
  ///               directly after the first one
  explicit Guarded(const std::string& bytes, std::size_t after = 0);
  explicit Guarded(std::size_t size) : Guarded(std::string(size, '#')) {}
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
      : Guarded({reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(Char)},
                unitsAfter * sizeof(Char)) {}
  Unit* get() { return data<Unit>(); }

  /// The text at present, without its terminator.
  std::basic_string<Char> text() { return data<Char>(); }
};

using GuardedText = GuardedString<char>;
using GuardedUnits = GuardedString<char16_t>;

#endif  // ZRCOMMON_TESTS_SUPPORT_GUARDED_H
