#ifndef ZRCOMMON_BENCH_SANDBOX_H
#define ZRCOMMON_BENCH_SANDBOX_H

/// Starts this program anew in the sandbox, unless it runs there already.
void enterSandbox();

#endif  // ZRCOMMON_BENCH_SANDBOX_H
