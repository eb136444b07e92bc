#include <strings.h>
#include <zrcommon/network.h>

#include <cerrno>

#include "tools/codes.h"
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

// Repeats the decision of GetFormattedMACAddress() and names the reason.
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

void print(const Link& link, bool why, Output& out) {
  Json object = {{"name", link.name}, {"address", nullptr}, {"running", link.isRunning}};
  if (!link.address.empty()) object["address"] = link.address;
  std::string line = link.name + '\t' + (link.address.empty() ? "-" : link.address) + '\t' +
                     (link.isRunning ? "running" : "not running");
  if (why) {
    object.update({{"counts", link.counts}, {"why", link.why}});
    line += (link.counts ? "\tcounts: " : "\tdoes not count: ") + link.why;
  }
  out.entry(object, line);
}

void listInterfaces(bool why, Output& out) {
  Interfaces interfaces;
  unsigned int error = 0;
  errno = 0;
  if (!GetEthernetInterfacesDetails(interfaces, &error))
    throw refusal(CodeOf::kLinks, error, "the links could not be listed", errno);
  out.startList();
  Judge judge;
  for (const auto& interface : interfaces) print(judge.judge(interface), why, out);
}

}  // namespace

void addInterfacesCommand(CLI::App& app, Output& out) {
  auto* command =
      app.add_subcommand("interfaces", "List the links: name, hardware address, running or not");
  auto why = std::make_shared<bool>(false);
  command->add_flag("--why", *why,
                    "Say for each link whether it counts for the three addresses of the machine, "
                    "and why");
  command->callback([why, &out] { listInterfaces(*why, out); });
}
