#ifndef ZRCOMMON_TESTS_PROPERTIES_H
#define ZRCOMMON_TESTS_PROPERTIES_H

#include <map>
#include <string>

/// Bytes of any kind, from which a property takes its arguments. They are random in the tests and
/// come from the fuzzer in fuzz/. After the last one all are zero.
class Input {
 public:
  explicit Input(const std::string& bytes) : bytes_(bytes) {}

  std::size_t below(std::size_t end) { return (next() << 8 | next()) % end; }
  bool isOneIn(std::size_t count) { return below(count) == 0; }

  /// Up to @p most characters of an alphabet.
  template <typename Text>
  Text text(std::size_t most, const Text& alphabet) {
    Text result;
    for (std::size_t length = below(most + 1); length > 0; --length)
      result += alphabet[next() % alphabet.size()];
    return result;
  }

 private:
  std::size_t next() {
    return at_ < bytes_.size() ? static_cast<unsigned char>(bytes_[at_++]) : std::size_t{0};
  }

  std::string bytes_;
  std::size_t at_ = 0;
};

/// What holds for any input, by name. Files are made in the current directory.
extern const std::map<std::string, void (*)(Input&)> kProperties;

#endif  // ZRCOMMON_TESTS_PROPERTIES_H
