#include <zrcommon/logging.h>
#include <zrcommon/network.h>

int main(int argc, char** argv) {
  CZRLogger logger("component.log", "example", "UPDATE");
  char page[65536];
  unsigned int received = 0;
  unsigned int error = 0;
  if (argc < 2 || !ZRSendDataAndGetResponse(argv[1], page, sizeof page, &received, &error)) {
    logger.WriteToLog(1, "nothing fetched from %s", argc < 2 ? "nowhere" : argv[1]);
    return 1;
  }
  logger.WriteToLog(2, "fetched %u bytes from %s", received, argv[1]);
  return 0;
}
