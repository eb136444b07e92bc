#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sched.h>
#include <sys/syscall.h>
#include <zrcommon/network.h>

#include <deque>

#include "support/test.h"

namespace {

// Stands between the library and the kernel: keeps what is sent, and while there is a script,
// answers from it instead of the kernel.
struct {
  S sent;
  std::deque<S> script;
} wire;
const S kFailure = "receive fails";

template <typename Record>
S bytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

S message(unsigned short type, const S& body, std::size_t claimed) {
  nlmsghdr header = {};
  header.nlmsg_len = static_cast<std::uint32_t>(claimed);
  header.nlmsg_type = type;
  return bytesOf(header) + body;
}

// An attribute, which claims to have a length of its own if one is given.
S attribute(unsigned short type, const S& payload, int claimed = -1) {
  const auto length = static_cast<unsigned short>(claimed < 0 ? payload.size() + 4 : claimed);
  S bytes = bytesOf(rtattr{length, type}) + payload;
  bytes.resize((bytes.size() + 3) / 4 * 4, '!');
  return bytes;
}

S linkWith(unsigned int flags, const S& attributes) {
  ifinfomsg info = {};
  info.ifi_flags = flags;
  return bytesOf(info) + attributes;
}

S linkOf(const S& name, const S& address = "") {
  const S body = linkWith(
      0, attribute(IFLA_IFNAME, name) + (address.empty() ? "" : attribute(IFLA_ADDRESS, address)));
  return message(RTM_NEWLINK, body, 16 + body.size());
}

const S kDone = message(NLMSG_DONE, "", 16);

S text(const tagZR_ETHERNET_INTERFACES_INFO& link) {
  return S(link.name) + " " + link.macAddress + " " + std::to_string(link.running);
}

std::vector<S> list() {
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces(1);
  unsigned int error = 7;
  EXPECT_EQ(1U, GetEthernetInterfacesDetails(interfaces, &error));
  EXPECT_EQ(0U, error);
  std::vector<S> links;
  for (const auto& each : interfaces) links.push_back(text(each));
  EXPECT_EQ("  0", links[0]) << "what was in the list";
  links.erase(links.begin());
  return links;
}

// The names, and how many datagrams were left.
S listedFrom(const std::deque<S>& script) {
  wire.script = script;
  S names;
  for (const S& each : list()) names += each.substr(0, each.find(' ')) + ",";
  return names + std::to_string(wire.script.size());
}

// The count, the addresses, and how the entries behind them begin that held '#' before.
S addresses() {
  tagZR_MACADDR_INFO info;
  std::memset(&info, '#', sizeof info);
  unsigned int error = 7;
  EXPECT_EQ(1U, GetFormattedMACAddress(&info, &error));
  EXPECT_EQ(0U, error);
  S text = std::to_string(info.count);
  for (const char* each : info.addresses) text += " " + S(each, *each == '#' ? 1 : 17);
  return text;
}

// A network of its own for the process, with loopback down and the links made by ip's commands.
void makeNetwork(const S& commands) {
  ASSERT_EQ(0, ::unshare(CLONE_NEWNET));
  const Outcome outcome = run({"ip", "-batch", "-"}, commands);
  ASSERT_EQ(0, outcome.status) << outcome.err;
}

// What a message with this body gives; its last byte stands before an unreadable page.
S parse(const S& body) {
  const S bytes = message(0, body, 16 + body.size());
  Guarded memory(bytes.size());
  bytes.copy(memory.data(), bytes.size());
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links(1);
  EXPECT_EQ(1, rtnl_print_link(memory.data<nlmsghdr>(), links));
  EXPECT_EQ(2U, links.size());
  return text(links[1]);
}

// The same by the shortest way: every attribute is cut out as a string.
S model(const S& body) {
  S name, mac;
  for (std::size_t at = 16; at + 4 <= body.size();) {
    rtattr head = {};
    body.copy(reinterpret_cast<char*>(&head), 4, at);
    if (head.rta_len < 4 || head.rta_len > body.size() - at) break;
    S payload = body.substr(at + 4, head.rta_len - 4U);
    if (head.rta_type == IFLA_IFNAME) name = payload.substr(0, 1023).c_str();
    if (head.rta_type == IFLA_ADDRESS) {
      payload = body.substr(at + 4, 6);
      payload.resize(6);
      mac.clear();
      for (const char byte : payload) {
        char digits[8];
        std::snprintf(digits, sizeof digits, mac.empty() ? "%02x" : "-%02x", byte & 0xFF);
        mac += digits;
      }
    }
    at += (head.rta_len + 3U) / 4 * 4;
  }
  return name + " " + mac + (body.size() > 8 && body[8] & 0x40 ? " 1" : " 0");
}

}  // namespace

extern "C" ssize_t sendmsg(int fd, const msghdr* sent, int flags) {
  wire.sent.append(static_cast<const char*>(sent->msg_iov->iov_base), sent->msg_iov->iov_len);
  return ::syscall(SYS_sendmsg, fd, sent, flags);
}

extern "C" ssize_t recvmsg(int fd, msghdr* received, int flags) {
  if (wire.script.empty()) return ::syscall(SYS_recvmsg, fd, received, flags);
  S answer = wire.script.front();
  wire.script.pop_front();
  if (answer == kFailure) return -1;
  const auto count = static_cast<ssize_t>(answer.size());
  answer += linkOf("bad");  // must not be read
  answer.copy(static_cast<char*>(received->msg_iov->iov_base), received->msg_iov->iov_len);
  return count;
}

TEST(Interfaces, ListsWhatTheKernelHas) {
  S commands =
      "link add name va address 02:00:00:00:00:0a type veth peer name vb\n"
      "link add name bridge type bridge\ntuntap add name tun mode tun\n"
      "link set lo up\nlink set va up\nlink set vb up\n";
  for (int i = 0; i < 250; ++i) commands += "link add name a" + std::to_string(i) + " type veth\n";
  ASSERT_NO_FATAL_FAILURE(makeNetwork(commands));
  wire.sent.clear();
  const auto links = list();
  EXPECT_EQ(505U, links.size());
  for (const char* some : {"lo 00-00-00-00-00-00 1", "va 02-00-00-00-00-0a 1", "tun  0"})
    EXPECT_EQ(1, std::count(links.begin(), links.end(), some)) << some;
  EXPECT_EQ(S("\x11\0\0\0\x12\0\x01\x03\x01\0\0\0", 12) + bytesOf(::getpid()) + "\x11", wire.sent);
}

TEST(Interfaces, OnlyTheDoneMessageEndsTheDump) {
  const S error = message(NLMSG_ERROR, S(20, '\xff'), 36);
  EXPECT_EQ("a,b,c,0", listedFrom({kFailure, "", linkOf("a"), error, message(NLMSG_NOOP, "", 16),
                                   linkOf("b") + linkOf("c"), kFailure, kDone}));
}

TEST(Interfaces, WalksEveryDatagramToItsEnd) {
  for (const auto& [line, datagram, expected] : Rows<int, S, S>{
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
           {__LINE__, kDone + message(RTM_NEWLINK, "", 0x80000000) + linkOf("b"), "1"}})
    EXPECT_EQ(expected, listedFrom({datagram, kDone})) << "line " << line;
  wire.script.clear();
}

TEST(Interfaces, NeedsAPortThatMayBeTaken) {
  const int holder = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
  const sockaddr_nl automatic = {AF_NETLINK, 0, 0, 0};
  ASSERT_EQ(0, ::bind(holder, reinterpret_cast<const sockaddr*>(&automatic), sizeof automatic));
  tagZR_MACADDR_INFO info = {};
  info.count = 5;
  unsigned int error = 7;
  EXPECT_EQ(0U, GetFormattedMACAddress(&info, &error));
  EXPECT_EQ(101U, error);
  EXPECT_EQ(0, info.count);
  const S problem = "PROBLEM  netlink port of process " + std::to_string(::getpid()) +
                    " (interfaces_test): held by the process itself, descriptor " +
                    std::to_string(holder) + ",";
  EXPECT_NE(S::npos, runTool({"doctor"}).out.find(problem));
  ::close(holder);
  EXPECT_EQ(S::npos, runTool({"doctor"}).out.find("PROBLEM  netlink"));
  const auto withoutSockets = [&] {
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_NOFILE, &none);
    return GetFormattedMACAddress(&info, &error) == 0 && error == 101 ? 0 : 1;
  };
  EXPECT_EQ(0, runForked(withoutSockets).status);
  wire.sent.clear();
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  EXPECT_EQ(0U, GetEthernetInterfacesDetails(interfaces, nullptr));
  EXPECT_EQ(0U, GetFormattedMACAddress(&info, nullptr));
  EXPECT_EQ("", wire.sent);
}

TEST(MacAddresses, CountsByNameAndAddress) {
  wire.script = {linkOf("lo", "loopbk") + linkOf("LO", "loopbk") + linkOf("l", "aaaaaa") +
                     linkOf("tun") + linkOf("lo2", S(6, '\0')),
                 kDone};
  EXPECT_EQ("2 61-61-61-61-61-61 00-00-00-00-00-00 #", addresses());
  wire.script = {linkOf("d", "dddddd") + linkOf("c", "cccccc"),
                 linkOf("b", "bbbbbb") + linkOf("a", "aaaaaa"), kDone};
  EXPECT_EQ("3 64-64-64-64-64-64 63-63-63-63-63-63 62-62-62-62-62-62", addresses());
}

TEST(MacAddresses, ToolSaysWhy) {
  ASSERT_NO_FATAL_FAILURE(makeNetwork(
      "tuntap add name tun mode tun\nlink add name \\\"b\xe9 address 02:00:00:00:00:01 type "
      "bridge\n"
      "link add name c type bridge\nlink add name d type bridge\nlink add name e type bridge\n"));
  const S out = runTool({"interfaces", "--why"}).out + runTool({"interfaces", "--json"}).out;
  for (const char* part :
       {"lo\t00-00-00-00-00-00\tnot running\tdoes not count: it is named lo\ntun\t-\tnot running\t"
        "does not count: it has no hardware address\n\\\"b\xe9\t02-00-00-00-00-01\tnot running\t"
        "counts: address 1 of 3\n",
        "does not count: three addresses come before it\n",
        "\"tun\", \"address\": null, \"running\": false},\n", "\"\\u005c\\u0022b\\u00e9\""})
    EXPECT_NE(S::npos, out.find(part)) << part << out;
}

TEST(LinkMessage, AddressIsAlwaysSixBytes) {
  const S name = attribute(IFLA_IFNAME, "a");
  const S four = attribute(IFLA_ADDRESS, "\x0a\x1b\x2c\x3d");
  EXPECT_EQ("a 0a-1b-2c-3d-05-00 0", parse(linkWith(~0x40U, four + name)));
  EXPECT_EQ("a 0a-1b-2c-3d-00-00 1", parse(linkWith(0x40U, name + four)));
  const S longName(3000, 'x');
  EXPECT_EQ(longName.substr(0, 1023) + "  0", parse(linkWith(0, attribute(IFLA_IFNAME, longName))));
}

TEST(LinkMessage, StaysInsideForgedAndCutMessages) {
  Dice dice;
  const auto upTo = [&](std::size_t most) { return dice.below(most + 1); };
  for (int round = 0; round < 3000; ++round) {
    S body = linkWith(static_cast<unsigned int>(upTo(0xFF)), "");
    for (std::size_t i = upTo(6); i > 0; --i)
      body +=
          attribute(static_cast<unsigned short>(upTo(4)), S(upTo(9), 'n') + S(upTo(2), '\0') + "m",
                    upTo(3) ? -1 : static_cast<int>(upTo(20)));
    body.resize(upTo(3) ? body.size() : upTo(body.size()));
    EXPECT_EQ(model(body), parse(body)) << "round " << round;
  }
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
  Guarded shorterThanItsHeader(sizeof(std::uint32_t));
  *shorterThanItsHeader.data<std::uint32_t>() = 4;
  EXPECT_EQ(1, rtnl_print_link(shorterThanItsHeader.data<nlmsghdr>(), links));
  EXPECT_EQ(1, rtnl_print_link(nullptr, links));
  ASSERT_EQ(1U, links.size());
  EXPECT_EQ(S(sizeof links[0], '\0'), bytesOf(links[0]));
}
