#include <gtest/gtest.h>
#include <linux/rtnetlink.h>
#include <zrcommon/network.h>

#include <cstring>
#include <random>
#include <vector>

#include "support/guarded.h"

namespace {

const std::string kMac = "\x0a\x1b\x2c\x3d\x4e\xff";

template <typename Record>
std::string bytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof record};
}

// An attribute, which claims to have a length of its own if one is given.
std::string attribute(unsigned short type, const std::string& payload, int claimed = -1) {
  const auto length = static_cast<unsigned short>(claimed < 0 ? payload.size() + 4 : claimed);
  std::string bytes = bytesOf(rtattr{length, type}) + payload;
  bytes.resize((bytes.size() + 3) / 4 * 4, '!');
  return bytes;
}

std::string linkWith(unsigned int flags, const std::string& attributes) {
  ifinfomsg info = {};
  info.ifi_flags = flags;
  return bytesOf(info) + attributes;
}

// What a message with this body gives, as text; its last byte stands before an unreadable page.
std::string parse(const std::string& body) {
  nlmsghdr header = {};
  header.nlmsg_len = static_cast<std::uint32_t>(sizeof header + body.size());
  Guarded message(header.nlmsg_len);
  std::memcpy(message.data(), (bytesOf(header) + body).data(), message.size());
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links(1);
  EXPECT_EQ(1, rtnl_print_link(message.data<nlmsghdr>(), links));
  EXPECT_EQ(2U, links.size());
  return std::string(links[1].name) + " " + links[1].macAddress + " " +
         std::to_string(links[1].running);
}

// The same by the shortest way: every attribute is cut out as a string.
std::string model(const std::string& body) {
  std::string name, mac;
  for (std::size_t at = 16; at + 4 <= body.size();) {
    rtattr head = {};
    body.copy(reinterpret_cast<char*>(&head), 4, at);
    if (head.rta_len < 4 || head.rta_len > body.size() - at) break;
    std::string payload = body.substr(at + 4, head.rta_len - 4U);
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

TEST(LinkMessage, TakesNameAddressAndRunning) {
  const std::string name = attribute(IFLA_IFNAME, std::string("eth7\0x", 6));
  const std::string mac = attribute(IFLA_ADDRESS, kMac);
  const std::string longName = attribute(IFLA_IFNAME, std::string(3000, 'x'));
  const struct {
    int line;
    std::string body;
    std::string expected;
  } rows[] = {
      {__LINE__, linkWith(0x40, attribute(IFLA_MTU, "1234") + name + mac),
       "eth7 0a-1b-2c-3d-4e-ff 1"},
      {__LINE__, linkWith(~0x40U, mac + attribute(99, "") + name), "eth7 0a-1b-2c-3d-4e-ff 0"},
      {__LINE__, linkWith(0x41, ""), "  1"},
      {__LINE__, linkWith(0, longName + mac), std::string(1023, 'x') + " 0a-1b-2c-3d-4e-ff 0"},
      // The walk ends at a damaged attribute, after what was good.
      {__LINE__, linkWith(0, name + attribute(IFLA_MTU, "1234", 3) + mac), "eth7  0"},
      {__LINE__, linkWith(0, name + attribute(IFLA_ADDRESS, kMac, 13)), "eth7  0"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.expected, parse(row.body)) << "row of line " << row.line;
}

TEST(LinkMessage, AddressIsAlwaysSixBytes) {
  const std::string shortMac = attribute(IFLA_ADDRESS, kMac.substr(0, 4));
  const std::string name = attribute(IFLA_IFNAME, "a");
  EXPECT_EQ("a 0a-1b-2c-3d-05-00 0", parse(linkWith(0, shortMac + name)));
  EXPECT_EQ("a 0a-1b-2c-3d-00-00 0", parse(linkWith(0, name + shortMac)));
  EXPECT_EQ(" 0a-1b-2c-3d-4e-ff 0", parse(linkWith(0, attribute(IFLA_ADDRESS, kMac + "more"))));
}

TEST(LinkMessage, StaysInsideForgedAndCutMessages) {
  std::mt19937 random(3074);
  const auto any = [&](std::size_t most) { return random() % (most + 1); };
  for (int round = 0; round < 3000; ++round) {
    std::string body = linkWith(static_cast<unsigned int>(any(0xFF)), "");
    for (std::size_t i = any(6); i > 0; --i)
      body += attribute(static_cast<unsigned short>(any(4)),
                        std::string(any(9), 'n') + std::string(any(2), '\0') + "m",
                        any(3) ? -1 : static_cast<int>(any(20)));
    body.resize(any(3) ? body.size() : any(body.size()));
    EXPECT_EQ(model(body), parse(body)) << "round " << round;
  }
  std::vector<tagZR_ETHERNET_INTERFACES_INFO> links;
  Guarded shorterThanItsHeader(sizeof(std::uint32_t));
  *shorterThanItsHeader.data<std::uint32_t>() = 4;
  EXPECT_EQ(1, rtnl_print_link(shorterThanItsHeader.data<nlmsghdr>(), links));
  EXPECT_EQ(1, rtnl_print_link(nullptr, links));
  ASSERT_EQ(1U, links.size());
  EXPECT_EQ(std::string(sizeof links[0], '\0'), bytesOf(links[0]));
}
