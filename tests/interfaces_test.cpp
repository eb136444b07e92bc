#include <linux/rtnetlink.h>
#include <net/if.h>
#include <zrcommon/network.h>

#include "support/calls.h"
#include "support/test.h"

namespace {

// A message or an attribute may say to have another length than it has.
S message(unsigned short type, const S& body, long length = -1) {
  const long said = length < 0 ? 16 + static_cast<long>(body.size()) : length;
  return bytesOf(nlmsghdr{static_cast<std::uint32_t>(said), type, 0, 0, 0}) + body;
}

S attribute(unsigned short type, const S& payload, long length = -1) {
  const long said = length < 0 ? 4 + static_cast<long>(payload.size()) : length;
  S bytes = bytesOf(rtattr{static_cast<unsigned short>(said), type}) + payload;
  bytes.resize((bytes.size() + 3) / 4 * 4, '!');
  return bytes;
}

S flags(unsigned int bits) {
  return bytesOf(ifinfomsg{0, 0, 0, 0, bits, 0});
}

S linkOf(const S& name, const S& address = "") {
  const S addressed = address.empty() ? "" : attribute(IFLA_ADDRESS, address);
  return message(RTM_NEWLINK, flags(0) + attribute(IFLA_IFNAME, name) + addressed);
}

const S kDone = message(NLMSG_DONE, "");

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
  datagrams = script;
  S names;
  for (const S& each : list()) names += each.substr(0, each.find(' ')) + ",";
  return names + std::to_string(datagrams.size());
}

// The count, the addresses, and '#' for each entry that is as it was.
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

// The record that a message gives; its last byte stands before an unreadable page.
S parse(const S& message) {
  Guarded memory(message.size());
  message.copy(memory.data(), message.size());
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links(1);
  EXPECT_EQ(1, rtnl_print_link(reinterpret_cast<nlmsghdr*>(memory.data()), links));
  return links.size() == 2 ? text(links[1]) : "no record";
}

}  // namespace

TEST(Interfaces, ListsWhatTheKernelHas) {
  ASSERT_EQ(0, std::system("ip link add va address 02:00:00:00:00:0a type veth peer name vb"));
  const auto links = list();
  EXPECT_EQ(0, std::system("ip link del va"));
  EXPECT_EQ(3U, links.size());
  for (const char* some : {"lo 00-00-00-00-00-00 1", "va 02-00-00-00-00-0a 0"})
    EXPECT_EQ(1, std::count(links.begin(), links.end(), some)) << some;
  EXPECT_EQ(S("\x11\0\0\0\x12\0\x01\x03\x01\0\0\0", 12) + bytesOf(::getpid()) + "\x11", lastSent);
  EXPECT_EQ(8192U, lastReceiveBytes);
}

TEST(Interfaces, OnlyTheDoneMessageEndsTheDump) {
  const S error = message(NLMSG_ERROR, S(20, '\xff'));
  EXPECT_EQ("a,b,c,0", listedFrom({kReceiveFails, "", linkOf("a"), error, message(NLMSG_NOOP, ""),
                                   linkOf("b") + linkOf("c"), kReceiveFails, kDone}));
  watch([] { EXPECT_EQ("a,0", listedFrom({linkOf("a") + kDone})); }, {Fault::kFails, 3, EIO});
}

TEST(Interfaces, WalksEveryDatagramToItsEnd) {
  for (const auto& [line, datagram, expected] : Rows<int, S, S>{
           {__LINE__, linkOf("a") + kDone + linkOf("b") + kDone + linkOf("c"), "a,b,c,1"},
           {__LINE__, linkOf("a") + message(RTM_DELLINK, "") + linkOf("b") + kDone, "a,b,1"},
           {__LINE__, kDone + message(NLMSG_NOOP, "1234", 17) + linkOf("b"), "b,1"},
           // An unpadded end, and one that holds no header.
           {__LINE__, linkOf("a") + kDone + message(NLMSG_NOOP, "x"), "a,1"},
           {__LINE__, kDone + linkOf("a") + linkOf("b").substr(0, 15), "a,1"},
           // Lengths below a header's or beyond the datagram's end stop the walk.
           {__LINE__, kDone + message(RTM_NEWLINK, "", 15) + linkOf("b"), "1"},
           {__LINE__, kDone + message(RTM_NEWLINK, "", 0) + linkOf("b"), "1"},
           {__LINE__, kDone + linkOf("a") + message(RTM_NEWLINK, "", 17), "a,1"},
           {__LINE__, kDone + message(RTM_NEWLINK, "", 0x80000000) + linkOf("b"), "1"}}) {
    // The buffer still holds a link where the datagram ends.
    const S before = S(datagram.size() / 4 * 4, '\0') + linkOf("old");
    EXPECT_EQ(expected, listedFrom({before, datagram, kDone})) << "line " << line;
  }
  datagrams.clear();
}

TEST(Interfaces, NullErrorGivesNothing) {
  tagZR_MACADDR_INFO info = {};
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> interfaces;
  EXPECT_EQ("", watch([&] {
                  EXPECT_EQ(0U, GetEthernetInterfacesDetails(interfaces, nullptr));
                  EXPECT_EQ(0U, GetFormattedMACAddress(&info, nullptr));
                }).text());
}

TEST(MacAddresses, CountsByNameAndAddress) {
  datagrams = {linkOf("lo", "loopbk") + linkOf("LO", "loopbk") + linkOf("l", "aaaaaa") +
                   linkOf("none") + linkOf("lo2", S(6, '\0')),
               kDone};
  EXPECT_EQ("2 61-61-61-61-61-61 00-00-00-00-00-00 #", addresses());
  datagrams = {linkOf("d", "dddddd") + linkOf("c", "cccccc"),
               linkOf("b", "bbbbbb") + linkOf("a", "aaaaaa"), kDone};
  EXPECT_EQ("3 64-64-64-64-64-64 63-63-63-63-63-63 62-62-62-62-62-62", addresses());
}

TEST(LinkMessage, AddressIsAlwaysSixBytes) {
  const S name = attribute(IFLA_IFNAME, "a");
  const S four = attribute(IFLA_ADDRESS, "\x0a\x1b\x2c\x3d");
  EXPECT_EQ("a 0a-1b-2c-3d-05-00 0", parse(message(0, flags(~0x40U) + four + name)));
  EXPECT_EQ("a 0a-1b-2c-3d-00-00 1", parse(message(0, flags(0x40) + name + four)));
  const S eight = attribute(IFLA_ADDRESS, "\x0a\x1b\x2c\x3d\x4e\x5f\x60\x71");
  EXPECT_EQ("a 0a-1b-2c-3d-4e-5f 0", parse(message(0, flags(0) + eight + name)));
}

TEST(LinkMessage, StaysInsideForgedAndShortMessages) {
  const S name = attribute(IFLA_IFNAME, "name"), up = flags(0x40), longName(3000, 'x');
  for (const auto& [line, body, expected] : Rows<int, S, S>{
           {__LINE__, up, "  1"},
           {__LINE__, up + name, "name  1"},
           {__LINE__, up + name + attribute(IFLA_IFNAME, "n\0m"s), "n  1"},
           {__LINE__, up + attribute(IFLA_IFNAME, longName), longName.substr(0, 1023) + "  1"},
           {__LINE__, up + attribute(2, "12345") + name, "name  1"},
           {__LINE__, up + name + attribute(IFLA_IFNAME, ""), "  1"},
           // At the end are too few bytes for an attribute, of which messages begin at odd places.
           {__LINE__, up + name + "\5", "name  1"},
           {__LINE__, up + name + "\4\0\3"s, "name  1"},
           // Lengths below an attribute's or beyond the message's end stop the walk.
           {__LINE__, up + attribute(2, "", 3) + name, "  1"},
           {__LINE__, up + attribute(2, "", 0) + name, "  1"},
           {__LINE__, up + name + attribute(IFLA_IFNAME, "abc", 9), "name  1"},
           {__LINE__, up + attribute(IFLA_IFNAME, "name", 7), "nam  1"},
           // The message ends before its flags do.
           {__LINE__, up.substr(0, 9), "  1"},
           {__LINE__, up.substr(0, 8), "  0"},
           {__LINE__, "", "  0"}})
    EXPECT_EQ(expected, parse(message(0, body))) << "line " << line;
  EXPECT_EQ("  0", parse("\4\0\0\0"s));
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
  EXPECT_EQ(1, rtnl_print_link(nullptr, links));
  EXPECT_EQ(0U, links.size());
}
