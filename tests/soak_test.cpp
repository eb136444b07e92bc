// Calls every operation again and again and looks whether the process grows: briefly as a test, for
// long as scripts/soak sets it.
#include <cxxabi.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <zrcommon/strings.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "support/child.h"
#include "support/files.h"
#include "support/footprint.h"
#include "support/operations.h"

namespace {

using Clock = std::chrono::steady_clock;

// Files are laid out anew from time to time: logs grow.
constexpr long kCallsBetweenLayouts = 10000;
constexpr long kSomeCalls = 200;

long setting(const char* name, long usual) {
  const char* const text = std::getenv(name);
  return text ? std::strtol(text, nullptr, 10) : usual;
}

struct Process {
  Process() : heapBytes(static_cast<long>(::mallinfo2().uordblks)), held(Footprint::take()) {
    long programPages = 0;
    std::ifstream("/proc/self/statm") >> programPages >> residentPages;
  }
  long residentPages = 0;
  long heapBytes;
  Footprint held;
};

long callFor(const Operation& operation, long calls, std::chrono::milliseconds most) {
  const Clock::time_point end = Clock::now() + most;
  long made = 0;
  for (; made < calls && Clock::now() < end; ++made) {
    if (made % kCallsBetweenLayouts == 0) prepare(operation);
    Result result;
    operation.call(result);
  }
  return made;
}

void soak(const Operation& operation) {
  const long calls = setting("ZRCOMMON_SOAK_CALLS", 2000);
  const std::chrono::milliseconds most(setting("ZRCOMMON_SOAK_MILLISECONDS", 30));
  callFor(operation, kSomeCalls, most);
  const Process before;
  const long made = callFor(operation, calls, most);
  const Process after;
  std::printf("%9ld calls, heap %+ld bytes, resident %+ld pages, descriptors %+d: %s\n", made,
              after.heapBytes - before.heapBytes, after.residentPages - before.residentPages,
              after.held.descriptors - before.held.descriptors, operation.name.c_str());
  std::fflush(stdout);
  EXPECT_GT(4096, after.heapBytes - before.heapBytes) << operation.name;
  EXPECT_GT(64, after.residentPages - before.residentPages) << operation.name;
  EXPECT_EQ(before.held.descriptors, after.held.descriptors) << operation.name;
  EXPECT_EQ(before.held.modules, after.held.modules) << operation.name;
}

TEST(Soak, NothingGrows) {
  for (const auto* operations : {&systemOperations(), &pureOperations()})
    for (const Operation& operation : *operations) soak(operation);
}

TEST(Soak, TheLibraryComesAndGoesAThousandTimes) {
  const std::string copy = "/scratch/plugin.so";
  std::filesystem::copy_file(ZR_BUILD_DIR "/libzrcommon.so.1", copy);
  const auto loadOnce = [&] {
    void* const library = ::dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(nullptr, library) << ::dlerror();
    const auto length = reinterpret_cast<decltype(&my_strlen)>(::dlsym(library, "my_strlen"));
    EXPECT_NE(&my_strlen, length) << "this is to be a library of its own";
    EXPECT_EQ(3U, length("abc"));
    EXPECT_EQ(0, ::dlclose(library));
  };
  loadOnce();
  const std::string mapped = getFile("/proc/self/maps");
  for (int i = 0; i < 1000; ++i) loadOnce();
  EXPECT_EQ(mapped, getFile("/proc/self/maps"));
}

// "CCrypt::Encrypt" for any spelling of it.
std::string plainName(const std::string& exported) {
  int status = 0;
  char* const readable = abi::__cxa_demangle(exported.c_str(), nullptr, nullptr, &status);
  const std::string name = readable ? readable : exported;
  std::free(readable);
  return name.substr(0, name.find('('));
}

TEST(Soak, NoOperationIsLeftOut) {
  std::set<std::string> called = {"g_dwCurrentTraceLevel__", "g_szAppName__", "g_szLogFileName__",
                                  "g_szLogPath", "szErrMsg"};
  for (const auto* operations : {&systemOperations(), &pureOperations()})
    for (const Operation& operation : *operations)
      called.insert(operation.name.substr(0, operation.name.find(' ')));
  std::istringstream exported(run({ZR_SOURCE_DIR "/abi/names"}).out);
  for (std::string name; exported >> name;)
    EXPECT_EQ(1U, called.count(plainName(name))) << name << " is not called";
}

}  // namespace
