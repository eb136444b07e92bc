#ifndef ZRCOMMON_TESTS_SUPPORT_TEST_H
#define ZRCOMMON_TESTS_SUPPORT_TEST_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/child.h"
#include "support/files.h"
#include "support/guarded.h"

using S = std::string;
using namespace std::string_literals;

/// What a test goes through, row by row.
template <typename... Field>
using Rows = std::vector<std::tuple<Field...>>;

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

#endif  // ZRCOMMON_TESTS_SUPPORT_TEST_H
