// In a process of its own: the loader remembers which search directories were missing.
#include <zrcommon/system.h>

#include "support/test.h"

namespace {

TEST(BareName, IsFoundInTheInstallationDirectory) {
  EXPECT_EQ(nullptr, ZRLoadLibrary("libbare.so"));
  std::filesystem::copy_file(ZR_BUILD_DIR "/tests/libplain_module.so",
                             "/usr/lib/Valdrix/Valdrix/libbare.so");
  void* const module = ZRLoadLibrary("libbare.so");
  EXPECT_NE(nullptr, module);
  ZRFreeLibrary(module);
}

}  // namespace
