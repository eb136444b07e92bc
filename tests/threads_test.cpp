// Eight threads in every operation that is re-entrant; meant for the thread sanitizer, too.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "support/footprint.h"
#include "support/operations.h"

extern "C" const char* __tsan_default_suppressions();

// The loader has locks that the sanitizer cannot see.
const char* __tsan_default_suppressions() {
  return "called_from_lib:ld-linux-x86-64.so.2\n";
}

namespace {

constexpr int kThreads = 8;
constexpr int kCalls = 25;

// localtime() has one result for all, and texts of failed loads meet in szErrMsg.
bool isReentrant(const Operation& operation) {
  return operation.name != "GetLocalTime" && operation.name != "ZRLoadLibrary of nothing there";
}

// Threads that list links find the port taken, those that write a profile find it gone.
bool isDisturbed(const Operation& operation) {
  return operation.name == "GetEthernetInterfacesDetails" ||
         operation.name == "GetFormattedMACAddress" ||
         operation.name == "WritePrivateProfileString";
}

// What the operation gives again and again; nothing, if that cannot be told.
std::string lastingResult(const Operation& operation) {
  Result first;
  operation.call(first);
  const Changes changes;
  Result second;
  operation.call(second);
  return changes.text().empty() && !isDisturbed(operation) ? second.text() : "";
}

void callOften(const Operation& operation, const std::string& expected, bool* isRight) {
  for (int i = 0; i < kCalls; ++i) {
    Result result;
    operation.call(result);
    *isRight = *isRight && (expected.empty() || expected == result.text());
  }
}

void callFromThreads(const Operation& operation) {
  prepare(operation);
  const std::string expected = lastingResult(operation);
  bool areRight[kThreads];
  std::fill(std::begin(areRight), std::end(areRight), true);
  std::vector<std::thread> threads;
  for (bool& isRight : areRight)
    threads.emplace_back(callOften, std::cref(operation), std::cref(expected), &isRight);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(kThreads, std::count(std::begin(areRight), std::end(areRight), true)) << operation.name;
}

// The thread sanitizer starts a thread of its own with the first one, and keeps it.
class Threads : public testing::Test {
 public:
  static void SetUpTestSuite() {
    std::thread([] {}).join();
  }
};

TEST_F(Threads, EveryReentrantOperation) {
  const int before = Footprint::take().threads;
  for (const auto* operations : {&systemOperations(), &pureOperations()})
    for (const Operation& operation : *operations)
      if (isReentrant(operation)) callFromThreads(operation);
  // A thread can be joined a moment before the kernel has done with it.
  while (Footprint::take().threads > before) std::this_thread::yield();
}

}  // namespace
