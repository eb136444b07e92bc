#include <strings.h>
#include <zrcommon/network.h>

#include <cstdio>
#include <iostream>

#include "tools/commands.h"

namespace {

using Interfaces = std::vector<tagZR_ETHERNET_INTERFACES_INFO>;

struct Link {
  std::string name;
  std::string address;
  bool isRunning;
  bool counts;
  std::string why;
};

// Tells why as well what GetFormattedMACAddress() decides.
class Judge {
 public:
  Link judge(const tagZR_ETHERNET_INTERFACES_INFO& interface) {
    Link link = {interface.name, interface.macAddress, interface.running != 0, false, ""};
    if (::strcasecmp(interface.name, "lo") == 0)
      link.why = "it is named lo";
    else if (link.address.empty())
      link.why = "it has no hardware address";
    else if (counted_ == kMost)
      link.why = "three addresses come before it";
    else
      link.why = "address " + std::to_string(++counted_) + " of " + std::to_string(kMost);
    link.counts = link.why.rfind("address ", 0) == 0;
    return link;
  }

 private:
  static constexpr int kMost = 3;
  int counted_ = 0;
};

// Bytes outside of ASCII are escaped one by one: a name need not be UTF-8, and JSON has to be.
std::string quoted(const std::string& text) {
  std::string json = "\"";
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    char escape[8] = {each};
    if (byte < 0x20 || byte > 0x7E || each == '"' || each == '\\')
      (void)std::snprintf(escape, sizeof escape, "\\u%04x", unsigned{byte});
    json += escape;
  }
  return json + '"';
}

void printText(const std::vector<Link>& links, bool why) {
  for (const Link& link : links) {
    std::cout << link.name << '\t' << (link.address.empty() ? "-" : link.address) << '\t'
              << (link.isRunning ? "running" : "not running");
    if (why) std::cout << '\t' << (link.counts ? "counts: " : "does not count: ") << link.why;
    std::cout << '\n';
  }
}

void printJson(const std::vector<Link>& links, bool why) {
  const auto boolean = [](bool value) { return value ? "true" : "false"; };
  const char* separator = "[";
  for (const Link& link : links) {
    std::cout << separator << "\n  {\"name\": " << quoted(link.name)
              << ", \"address\": " << (link.address.empty() ? "null" : quoted(link.address))
              << ", \"running\": " << boolean(link.isRunning);
    if (why)
      std::cout << ", \"counts\": " << boolean(link.counts) << ", \"why\": " << quoted(link.why);
    std::cout << '}';
    separator = ",";
  }
  std::cout << (links.empty() ? "[" : "\n") << "]\n";
}

struct InterfacesArguments {
  bool json = false;
  bool why = false;
};

void listInterfaces(const InterfacesArguments& arguments) {
  Interfaces interfaces;
  unsigned int error = 0;
  if (!GetEthernetInterfacesDetails(interfaces, &error))
    throw Refusal(std::to_string(error) +
                  ": no netlink socket could be opened and bound to the process id");
  std::vector<Link> links;
  Judge judge;
  for (const auto& interface : interfaces) links.push_back(judge.judge(interface));
  (arguments.json ? printJson : printText)(links, arguments.why);
}

}  // namespace

void addInterfacesCommand(CLI::App& app) {
  auto* command =
      app.add_subcommand("interfaces", "List the links: name, hardware address, running or not");
  auto arguments = std::make_shared<InterfacesArguments>();
  command->add_flag("--json", arguments->json, "Print a JSON array; a missing address is null");
  command->add_flag(
      "--why", arguments->why,
      "Say of each link whether it counts for the machine's three addresses, and why");
  command->callback([arguments] { listInterfaces(*arguments); });
}
