#ifndef ZRCOMMON_BENCH_RUN_H
#define ZRCOMMON_BENCH_RUN_H

#include <string>

/// Measures the rows whose operation and size hold the filter, and prints a line for each
/// contestant: family, operation, size, contestant and nanoseconds per call, separated by tabs.
/// Progress goes to standard error.
///
/// @return false if there is no such row
bool runContest(const std::string& filter);

#endif  // ZRCOMMON_BENCH_RUN_H
