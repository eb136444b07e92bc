// Every operation of the table with failing calls and without memory.
#include <malloc.h>
#include <sys/wait.h>
#include <zrcommon/profile.h>

#include "operations.h"
#include "support/calls.h"
#include "support/test.h"

namespace {

struct Played {
  Calls calls;
  S outcome;
  int error = 0;
};

Played play(const Operation& operation, const Fault& fault = {}) {
  clearPlaces();
  operation.prepare();
  const Files before = filesInPlaces();
  Result result;
  Played played;
  const auto call = [&] {
    errno = 0;
    operation.call(result);
    played.error = errno;
  };
  played.calls = watch(call, fault);
  played.outcome = result.words() + changesSince(before);
  return played;
}

S documented(const Operation& operation, const S& failure) {
  const auto found = operation.failures.find(failure);
  return found == operation.failures.end() ? operation.outcome : found->second;
}

// Calls after which errno is not theirs: clean-up leaves it alone, and a bind follows a failed
// socket.
bool leavesErrno(const Operation& operation, const S& call) {
  const bool isLastStep = operation.name == "WriteToLog" || operation.name == "CopyFile";
  return call == "close" || call == "socket" || (call == "chmod" && !isLastStep);
}

// Lets the call at a place fail in every way.
void failAt(const Operation& operation, const std::vector<S>& calls, std::size_t at) {
  const S& call = calls[at];
  const auto end = calls.begin() + static_cast<std::ptrdiff_t>(at) + 1;
  const S place = call + " " + std::to_string(std::count(calls.begin(), end, call));
  SCOPED_TRACE(operation.name + ": " + place);
  std::vector<Fault> faults = {{Fault::kFails, at, EINTR}, {Fault::kFails, at, ENOSPC}};
  if (call == "read" || call == "write") faults.push_back({Fault::kIsShort, at});
  if (call == "write") faults.push_back({Fault::kWritesNothing, at});
  for (const Fault& fault : faults) {
    const bool isShort = fault.kind == Fault::kIsShort;
    const Played played = play(operation, fault);
    EXPECT_EQ(documented(operation, place + (isShort ? " is short" : " fails")), played.outcome);
    EXPECT_EQ(0, played.calls.descriptorsLeft);
    if (fault.kind == Fault::kFails && !leavesErrno(operation, call)) {
      EXPECT_EQ(fault.error, played.error);
    }
  }
  // Even where the clean-up fails as well, errno is that of the call that made the operation fail.
  const Played played = play(operation, {Fault::kFails, at, ENOSPC, "close chmod unlink remove"});
  const bool isTold = played.outcome[0] != operation.outcome[0] && call != "socket" &&
                      operation.name != "GetZRFeaturesSetting";
  EXPECT_EQ(isTold ? ENOSPC : played.error, played.error) << "and the clean-up fails";
}

TEST(Robustness, EveryCallFails) {
  for (const Operation& operation : operations()) {
    const Played usual = play(operation);
    EXPECT_EQ(operation.outcome, usual.outcome) << operation.name;
    const std::vector<S>& calls = usual.calls.names;
    for (std::size_t at = 0; at < calls.size(); ++at)  // without its request a dump never ends
      if (calls[at] != "sendmsg") failAt(operation, calls, at);
  }
}

// False if there is no such allocation.
bool runShort(const Operation& operation, int allocation) {
  clearPlaces();
  operation.prepare();
  const Files before = filesInPlaces();
  Result result;
  const auto runOnce = [&] {
    return runShortOfMemory(allocation, [&] { operation.call(result); });
  };
  const bool wasReached = runOnce();
  const S outcome = result.words() + changesSince(before);
  const bool isUsual = outcome == operation.outcome;
  EXPECT_EQ(isUsual ? outcome : documented(operation, "no memory"), outcome) << operation.name;
  runOnce();
  const std::size_t heap = ::mallinfo2().uordblks;
  for (int i = 0; i < 20; ++i) runOnce();
  EXPECT_GE(heap, ::mallinfo2().uordblks) << operation.name << " leaks";
  return wasReached;
}

TEST(Robustness, EveryAllocationFails) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "a sanitizer has allocation functions of its own";
#endif
  for (const Operation& operation : operations())
    for (int allocation = 0; runShort(operation, allocation);) ++allocation;
}

// The profile that a writer leaves which ends before one of its calls: the old one or, under the
// copy's name, the new one, whole.
TEST(Robustness, AWriterThatEndsLeavesAWholeProfile) {
  const S path = kScratch + "p", filler(40000, '\n');
  const S before = "[s]\nkey=1\n" + filler, after = "[s]\nkey=new\n" + filler;
  const auto write = [&] {
    unsigned int error = 0;
    WritePrivateProfileString("s", "key", "new", path.c_str(), &error);
  };
  putFile(path, before);
  const std::size_t calls = watch(write).names.size();
  for (std::size_t at = 0; at < calls; ++at) {
    putFile(path, before);
    const pid_t child = ::fork();
    if (child == 0) {
      watch(write, {Fault::kEndsTheProcess, at});
      ::_exit(1);
    }
    int status = 1;
    ::waitpid(child, &status, 0);
    const bool isOld = modeOf(path) != 0;
    EXPECT_TRUE(status == 0 && getFile(isOld ? path : path + ".tmp") == (isOld ? before : after))
        << "before call " << at;
  }
  EXPECT_EQ(0U, modeOf(path)) << "the last call renames the copy";
}

}  // namespace
