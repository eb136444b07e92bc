#include "bench/contest.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>
#include <vector>

#include "bench/run.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kSampleNanoseconds = 1e6;
constexpr double kRowNanoseconds = 8e8;
constexpr int kLeastRounds = 7;
constexpr int kMostRounds = 200;

struct Contestant {
  std::string name;
  Calls calls;
  long count = 1;
  double best = 0;
};

struct Row {
  std::string family;
  std::string operation;
  std::string size;
  std::vector<Contestant> contestants;
};

std::vector<Row> rows;
std::string family;

double nanoseconds(const Contestant& contestant, long count) {
  const auto start = Clock::now();
  contestant.calls(count);
  const std::chrono::duration<double, std::nano> time = Clock::now() - start;
  return time.count() / static_cast<double>(count);
}

// Finds out how many calls make a sample.
void prepare(Contestant& contestant) {
  contestant.best = nanoseconds(contestant, 1);
  while (contestant.best * static_cast<double>(contestant.count) < kSampleNanoseconds) {
    contestant.count *= 2;
    contestant.best = nanoseconds(contestant, contestant.count);
  }
}

// Measures the contestants in turn, again and again; the least time of each counts.
void measure(Row& row) {
  for (Contestant& each : row.contestants) prepare(each);
  const auto start = Clock::now();
  for (int round = 0; round < kMostRounds; ++round) {
    const std::chrono::duration<double, std::nano> spent = Clock::now() - start;
    if (round >= kLeastRounds && spent.count() > kRowNanoseconds) return;
    for (Contestant& each : row.contestants)
      each.best = std::min(each.best, nanoseconds(each, each.count));
  }
}

}  // namespace

void enterFamily(const std::string& name) {
  family = name;
}

void enterCalls(const std::string& operation, const std::string& size,
                const std::string& contestant, Calls calls) {
  const auto isRow = [&](const Row& row) { return row.operation == operation && row.size == size; };
  auto row = std::find_if(rows.begin(), rows.end(), isRow);
  if (row == rows.end()) row = rows.insert(row, {family, operation, size, {}});
  row->contestants.push_back({contestant, std::move(calls)});
}

bool runContest(const std::string& filter) {
  const auto isOut = [&](const Row& row) {
    return (row.operation + ", " + row.size).find(filter) == std::string::npos;
  };
  rows.erase(std::remove_if(rows.begin(), rows.end(), isOut), rows.end());
  std::size_t done = 0;
  for (Row& row : rows) {
    measure(row);
    for (const Contestant& each : row.contestants)
      std::printf("%s\t%s\t%s\t%s\t%.2f\n", row.family.c_str(), row.operation.c_str(),
                  row.size.c_str(), each.name.c_str(), each.best);
    std::fprintf(stderr, "%3zu of %zu: %s, %s\n", ++done, rows.size(), row.operation.c_str(),
                 row.size.c_str());
  }
  return !rows.empty();
}
