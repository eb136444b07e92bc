// Runs a program's tests in the sandbox, each on empty places.
#include <gtest/gtest.h>
#include <link.h>

#include <filesystem>

#include "support/files.h"
#include "support/sandbox.h"

namespace {

int countEntries(const char* directory) {
  const std::filesystem::directory_iterator entries(directory);
  return static_cast<int>(std::distance(begin(entries), end(entries)));
}

int countModules() {
  int count = 0;
  const auto countOne = [](dl_phdr_info*, std::size_t, void* counter) {
    ++*static_cast<int*>(counter);
    return 0;
  };
  ::dl_iterate_phdr(countOne, &count);
  return count;
}

// Fails every test that leaves a descriptor or a loaded module behind.
class CleanTests : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo&) override {
    clearPlaces();
    descriptors_ = countEntries("/proc/self/fd");
    modules_ = countModules();
  }
  void OnTestEnd(const testing::TestInfo&) override {
    EXPECT_EQ(descriptors_, countEntries("/proc/self/fd")) << "descriptors left open";
    EXPECT_EQ(modules_, countModules()) << "modules left loaded";
  }

 private:
  int descriptors_ = 0;
  int modules_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  enterSandbox();
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new CleanTests);
  return RUN_ALL_TESTS();
}
