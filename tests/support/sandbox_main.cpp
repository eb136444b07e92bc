// sandbox COMMAND...: runs a command in the test sandbox.
#include <unistd.h>

#include <cstdio>

#include "support/sandbox.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: sandbox COMMAND [ARGUMENT...]\n", stderr);
    return 2;
  }
  enterSandbox();
  ::execvp(argv[1], argv + 1);
  std::perror(argv[1]);
  return 127;
}
