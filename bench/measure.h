#ifndef ZRCOMMON_BENCH_MEASURE_H
#define ZRCOMMON_BENCH_MEASURE_H

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

/// Makes so many calls of an operation.
///
/// @return the seconds that they took
using Calls = std::function<double(long count)>;

template <typename Body>
double secondsOf(Body body) {
  const auto start = std::chrono::steady_clock::now();
  body();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <typename Body>
Calls callsOf(Body body) {
  return [body](long count) mutable {
    return secondsOf([&] {
      for (; count > 0; --count) body();
    });
  };
}

constexpr long kBatch = 64;

/// Calls that each need something prepared, whose time does not count: prepare(i) and then body(i),
/// for batches of i from 0 to kBatch - 1.
template <typename Prepare, typename Body>
Calls callsOf(Prepare prepare, Body body) {
  return [prepare, body](long count) {
    double seconds = 0;
    for (; count > 0; count -= kBatch) {
      const long batch = std::min(count, kBatch);
      for (long i = 0; i < batch; ++i) prepare(i);
      seconds += secondsOf([&] {
        for (long i = 0; i < batch; ++i) body(i);
      });
    }
    return seconds;
  };
}

/// Measures operations in turns of random order.
///
/// @return the least nanoseconds that a call of each takes
std::vector<double> leastTimes(const std::vector<Calls>& operations);

#endif  // ZRCOMMON_BENCH_MEASURE_H
