#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/file.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

enum Code : unsigned int { kSuccess = 0, kBindFailed = 101 };

constexpr std::size_t kBufferBytes = 8192;

sockaddr_nl addressOf(std::uint32_t port) {
  sockaddr_nl address = {};
  address.nl_family = AF_NETLINK;
  address.nl_pid = port;
  return address;
}

msghdr messageOf(sockaddr_nl& peer, iovec& content) {
  msghdr message = {};
  message.msg_name = &peer;
  message.msg_namelen = sizeof peer;
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  return message;
}

// A route socket whose port is the process id.
class RouteSocket {
 public:
  RouteSocket()
      : port_(static_cast<std::uint32_t>(::getpid())),
        socket_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE)) {}

  bool bind() const {
    const sockaddr_nl own = addressOf(port_);
    return ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own) >= 0;
  }

  void requestLinks() const {
    struct {
      nlmsghdr header;
      rtgenmsg body;
    } request = {};
    request.header.nlmsg_len = NLMSG_LENGTH(sizeof request.body);
    request.header.nlmsg_type = RTM_GETLINK;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.header.nlmsg_seq = 1;
    request.header.nlmsg_pid = port_;
    request.body.rtgen_family = AF_PACKET;
    sockaddr_nl kernel = addressOf(0);
    iovec content = {&request, request.header.nlmsg_len};
    const msghdr message = messageOf(kernel, content);
    (void)::sendmsg(socket_.get(), &message, 0);
  }

  ssize_t receive(char (&buffer)[kBufferBytes]) const {
    sockaddr_nl sender = {};
    iovec content = {buffer, sizeof buffer};
    msghdr message = messageOf(sender, content);
    return ::recvmsg(socket_.get(), &message, 0);
  }

 private:
  std::uint32_t port_;
  Fd socket_;
};

// Handles the complete messages of one datagram. True if one of them ends the dump.
bool takeMessages(char* bytes, ssize_t count,
                  std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces) {
  bool isDone = false;
  while (count >= ssize_t{sizeof(nlmsghdr)}) {
    auto* const message = reinterpret_cast<nlmsghdr*>(bytes);
    const ssize_t length = message->nlmsg_len;
    if (length < ssize_t{sizeof(nlmsghdr)} || length > count) break;
    if (message->nlmsg_type == RTM_NEWLINK) rtnl_print_link(message, interfaces);
    // Kept: GetEthernetInterfacesDetails() also handles the messages that follow the done message
    // in the same datagram (test Interfaces.WalksEveryDatagramToItsEnd)
    if (message->nlmsg_type == NLMSG_DONE) isDone = true;
    bytes += NLMSG_ALIGN(length);
    count -= NLMSG_ALIGN(length);
  }
  return isDone;
}

}  // namespace

unsigned int GetEthernetInterfacesDetails(std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces,
                                          unsigned int* error) {
  if (!error) return 0;
  *error = kSuccess;
  const RouteSocket socket;
  if (!socket.bind()) {
    *error = kBindFailed;
    return 0;
  }
  socket.requestLinks();
  // Kept: GetEthernetInterfacesDetails() receives until it gets the done message. It receives again
  // after a failed or empty receive and after an error message of the kernel, has no time limit and
  // does not check sequence numbers (test Interfaces.OnlyTheDoneMessageEndsTheDump)
  alignas(nlmsghdr) char buffer[kBufferBytes];
  bool isDone = false;
  while (!isDone) isDone = takeMessages(buffer, socket.receive(buffer), interfaces);
  return 1;
}
