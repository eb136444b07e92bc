#include <dirent.h>
#include <gtest/gtest.h>
#include <link.h>

#include <array>

#include "support/sandbox.h"

namespace {

int countEntries(const char* directory) {
  int count = 0;
  DIR* const entries = ::opendir(directory);
  while (::readdir(entries)) ++count;
  ::closedir(entries);
  return count;
}

int countModules() {
  int count = 0;
  ::dl_iterate_phdr(
      [](dl_phdr_info*, std::size_t, void* counter) { return ++*static_cast<int*>(counter), 0; },
      &count);
  return count;
}

// Fails every test that leaves a descriptor, a thread or a loaded module behind.
class FootprintCheck : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override { before_ = take(); }
  void OnTestEnd(const testing::TestInfo&) override {
    EXPECT_EQ(before_, take()) << "left behind: descriptors, threads, modules";
  }

 private:
  using Footprint = std::array<int, 3>;
  static Footprint take() {
    return {countEntries("/proc/self/fd"), countEntries("/proc/self/task"), countModules()};
  }

  Footprint before_ = {};
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  enterSandbox();
  testing::UnitTest::GetInstance()->listeners().Append(new FootprintCheck);
  return RUN_ALL_TESTS();
}
