#include <gtest/gtest.h>

#include "support/footprint.h"
#include "support/sandbox.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  enterSandbox();
  testing::UnitTest::GetInstance()->listeners().Append(new FootprintCheck);
  return RUN_ALL_TESTS();
}
