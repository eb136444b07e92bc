#ifndef ZRCOMMON_FUZZ_SUPPORT_H
#define ZRCOMMON_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>

/// What libFuzzer calls with every input it makes up.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// An input, taken apart from its front. Arguments stand in lines, so that seeds can be text; what
/// is taken beyond the end is empty, or 0.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : left_(reinterpret_cast<const char*>(data), size) {}

  /// What comes before the next line feed, which goes too.
  std::string line();

  /// The decimal number in the next line, cut to 32 bits.
  int number();

  /// The number, brought into 0 to @p most.
  unsigned int numberUpTo(unsigned int most) {
    return static_cast<unsigned int>(number()) % (most + 1);
  }

  std::string take(std::size_t count);
  std::string rest() { return take(left_.size()); }

 private:
  std::string left_;
};

/// Ends the run, with the input as a finding, unless @p holds.
void expect(bool holds, const char* what);

/// The text up to its first zero, as functions see it that take terminated text.
inline std::string visible(const std::string& text) {
  return text.c_str();
}

/// Memory that ends where an unreadable page begins.
class PageEnd {
 public:
  PageEnd();
  PageEnd(const PageEnd&) = delete;
  PageEnd& operator=(const PageEnd&) = delete;

  /// Copies the text and its terminator so that the terminator is the last readable unit.
  const char* put(const std::string& text) { return putMemory(text.c_str(), text.size() + 1); }
  const unsigned short* put(const std::u16string& text);

  /// Copies the bytes alone.
  const char* putBytes(const std::string& bytes) { return putMemory(bytes.data(), bytes.size()); }

 private:
  const char* putMemory(const void* bytes, std::size_t size);

  static constexpr std::size_t kBytes = std::size_t{1} << 20U;
  char* end_;
};

void putFile(const std::string& path, const std::string& content);
std::string getFile(const std::string& path);

#endif  // ZRCOMMON_FUZZ_SUPPORT_H
