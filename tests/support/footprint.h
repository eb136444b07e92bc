#ifndef ZRCOMMON_TESTS_SUPPORT_FOOTPRINT_H
#define ZRCOMMON_TESTS_SUPPORT_FOOTPRINT_H

#include <gtest/gtest.h>

/// What the process holds of the system: a test must leave it as it found it.
struct Footprint {
  int descriptors = 0;
  int threads = 0;
  int modules = 0;

  static Footprint take();
};

/// Fails every test that leaves a descriptor, a thread or a loaded module behind.
class FootprintCheck : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& info) override;
  void OnTestEnd(const testing::TestInfo& info) override;

 private:
  Footprint before_;
};

#endif  // ZRCOMMON_TESTS_SUPPORT_FOOTPRINT_H
