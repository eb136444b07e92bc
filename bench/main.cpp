#include "bench/contest.h"

int main(int argc, char** argv) {
  enterLoggingRows();
  enterSystemRows();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
