#include <strings.h>
#include <zrcommon/network.h>

#include <iostream>

#include "tools/codes.h"
#include "tools/json.h"

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

void printText(const std::vector<Link>& links, bool why) {
  for (const Link& link : links) {
    std::cout << link.name << '\t' << (link.address.empty() ? "-" : link.address) << '\t'
              << (link.isRunning ? "running" : "not running");
    if (why) std::cout << '\t' << (link.counts ? "counts: " : "does not count: ") << link.why;
    std::cout << '\n';
  }
}

void printObjects(const std::vector<Link>& links, bool why) {
  std::vector<JsonObject> objects;
  for (const Link& link : links) {
    JsonObject object;
    object.add("name", link.name);
    if (link.address.empty())
      object.add("address", nullptr);
    else
      object.add("address", link.address);
    object.add("running", link.isRunning);
    if (why) object.add("counts", link.counts).add("why", link.why);
    objects.push_back(object);
  }
  printJson(objects);
}

struct InterfacesArguments {
  bool json = false;
  bool why = false;
};

void listInterfaces(const InterfacesArguments& arguments) {
  Interfaces interfaces;
  unsigned int error = 0;
  if (!GetEthernetInterfacesDetails(interfaces, &error))
    throw refusal(CodeOf::kLinks, error, "the links could not be listed");
  std::vector<Link> links;
  Judge judge;
  for (const auto& interface : interfaces) links.push_back(judge.judge(interface));
  (arguments.json ? printObjects : printText)(links, arguments.why);
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
