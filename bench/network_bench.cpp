#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <linux/rtnetlink.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zrcommon/codecs.h>
#include <zrcommon/network.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <vector>

#include "bench/contest.h"

#ifdef ZR_BENCH_LIBNL
#include <netlink/route/link.h>
#endif

namespace {

void must(bool ok, const char* what) {
  if (ok) return;
  std::perror(what);
  std::abort();
}

// A network namespace with so many links, loopback among them, to move the contestants into.
class Network {
 public:
  explicit Network(int links) {
    must(::unshare(CLONE_NEWNET) == 0, "unshare");
    fd_ = ::open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC);
    std::FILE* const ip = ::popen("ip -batch -", "w");
    must(fd_ >= 0 && ip, "ip");
    for (--links; links > 1; links -= 2) std::fprintf(ip, "link add name p%d type veth\n", links);
    if (links == 1) std::fputs("link add name bridge type bridge\n", ip);
    must(::pclose(ip) == 0, "ip");
    current_ = fd_;
  }

  // Moves the process there, unless that is where it is.
  void enter() const {
    if (current_ == fd_) return;
    must(::setns(fd_, CLONE_NEWNET) == 0, "setns");
    current_ = fd_;
  }

 private:
  static int current_;
  int fd_ = -1;
};
int Network::current_ = -1;

void listOurs() {
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  unsigned int error = 0;
  must(GetEthernetInterfacesDetails(interfaces, &error) == 1, "GetEthernetInterfacesDetails");
  benchmark::DoNotOptimize(interfaces.data());
}

void listByGetifaddrs() {
  ifaddrs* all = nullptr;
  must(::getifaddrs(&all) == 0, "getifaddrs");
  benchmark::DoNotOptimize(all);
  ::freeifaddrs(all);
}

#ifdef ZR_BENCH_LIBNL
void listByLinkCache() {
  nl_sock* const socket = nl_socket_alloc();
  nl_cache* cache = nullptr;
  must(nl_connect(socket, NETLINK_ROUTE) == 0, "nl_connect");
  must(rtnl_link_alloc_cache(socket, AF_UNSPEC, &cache) == 0, "rtnl_link_alloc_cache");
  benchmark::DoNotOptimize(cache);
  nl_cache_free(cache);
  nl_socket_free(socket);
}
#endif

// Looks only for the end of the dump.
bool holdsDone(const char* bytes, ssize_t count) {
  nlmsghdr header = {};
  for (; count >= ssize_t{sizeof header};
       bytes += NLMSG_ALIGN(header.nlmsg_len), count -= NLMSG_ALIGN(header.nlmsg_len)) {
    std::memcpy(&header, bytes, sizeof header);
    if (header.nlmsg_type == NLMSG_DONE) return true;
  }
  return false;
}

void dumpBare() {
  const int fd = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_pid = static_cast<std::uint32_t>(::getpid());
  must(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0, "bind");
  struct {
    nlmsghdr header;
    rtgenmsg body;
  } request = {};
  request.header.nlmsg_len = NLMSG_LENGTH(sizeof request.body);
  request.header.nlmsg_type = RTM_GETLINK;
  request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  must(::send(fd, &request, request.header.nlmsg_len, 0) > 0, "send");
  char buffer[8192];
  while (!holdsDone(buffer, ::recv(fd, buffer, sizeof buffer, 0))) {
  }
  ::close(fd);
}

void enterListing(const std::string& links, const Network* network) {
  const auto contestant = [&](const char* name, void (*list)()) {
    enter("GetEthernetInterfacesDetails", links, name, [network, list] {
      network->enter();
      list();
    });
  };
  contestant("ours", listOurs);
  contestant("bare dump", dumpBare);
  contestant("getifaddrs", listByGetifaddrs);
#ifdef ZR_BENCH_LIBNL
  contestant("libnl", listByLinkCache);
#endif
}

constexpr char kDirectory[] = "/usr/lib/Valdrix/Valdrix/infoeml.dat";
constexpr std::uint32_t kRecords = 1000;

struct Record {
  std::uint32_t number;
  char name[260];
  char value[260];
};

void writeDirectory() {
  std::ofstream file(kDirectory, std::ios::binary);
  for (std::uint32_t number = 1; number <= kRecords; ++number) {
    Record record = {number, "Connection Check", "http://server.example/check/"};
    auto* const bytes = reinterpret_cast<unsigned char*>(&record);
    Encrypt(bytes, sizeof record);
    file.write(reinterpret_cast<const char*>(bytes), sizeof record);
  }
  must(static_cast<bool>(file.flush()), kDirectory);
}

void lookUpLast() {
  char value[256] = {};
  must(GetValueFromInfoEml(kRecords, "Connection Check", value, sizeof value) == 1, kDirectory);
  benchmark::DoNotOptimize(value);
}

void readAll() {
  Record record;
  const int fd = ::open(kDirectory, O_RDONLY | O_CLOEXEC);
  for (std::uint32_t i = 0; i < kRecords; ++i)
    must(::read(fd, &record, sizeof record) == ssize_t{sizeof record}, kDirectory);
  benchmark::DoNotOptimize(record);
  ::close(fd);
}

}  // namespace

void enterNetworkRows() {
  static const Network few(3);
  static const Network many(500);
  enterFamily("Network");
  enterListing("3 links", &few);
  enterListing("500 links", &many);
  writeDirectory();
  enter("GetValueFromInfoEml", "last of 1,000", "ours", lookUpLast);
  enter("GetValueFromInfoEml", "last of 1,000", "bare reads", readAll);
}
