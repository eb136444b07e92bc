#include "bench/contest.h"
#include "bench/sandbox.h"

int main(int argc, char** argv) {
  enterSandbox();
  enterProfileRows();
  enterLoggingRows();
  enterSystemRows();
  enterCodecRows();
  enterStringRows();
  enterNetworkRows();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
