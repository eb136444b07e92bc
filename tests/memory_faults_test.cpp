// Every operation with each of its allocations failing in turn.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "support/failing_memory.h"
#include "support/files.h"
#include "support/operations.h"
#include "support/shared.h"

namespace {

constexpr int kCalls = 3;

struct Report {
  Result results[kCalls];
  std::size_t live[kCalls] = {};
  bool wasReached = false;
};

// Calls it in a child, so many times, with the same allocation failing.
void play(const Operation& operation, int allocation, int calls, Shared<Report>& report) {
  const pid_t child = ::fork();
  if (child == 0) {
    for (int i = 0; i < calls; ++i) {
      allocationsUntilFailure = allocation;
      operation.call(report->results[i]);
      report->wasReached = allocationsUntilFailure < 0;
      allocationsUntilFailure = -1;
      report->live[i] = ::mallinfo2().uordblks;
    }
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(0, status) << operation.name << ", allocation " << allocation;
}

// What the answers to the faults list, and what only a lack of memory brings about.
bool isDocumented(const Operation& operation, const std::string& outcome) {
  static const std::string answers = getFile(ZR_SOURCE_DIR "/tests/answers/faults.txt") +
                                     "GetEthernetInterfacesDetails\n  1 0 -\n"
                                     "CheckInternetConnection\n  0 140 -(zrinet.opt 788 bytes "
                                     "0600) +(zrinet.opt 788 bytes 0666)\n";
  for (std::size_t at = 0; (at = answers.find(operation.name + "\n ", at)) != answers.npos; ++at) {
    std::size_t end = answers.find("\n", at) + 1;
    while (end < answers.size() && answers[end] == ' ') end = answers.find("\n", end) + 1;
    const std::string section = answers.substr(at, end - at);
    if (section.find("  " + outcome + "\n") != section.npos) return true;
    if (section.find("  " + outcome + "  <-") != section.npos) return true;
  }
  return false;
}

// False if the operation has no such allocation.
bool survives(const Operation& operation, int allocation) {
  Shared<Report> report;
  prepare(operation);
  const Changes changes;
  play(operation, allocation, 1, report);
  const std::string outcome = report->results[0].text() + changes.text();
  EXPECT_TRUE(isDocumented(operation, outcome)) << operation.name << ": " << outcome;
  if (!report->wasReached) return false;
  play(operation, allocation, kCalls, report);
  EXPECT_GE(report->live[1], report->live[2]) << operation.name << " leaks";
  return true;
}

TEST(MemoryFaults, OneAtATime) {
  int allocations = 0;
  for (const Operation& operation : systemOperations())
    for (int allocation = 0; survives(operation, allocation); ++allocation) ++allocations;
  EXPECT_LT(0, allocations);
  std::printf("%d failed allocations\n", allocations);
}

}  // namespace
