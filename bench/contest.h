#ifndef ZRCOMMON_BENCH_CONTEST_H
#define ZRCOMMON_BENCH_CONTEST_H

#include <benchmark/benchmark.h>

#include <string>

/// Enters one contestant in a row of the table. A row is an operation and its size ("log write,
/// 80 B"); the contestants of a row do the same work, in one run, interleaved. "ours" is the
/// library; a name that begins with "bare" is a limit: the same work with everything left out that
/// can be; any other is a peer.
template <typename Body>
void enter(const std::string& row, const std::string& contestant, Body body) {
  benchmark::RegisterBenchmark((row + "/" + contestant).c_str(),
                               [body](benchmark::State& state) mutable {
                                 for (auto _ : state) body();
                               });
}

// One function a family enters its rows.
void enterCodecRows();
void enterLoggingRows();
void enterNetworkRows();
void enterProfileRows();
void enterStringRows();
void enterSystemRows();

#endif  // ZRCOMMON_BENCH_CONTEST_H
