#include "support/footprint.h"

#include <dirent.h>
#include <link.h>

namespace {

int countEntries(const char* directory) {
  int count = 0;
  DIR* entries = ::opendir(directory);
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

}  // namespace

Footprint Footprint::take() {
  return {countEntries("/proc/self/fd"), countEntries("/proc/self/task"), countModules()};
}

void FootprintCheck::OnTestStart(const testing::TestInfo&) {
  before_ = Footprint::take();
}

void FootprintCheck::OnTestEnd(const testing::TestInfo&) {
  const Footprint after = Footprint::take();
  EXPECT_EQ(before_.descriptors, after.descriptors) << "descriptors left open";
  EXPECT_EQ(before_.threads, after.threads) << "threads left running";
  EXPECT_EQ(before_.modules, after.modules) << "modules left loaded";
}
