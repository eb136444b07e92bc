// Runs a program's tests, each on empty places.
#include <gtest/gtest.h>
#include <link.h>

#include <cstdlib>
#include <filesystem>

#include "support/files.h"

namespace {

// The open descriptors and the loaded modules.
std::string holdings() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  const auto countModule = [](dl_phdr_info*, std::size_t, void* count) {
    ++*static_cast<int*>(count);
    return 0;
  };
  int modules = 0;
  ::dl_iterate_phdr(countModule, &modules);
  return std::to_string(std::distance(begin(descriptors), end(descriptors))) + " descriptors, " +
         std::to_string(modules) + " modules";
}

class CleanTests : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    clearPlaces();
    before_ = holdings();
  }
  void OnTestEnd(const testing::TestInfo&) override {
    EXPECT_EQ(before_, holdings()) << "the test leaves something open";
  }
  std::string before_;
};

}  // namespace

int main(int argc, char** argv) {
  if (!std::getenv("ZRCOMMON_SANDBOX")) {
    std::fprintf(stderr, "%s: run me with tools/sandbox.sh --own-network\n", argv[0]);
    return 3;
  }
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new CleanTests);
  return RUN_ALL_TESTS();
}
