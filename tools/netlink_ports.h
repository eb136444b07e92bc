#ifndef ZRCOMMON_TOOLS_NETLINK_PORTS_H
#define ZRCOMMON_TOOLS_NETLINK_PORTS_H

#include <string>
#include <vector>

/// Processes in which interfaces cannot be listed, because a netlink route socket holds the port
/// that is their process id.
struct NetlinkPorts {
  struct Taken {
    std::string process;
    std::string holder;
  };
  int processesLookedAt = 0;
  std::vector<Taken> taken;
};

/// Looks at the processes that have the library loaded, as far as their user may be looked at, and
/// at those given.
NetlinkPorts findTakenNetlinkPorts(const std::vector<std::string>& processes);

#endif  // ZRCOMMON_TOOLS_NETLINK_PORTS_H
