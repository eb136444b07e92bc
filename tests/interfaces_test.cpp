#include <gtest/gtest.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <zrcommon/network.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <vector>

#include "support/child.h"

namespace {

// Stands between the library and the kernel: keeps what is sent, and while there is a script,
// answers from it instead of the kernel.
struct Wire {
  std::string sent;
  std::deque<std::string> script;
  int receives = 0;
};
Wire wire;
const std::string kFailure = "receive fails";
const std::string kTool = ZR_BUILD_DIR "/zrtool";

template <typename Record>
std::string bytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

std::string message(unsigned short type, const std::string& body, std::size_t claimed) {
  nlmsghdr header = {};
  header.nlmsg_len = static_cast<std::uint32_t>(claimed);
  header.nlmsg_type = type;
  return bytesOf(header) + body;
}

// The message of a link with a name of 1 to 4 bytes and perhaps an address of 6.
std::string linkOf(const std::string& name, const std::string& address = "") {
  std::string body = bytesOf(ifinfomsg{}) +
                     bytesOf(rtattr{static_cast<unsigned short>(4 + name.size()), IFLA_IFNAME}) +
                     name + std::string(4 - name.size(), '\0');
  if (!address.empty()) body += bytesOf(rtattr{10, IFLA_ADDRESS}) + address + std::string(2, '\0');
  return message(RTM_NEWLINK, body, 16 + body.size());
}

const std::string kDone = message(NLMSG_DONE, "", 16);

// One text for each link listed: name, address, running.
std::vector<std::string> list() {
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces(1);
  std::strcpy(interfaces[0].name, "kept");
  unsigned int error = 7;
  EXPECT_EQ(1U, GetEthernetInterfacesDetails(interfaces, &error));
  EXPECT_EQ(0U, error);
  EXPECT_STREQ("kept", interfaces[0].name);
  std::vector<std::string> links;
  for (const auto& each : interfaces)
    links.push_back(std::string(each.name) + " " + each.macAddress + " " +
                    std::to_string(each.running));
  links.erase(links.begin());
  return links;
}

std::string listedFrom(const std::deque<std::string>& script) {
  wire.script = script;
  std::string names;
  for (const std::string& each : list()) names += each.substr(0, each.find(' ')) + ",";
  return names + std::to_string(wire.script.size());
}

// The count, the addresses, and how the entries behind them begin that held '#' before.
std::string addresses() {
  tagZR_MACADDR_INFO info;
  std::memset(&info, '#', sizeof info);
  unsigned int error = 7;
  EXPECT_EQ(1U, GetFormattedMACAddress(&info, &error));
  EXPECT_EQ(0U, error);
  std::string text = std::to_string(info.count);
  for (const char* each : info.addresses) text += " " + std::string(each, *each == '#' ? 1 : 17);
  return text;
}

// A network of its own for the process, with loopback down and the links made by ip's commands.
void makeNetwork(const std::string& commands) {
  ASSERT_EQ(0, ::unshare(CLONE_NEWNET));
  const Outcome outcome = run({"ip", "-batch", "-"}, commands);
  ASSERT_EQ(0, outcome.status) << outcome.err;
}

// What the kernel says by its older interface, in the same form as list().
std::vector<std::string> ask() {
  std::vector<std::string> links;
  const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  struct if_nameindex* const all = ::if_nameindex();
  for (const struct if_nameindex* each = all; each->if_index != 0; ++each) {
    ifreq request = {};
    std::strcpy(request.ifr_name, each->if_name);
    EXPECT_EQ(0, ::ioctl(fd, SIOCGIFHWADDR, &request));
    const auto* byte = reinterpret_cast<const unsigned char*>(request.ifr_hwaddr.sa_data);
    char mac[18] = "";
    if (request.ifr_hwaddr.sa_family != ARPHRD_NONE)
      std::snprintf(mac, sizeof mac, "%02x-%02x-%02x-%02x-%02x-%02x", byte[0], byte[1], byte[2],
                    byte[3], byte[4], byte[5]);
    EXPECT_EQ(0, ::ioctl(fd, SIOCGIFFLAGS, &request));
    links.push_back(std::string(each->if_name) + " " + mac +
                    (request.ifr_flags & IFF_RUNNING ? " 1" : " 0"));
  }
  ::if_freenameindex(all);
  ::close(fd);
  return links;
}

}  // namespace

extern "C" ssize_t sendmsg(int fd, const msghdr* sent, int flags) {
  wire.sent.append(static_cast<const char*>(sent->msg_iov->iov_base), sent->msg_iov->iov_len);
  return ::syscall(SYS_sendmsg, fd, sent, flags);
}

extern "C" ssize_t recvmsg(int fd, msghdr* received, int flags) {
  ++wire.receives;
  if (wire.script.empty()) return ::syscall(SYS_recvmsg, fd, received, flags);
  std::string answer = wire.script.front();
  wire.script.pop_front();
  if (answer == kFailure) return -1;
  const auto count = static_cast<ssize_t>(answer.size());
  answer += linkOf("bad");  // must not be read
  answer.copy(static_cast<char*>(received->msg_iov->iov_base), received->msg_iov->iov_len);
  return count;
}

TEST(Interfaces, ListsWhatTheKernelHas) {
  std::string commands =
      "link add name va address 02:00:00:00:00:0a type veth peer name vb\n"
      "link add name bridge type bridge\ntuntap add name tun mode tun\n"
      "link set lo up\nlink set va up\nlink set vb up\n";
  for (int i = 0; i < 250; ++i) commands += "link add name a" + std::to_string(i) + " type veth\n";
  ASSERT_NO_FATAL_FAILURE(makeNetwork(commands));
  wire = {};
  const auto links = list();
  EXPECT_EQ(505U, links.size());
  EXPECT_EQ(ask(), links);
  for (const char* some : {"lo 00-00-00-00-00-00 1", "va 02-00-00-00-00-0a 1", "tun  0"})
    EXPECT_EQ(1, std::count(links.begin(), links.end(), some)) << some;
  const auto process = static_cast<std::uint32_t>(::getpid());
  EXPECT_EQ(std::string("\x11\0\0\0\x12\0\x01\x03\x01\0\0\0", 12) + bytesOf(process) + "\x11",
            wire.sent);
}

TEST(Interfaces, OnlyTheDoneMessageEndsTheDump) {
  const std::string error = message(NLMSG_ERROR, std::string(20, '\xff'), 36);
  EXPECT_EQ("a,b,c,0", listedFrom({kFailure, "", linkOf("a"), error, message(NLMSG_NOOP, "", 16),
                                   linkOf("b") + linkOf("c"), kFailure, kDone}));
}

TEST(Interfaces, WalksEveryDatagramToItsEnd) {
  const struct {
    int line;
    std::string datagram;
    std::string expected;
  } rows[] = {
      {__LINE__, linkOf("a") + kDone + linkOf("b") + kDone + linkOf("c"), "a,b,c,1"},
      {__LINE__, linkOf("a") + message(RTM_DELLINK, "", 16) + linkOf("b") + kDone, "a,b,1"},
      {__LINE__, kDone + message(NLMSG_NOOP, "1234", 17) + linkOf("b"), "b,1"},
      // An unpadded end, and one that holds no header.
      {__LINE__, linkOf("a") + kDone + message(NLMSG_NOOP, "x", 17), "a,1"},
      {__LINE__, kDone + linkOf("a") + linkOf("b").substr(0, 15), "a,1"},
      // Lengths below a header's or beyond the datagram's end stop the walk.
      {__LINE__, kDone + message(RTM_NEWLINK, "", 15) + linkOf("b"), "1"},
      {__LINE__, kDone + message(RTM_NEWLINK, "", 0) + linkOf("b"), "1"},
      {__LINE__, kDone + linkOf("a") + message(RTM_NEWLINK, "", 17), "a,1"},
      {__LINE__, kDone + message(RTM_NEWLINK, "", 0x80000000) + linkOf("b"), "1"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.expected, listedFrom({row.datagram, kDone})) << "row of line " << row.line;
  wire.script.clear();
}

TEST(Interfaces, NeedsAPortThatMayBeTaken) {
  const int holder = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
  sockaddr_nl automatic = {};
  automatic.nl_family = AF_NETLINK;
  ASSERT_EQ(0, ::bind(holder, reinterpret_cast<sockaddr*>(&automatic), sizeof automatic));
  tagZR_MACADDR_INFO info = {};
  info.count = 5;
  unsigned int error = 7;
  EXPECT_EQ(0U, GetFormattedMACAddress(&info, &error));
  EXPECT_EQ(101U, error);
  EXPECT_EQ(0, info.count);
  const std::string self = std::to_string(::getpid());
  const std::string problem = "PROBLEM  netlink port of process " + self +
                              " (interfaces_test): held by the process itself, descriptor " +
                              std::to_string(holder) + ",";
  const auto doctor = [] { return run({kTool, "doctor"}).out; };
  EXPECT_NE(std::string::npos, doctor().find(problem)) << doctor();
  ::close(holder);
  EXPECT_EQ(std::string::npos, doctor().find("PROBLEM  netlink")) << doctor();
  const rlimit none = {0, 0};
  const auto withoutSockets = [&] {
    ::setrlimit(RLIMIT_NOFILE, &none);
    return GetFormattedMACAddress(&info, &error) == 0 && error == 101 ? 0 : 1;
  };
  EXPECT_EQ(0, runForked(withoutSockets).status);
}

TEST(Interfaces, NullErrorTouchesNothing) {
  wire = {};
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  tagZR_MACADDR_INFO info = {};
  EXPECT_EQ(0U, GetEthernetInterfacesDetails(interfaces, nullptr));
  EXPECT_EQ(0U, GetFormattedMACAddress(&info, nullptr));
  EXPECT_EQ("", wire.sent);
}

TEST(MacAddresses, CountsByNameAndAddress) {
  wire.script = {linkOf("lo", "loopbk") + linkOf("LO", "loopbk") + linkOf("l", "aaaaaa") +
                     linkOf("tun") + linkOf("lo2", std::string(6, '\0')),
                 kDone};
  EXPECT_EQ("2 61-61-61-61-61-61 00-00-00-00-00-00 #", addresses());
  wire.script = {linkOf("d", "dddddd") + linkOf("c", "cccccc"),
                 linkOf("b", "bbbbbb") + linkOf("a", "aaaaaa"), kDone};
  EXPECT_EQ("3 64-64-64-64-64-64 63-63-63-63-63-63 62-62-62-62-62-62", addresses());
  ASSERT_NO_FATAL_FAILURE(makeNetwork(""));
  EXPECT_EQ("0 # # #", addresses());
}

TEST(MacAddresses, ToolSaysWhy) {
  ASSERT_NO_FATAL_FAILURE(
      makeNetwork("tuntap add name tun mode tun\nlink set lo up\n"
                  "link add name \\\"b\xe9 address 02:00:00:00:00:01 type veth peer name v "
                  "address 02:00:00:00:00:01\n"
                  "link add name bridge address 02:00:00:00:00:01 type bridge\n"
                  "link add name last address 02:00:00:00:00:02 type bridge\n"));
  const std::string mac = "\t02-00-00-00-00-01\tnot running";
  EXPECT_EQ(
      "lo\t00-00-00-00-00-00\trunning\tdoes not count: it is named lo\n"
      "tun\t-\tnot running\tdoes not count: it has no hardware address\n"
      "v" +
          mac + "\tcounts: address 1 of 3\n\\\"b\xe9" + mac + "\tcounts: address 2 of 3\nbridge" +
          mac +
          "\tcounts: address 3 of 3\nlast\t02-00-00-00-00-02\tnot running\t"
          "does not count: three addresses come before it\n",
      run({kTool, "interfaces", "--why"}).out);
  EXPECT_EQ("3 02-00-00-00-00-01 02-00-00-00-00-01 02-00-00-00-00-01", addresses());
  const std::string json = run({kTool, "interfaces", "--json"}).out;
  EXPECT_EQ(0U, json.find("[\n  {\"name\": \"lo\", \"address\": \"00-00-00-00-00-00\", "
                          "\"running\": true},\n  {\"name\": \"tun\", \"address\": null, "
                          "\"running\": false},\n"))
      << json;
  EXPECT_NE(std::string::npos, json.find("\"\\u005c\\u0022b\\u00e9\"")) << json;
}
