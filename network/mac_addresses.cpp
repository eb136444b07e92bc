#include <strings.h>

#include <cstddef>
#include <type_traits>
#include <vector>

#include "base/copy_truncated.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

// Kept: GetFormattedMACAddress() skips the link named "lo" and links without an address, and no
// others: a link that is not running counts, and so does an address of zeros (test
// MacAddresses.CountsByNameAndAddress)
bool counts(const tagZR_ETHERNET_INTERFACES_INFO& interface) {
  return ::strcasecmp(interface.name, "lo") != 0 && interface.macAddress[0] != '\0';
}

}  // namespace

unsigned int GetFormattedMACAddress(tagZR_MACADDR_INFO* info, unsigned int* error) {
  constexpr std::size_t kMostAddresses = std::extent<decltype(info->addresses)>::value;
  info->count = 0;
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  if (!GetEthernetInterfacesDetails(interfaces, error)) return 0;
  for (const auto& interface : interfaces) {
    if (info->count == kMostAddresses) break;
    if (counts(interface)) copyTruncated(info->addresses[info->count++], interface.macAddress);
  }
  return 1;
}
