#ifndef ZRCOMMON_BENCH_MEASURE_H
#define ZRCOMMON_BENCH_MEASURE_H

#include <functional>
#include <vector>

/// Calls of an operation, so many of them.
using Calls = std::function<void(long count)>;

template <typename Body>
Calls callsOf(Body body) {
  return [body](long count) mutable {
    for (; count > 0; --count) body();
  };
}

/// Measures operations in turns of random order.
///
/// @return the least nanoseconds that a call of each takes
std::vector<double> leastTimes(const std::vector<Calls>& operations);

#endif  // ZRCOMMON_BENCH_MEASURE_H
