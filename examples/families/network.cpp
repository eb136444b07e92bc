#include <zrcommon/network.h>

#include <cstdio>
#include <vector>

int main(int argc, char** argv) {
  unsigned int error = 0;
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
  if (!GetEthernetInterfacesDetails(links, &error)) {
    std::printf("the links were not listed, code %u\n", error);
    return 1;
  }
  std::printf("%zu links\n", links.size());
  std::printf("the internet is %s\n",
              CheckInternetConnection(&error) ? "reachable" : "not reachable");

  if (argc < 2) return 0;
  static char page[65536];
  unsigned int received = 0;
  if (!ZRSendDataAndGetResponse(argv[1], page, sizeof page, &received, &error)) return 1;
  std::printf("%u bytes from %s\n", received, argv[1]);
  return 0;
}
