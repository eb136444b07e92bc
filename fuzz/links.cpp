// Netlink messages of any shape: one at a time, and as datagrams of a dump that a made-up kernel
// sends.
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>
#include <zrcommon/network.h>

#include <algorithm>
#include <cstring>

#include "fuzz/support.h"

namespace {

constexpr std::size_t kAttributes = sizeof(nlmsghdr) + sizeof(ifinfomsg);

using Links = std::vector<tagZR_ETHERNET_INTERFACES_INFO>;

Input* g_kernel = nullptr;

std::string doneMessage() {
  nlmsghdr done = {};
  done.nlmsg_len = sizeof done;
  done.nlmsg_type = NLMSG_DONE;
  return {reinterpret_cast<const char*>(&done), sizeof done};
}

// A number in the machine's form, with zeros for what the message lacks.
template <typename Number>
Number numberAt(const std::string& message, std::size_t at) {
  Number number = 0;
  const std::string bytes = message.substr(std::min(at, message.size()), sizeof number);
  std::memcpy(&number, bytes.data(), bytes.size());
  return number;
}

std::string addressAt(const std::string& message, std::size_t at) {
  std::string text;
  for (std::size_t i = at; i < at + 6; ++i) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x-", i < message.size() ? message[i] & 0xFF : 0);
    text += digits;
  }
  return text.substr(0, 17);
}

void checkLink(const tagZR_ETHERNET_INTERFACES_INFO& link, const std::string& message) {
  std::string name;
  std::string address;
  for (std::size_t at = kAttributes; at + sizeof(rtattr) <= message.size();) {
    const std::size_t length = numberAt<unsigned short>(message, at);
    const unsigned int type = numberAt<unsigned short>(message, at + 2);
    if (length < sizeof(rtattr) || length > message.size() - at) break;
    const std::string payload = message.substr(at + sizeof(rtattr), length - sizeof(rtattr));
    if (type == IFLA_IFNAME) name = visible(payload).substr(0, sizeof link.name - 1);
    if (type == IFLA_ADDRESS) address = addressAt(message, at + sizeof(rtattr));
    at += RTA_ALIGN(length);
  }
  const auto flags =
      numberAt<unsigned int>(message, sizeof(nlmsghdr) + offsetof(ifinfomsg, ifi_flags));
  expect(link.name == name, "the name is the last in the message");
  expect(link.macAddress == address, "the address is the last in the message");
  expect(link.running == ((flags & IFF_RUNNING) != 0), "the link runs if the message says so");
}

// Its memory ends where its own length says.
void checkMessage(std::string message) {
  message.resize(std::max(message.size(), sizeof(std::uint32_t)));
  const auto length =
      std::min(numberAt<std::uint32_t>(message, 0), static_cast<std::uint32_t>(message.size()));
  std::memcpy(message.data(), &length, sizeof length);
  std::vector<char> memory(message.begin(),
                           message.begin() + std::max<std::ptrdiff_t>(length, sizeof length));
  message.resize(length);
  Links links(1);
  expect(rtnl_print_link(reinterpret_cast<nlmsghdr*>(memory.data()), links) == 1, "always 1");
  expect(links.size() == 2, "one link is appended");
  checkLink(links.back(), message);
}

}  // namespace

// In place of the C library's, for the library too.
ssize_t recvmsg(int, msghdr* message, int) {
  std::string datagram = g_kernel->line();
  if (datagram.empty()) datagram = doneMessage();
  if (datagram == "fail") return -1;
  const std::size_t count = std::min(datagram.size(), message->msg_iov->iov_len);
  std::memcpy(message->msg_iov->iov_base, datagram.data(), count);
  return static_cast<ssize_t>(count);
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkMessage(std::string(reinterpret_cast<const char*>(data), size));
  Input input(data, size);
  g_kernel = &input;
  Links links;
  unsigned int error = 1;
  expect(GetEthernetInterfacesDetails(links, &error) == 1 && error == 0, "the links are listed");
  return 0;
}
