#include "bench/contest.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "bench/run.h"

namespace {

struct Row {
  std::string family;
  std::string operation;
  std::string size;
  std::vector<std::string> contestants;
  std::vector<Calls> calls;
};

std::vector<Row> rows;
std::string family;

void measure(const Row& row) {
  const std::vector<double> times = leastTimes(row.calls);
  for (std::size_t i = 0; i < times.size(); ++i)
    std::printf("%s\t%s\t%s\t%s\t%.2f\n", row.family.c_str(), row.operation.c_str(),
                row.size.c_str(), row.contestants[i].c_str(), times[i]);
}

}  // namespace

void enterFamily(const std::string& name) {
  family = name;
}

void enterCalls(const std::string& operation, const std::string& size,
                const std::string& contestant, Calls calls) {
  const auto isRow = [&](const Row& row) { return row.operation == operation && row.size == size; };
  auto row = std::find_if(rows.begin(), rows.end(), isRow);
  if (row == rows.end()) row = rows.insert(row, {family, operation, size, {}, {}});
  row->contestants.push_back(contestant);
  row->calls.push_back(std::move(calls));
}

bool runContest(const std::string& filter) {
  const auto isOut = [&](const Row& row) {
    return (row.operation + ", " + row.size).find(filter) == std::string::npos;
  };
  rows.erase(std::remove_if(rows.begin(), rows.end(), isOut), rows.end());
  std::size_t done = 0;
  for (const Row& row : rows) {
    measure(row);
    std::fprintf(stderr, "%3zu of %zu: %s, %s\n", ++done, rows.size(), row.operation.c_str(),
                 row.size.c_str());
  }
  return !rows.empty();
}
