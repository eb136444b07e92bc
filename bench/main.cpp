#include <cstdio>

#include "bench/contest.h"
#include "bench/run.h"
#include "bench/sandbox.h"

int main(int argc, char** argv) {
  if (argc > 2) {
    std::fprintf(stderr, "usage: %s [FILTER]\n", argv[0]);
    return 2;
  }
  enterSandbox();
  enterProfileRows();
  enterLoggingRows();
  enterSystemRows();
  enterCodecRows();
  enterStringRows();
  enterNetworkRows();
  if (runContest(argc > 1 ? argv[1] : "")) return 0;
  std::fprintf(stderr, "no row holds \"%s\"\n", argv[1]);
  return 1;
}
