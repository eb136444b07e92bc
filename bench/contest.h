#ifndef ZRCOMMON_BENCH_CONTEST_H
#define ZRCOMMON_BENCH_CONTEST_H

#include <string>

#include "bench/measure.h"

/// Begins a family: the rows that are entered from now on stand in its table.
void enterFamily(const std::string& name);

/// Enters one contestant in a row. A row is an operation and its size; the contestants of a row do
/// the same work and are measured in turn. "ours" is the library; a name that begins with "bare" is
/// a limit: the same work without everything that can be left out; any other is a peer.
void enterCalls(const std::string& operation, const std::string& size,
                const std::string& contestant, Calls calls);

template <typename Body>
void enter(const std::string& operation, const std::string& size, const std::string& contestant,
           Body body) {
  enterCalls(operation, size, contestant, callsOf(body));
}

// Each family enters its rows.
void enterCodecRows();
void enterLoggingRows();
void enterNetworkRows();
void enterProfileRows();
void enterStringRows();
void enterSystemRows();

#endif  // ZRCOMMON_BENCH_CONTEST_H
