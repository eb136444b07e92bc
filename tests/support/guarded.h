#ifndef ZRCOMMON_TESTS_SUPPORT_GUARDED_H
#define ZRCOMMON_TESTS_SUPPORT_GUARDED_H

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <string>
#include <type_traits>

/// Bytes between two unreadable pages. The readable bytes around them are '?' and must stay so.
class Guarded {
 public:
  /// @param after  readable bytes before the second unreadable page; a page or more puts the bytes
  ///               directly after the first one
  explicit Guarded(const std::string& bytes, std::size_t after = 0) : size_(bytes.size()) {
    if (after >= kPage) after = (kPage - size_ % kPage) % kPage;
    readableBytes_ = (size_ + after + kPage - 1) / kPage * kPage;
    void* const mapping =
        ::mmap(nullptr, readableBytes_ + 2 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    readable_ = static_cast<char*>(mapping) + kPage;
    EXPECT_EQ(0, ::mprotect(readable_, readableBytes_, PROT_READ | PROT_WRITE));
    data_ = readable_ + readableBytes_ - after - size_;
    std::fill_n(readable_, readableBytes_, '?');
    bytes.copy(data_, size_);
  }
  explicit Guarded(std::size_t size) : Guarded(std::string(size, '#')) {}
  ~Guarded() {
    std::fill_n(data_, size_, '?');
    const std::string all(readable_, readableBytes_);
    EXPECT_EQ(all.npos, all.find_first_not_of('?'))
        << "a byte beside the " << size_ << " was written";
    ::munmap(readable_ - kPage, readableBytes_ + 2 * kPage);
  }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  template <typename Unit = char>
  Unit* data() {
    return reinterpret_cast<Unit*>(data_);
  }
  std::size_t size() const { return size_; }
  std::string bytes() const { return std::string(data_, size_); }

 private:
  static constexpr std::size_t kPage = 4096;

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
