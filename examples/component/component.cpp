#include <zrcommon/logging.h>
#include <zrcommon/network.h>

#include <cstdio>

int main(int argc, char** argv) {
  char page[65536];
  unsigned int received = 0;
  unsigned int error = 0;
  if (argc < 2 || !ZRSendDataAndGetResponse(argv[1], page, sizeof page, &received, &error)) {
    std::puts("nothing fetched");
    return 1;
  }
  std::printf("%u bytes: %s\n", received, page);
  CZRLogger logger("component.log", "example", "UPDATE");
  logger.WriteToLog(1, "fetched %u bytes", received);
  return 0;
}
