#ifndef ZRCOMMON_TESTS_SUPPORT_GUARDED_H
#define ZRCOMMON_TESTS_SUPPORT_GUARDED_H

#include <cstddef>
#include <string>

/// Bytes that end exactly where an unreadable page begins: touching one more is a crash. Filled
/// with '#' at first.
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

/// A zero-terminated copy of @p text whose terminator is the last readable byte.
class GuardedText : public Guarded {
 public:
  explicit GuardedText(const std::string& text);
};

#endif  // ZRCOMMON_TESTS_SUPPORT_GUARDED_H
