#include "bench/measure.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>

namespace {

constexpr int kTurns = 60;
constexpr double kTurnSeconds = 0.002;

class LeastTimes : public benchmark::BenchmarkReporter {
 public:
  explicit LeastTimes(std::size_t count) : times(count, std::numeric_limits<double>::max()) {}

  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      double& least = times.at(static_cast<std::size_t>(run.family_index));
      if (run.run_type == Run::RT_Iteration) least = std::min(least, run.GetAdjustedRealTime());
    }
  }

  std::vector<double> times;
};

// Only a flag turns this on.
void interleaveTurns() {
  static char program[] = "bench";
  static char flag[] = "--benchmark_enable_random_interleaving=true";
  char* arguments[] = {program, flag, nullptr};
  int count = 2;
  benchmark::Initialize(&count, arguments);
}

}  // namespace

std::vector<double> leastTimes(const std::vector<Calls>& operations) {
  interleaveTurns();
  benchmark::ClearRegisteredBenchmarks();
  for (const Calls& calls : operations) {
    const auto body = [&calls](benchmark::State& state) {
      while (state.KeepRunningBatch(state.max_iterations))
        state.SetIterationTime(calls(state.max_iterations));
    };
    benchmark::RegisterBenchmark("calls", body)
        ->Repetitions(kTurns)
        ->MinTime(kTurnSeconds)
        ->UseManualTime();
  }
  LeastTimes least(operations.size());
  benchmark::RunSpecifiedBenchmarks(&least);
  return least.times;
}
