#ifndef ZRCOMMON_TESTS_SUPPORT_TEST_H
#define ZRCOMMON_TESTS_SUPPORT_TEST_H

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/files.h"
#include "support/guarded.h"

using S = std::string;
using namespace std::string_literals;

/// What a test goes through, row by row.
template <typename... Field>
using Rows = std::vector<std::tuple<Field...>>;

/// A record as it stands in memory.
template <typename Record>
S bytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

#endif  // ZRCOMMON_TESTS_SUPPORT_TEST_H
