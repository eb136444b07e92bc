// Eight threads in every operation that is re-entrant; meant for the thread sanitizer, too.
#include <set>
#include <thread>

#include "operations.h"
#include "support/test.h"

extern "C" const char* __tsan_default_suppressions();

// The loader has locks that the sanitizer cannot see.
const char* __tsan_default_suppressions() {
  return "called_from_lib:ld-linux-x86-64.so.2\n";
}

namespace {

// Threads that list links find the port taken, those that write a profile find it gone, and texts
// of failed loads meet in szErrMsg.
const std::set<S> kDisturbed = {"GetEthernetInterfacesDetails", "WritePrivateProfileString",
                                "ZRLoadLibrary of nothing there"};

void callOften(const Operation& operation, const S& expected, int* wrong) {
  for (int i = 0; i < 25; ++i) {
    Result result;
    operation.call(result);
    if (result.words() != expected) ++*wrong;
  }
}

TEST(Threads, EveryReentrantOperation) {
  for (const Operation& operation : operations()) {
    if (kDisturbed.count(operation.name)) continue;
    clearPlaces();
    operation.prepare();
    Result usual;
    operation.call(usual);
    int wrong[8] = {};
    std::vector<std::thread> threads;
    for (int& each : wrong)
      threads.emplace_back(callOften, std::cref(operation), usual.words(), &each);
    for (std::thread& thread : threads) thread.join();
    for (const int each : wrong) EXPECT_EQ(0, each) << operation.name;
  }
}

}  // namespace
