#ifndef ZRCOMMON_TESTS_SUPPORT_DICE_H
#define ZRCOMMON_TESTS_SUPPORT_DICE_H

#include <cstddef>
#include <random>

/// Chance that falls the same way in every run.
class Dice {
 public:
  std::size_t below(std::size_t count) { return engine_() % count; }

  template <typename String>
  String text(std::size_t length, const String& alphabet) {
    String result;
    while (result.size() < length) result.push_back(alphabet[below(alphabet.size())]);
    return result;
  }

 private:
  std::mt19937 engine_{20240229};
};

#endif  // ZRCOMMON_TESTS_SUPPORT_DICE_H
