// Every operation of the table with failing calls and without memory.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zrcommon/profile.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "operations.h"
#include "support/calls.h"
#include "support/test.h"

namespace {

struct Played {
  Calls calls;
  S outcome;
  int error = 0;
};

Files layOut(const Operation& operation) {
  clearPlaces();
  operation.prepare();
  return filesInPlaces();
}

Played play(const Operation& operation, const Fault& fault = {}) {
  const Files before = layOut(operation);
  Result result;
  Played played;
  played.calls = watch(
      [&] {
        errno = 0;
        operation.call(result);
        played.error = errno;
      },
      fault);
  played.outcome = result.text() + changesSince(before);
  return played;
}

// "write 2": the second write.
S placeOf(const std::vector<S>& calls, std::size_t at) {
  const auto end = calls.begin() + static_cast<std::ptrdiff_t>(at) + 1;
  return calls[at] + " " + std::to_string(std::count(calls.begin(), end, calls[at]));
}

S documented(const Operation& operation, const S& failure) {
  for (const auto& [name, outcome] : operation.failures)
    if (name == failure) return outcome;
  return operation.outcome;
}

// Calls after which errno is not theirs: clean-up leaves it alone, and a bind follows a failed
// socket.
bool leavesErrno(const Operation& operation, const S& call) {
  const bool isLastStep = operation.name == "WriteToLog" || operation.name == "CopyFile";
  return call == "close" || call == "socket" || (call == "chmod" && !isLastStep);
}

Played fail(const Operation& operation, const S& place, const Fault& fault) {
  const S failure = place + (fault.kind == Fault::kIsShort ? " is short" : " fails");
  const Played played = play(operation, fault);
  EXPECT_EQ(documented(operation, failure), played.outcome) << operation.name << ": " << failure;
  EXPECT_EQ(0, played.calls.descriptorsLeft) << operation.name << ": " << failure;
  return played;
}

// Even where the clean-up fails as well, errno is that of the call that made the operation fail.
void failWithCleanUp(const Operation& operation, const S& place, std::size_t at) {
  const Played played = play(operation, {Fault::kFails, at, ENOSPC, "close chmod unlink remove"});
  if (played.outcome[0] == operation.outcome[0] || place == "socket 1" ||
      operation.name == "GetZRFeaturesSetting")
    return;
  EXPECT_EQ(ENOSPC, played.error) << operation.name << ": " << place << " and the clean-up fail";
}

TEST(Robustness, EveryCallFails) {
  int faults = 0;
  for (const Operation& operation : operations()) {
    const Played usual = play(operation);
    EXPECT_EQ(operation.outcome, usual.outcome) << operation.name;
    const std::vector<S>& calls = usual.calls.names;
    for (std::size_t at = 0; at < calls.size(); ++at) {
      if (calls[at] == "sendmsg") continue;  // waits for ever for the answer
      const S place = placeOf(calls, at);
      for (const int error : {EINTR, EIO}) {
        const Played played = fail(operation, place, {Fault::kFails, at, error});
        const int expected = leavesErrno(operation, calls[at]) ? played.error : error;
        EXPECT_EQ(expected, played.error) << operation.name << ": " << place;
      }
      failWithCleanUp(operation, place, at);
      faults += 3;
      if (calls[at] != "read" && calls[at] != "write") continue;
      fail(operation, place, {Fault::kIsShort, at});
      if (calls[at] == "write") fail(operation, place, {Fault::kWritesNothing, at});
      faults += 2;
    }
  }
  std::printf("%d faults\n", faults);
}

long heapBytes() {
  return static_cast<long>(::mallinfo2().uordblks);
}

// False if there is no such allocation.
bool runShort(const Operation& operation, int allocation) {
  const Files before = layOut(operation);
  Result result;
  const auto runOnce = [&] {
    return runShortOfMemory(allocation, [&] { operation.call(result); });
  };
  const bool wasReached = runOnce();
  const S outcome = result.text() + changesSince(before);
  const bool isUsual = outcome == operation.outcome;
  EXPECT_EQ(isUsual ? outcome : documented(operation, "no memory"), outcome)
      << operation.name << " without allocation " << allocation;
  runOnce();
  const long heap = heapBytes();
  runOnce();
  EXPECT_GE(heap, heapBytes()) << operation.name << " leaks without allocation " << allocation;
  return wasReached;
}

TEST(Robustness, EveryAllocationFails) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer has allocation functions of its own";
#endif
  int allocations = 0;
  for (const Operation& operation : operations())
    for (int allocation = 0; runShort(operation, allocation); ++allocation) ++allocations;
  std::printf("%d failed allocations\n", allocations);
}

TEST(Robustness, TheHeapDoesNotGrow) {
  for (const Operation& operation : operations()) {
    layOut(operation);
    Result result;
    const auto callOften = [&] {
      for (int i = 0; i < 20; ++i) operation.call(result);
    };
    callOften();
    const long heap = heapBytes();
    callOften();
    EXPECT_EQ(heap, heapBytes()) << operation.name;
  }
}

// The profile that a writer leaves which ends before one of its calls: the old one or, under the
// copy's name, the new one, whole.
TEST(Robustness, AWriterThatEndsLeavesAWholeProfile) {
  const S path = kScratch + "p", filler(40000, '\n'), before = "[s]\nkey=1\n" + filler;
  const auto write = [&] {
    unsigned int error = 0;
    WritePrivateProfileString("s", "key", "new", path.c_str(), &error);
  };
  putFile(path, before);
  const std::size_t calls = watch(write).names.size();
  for (std::size_t at = 0; at < calls; ++at) {
    putFile(path, before);
    const pid_t child = ::fork();
    if (child == 0) watch(write, {Fault::kEndsTheProcess, at}), ::_exit(1);
    int status = 1;
    EXPECT_EQ(child, ::waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    const bool isOld = isThere(path);
    EXPECT_TRUE(getFile(isOld ? path : path + ".tmp") ==
                (isOld ? before : "[s]\nkey=new\n" + filler))
        << "before call " << at;
  }
  EXPECT_FALSE(isThere(path)) << "the last call renames the copy";
}

}  // namespace
