#include "tools/netlink_ports.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

constexpr char kRouteProtocol[] = "0";

std::string contentOf(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

std::vector<std::string> entriesOf(const std::string& directory) {
  std::vector<std::string> names;
  std::error_code problem;
  for (fs::directory_iterator it(directory, problem), end; !problem && it != end;
       it.increment(problem))
    names.push_back(it->path().filename());
  return names;
}

std::vector<std::string> allProcesses() {
  std::vector<std::string> processes;
  for (const std::string& name : entriesOf("/proc"))
    if (name.find_first_not_of("0123456789") == std::string::npos) processes.push_back(name);
  return processes;
}

std::string described(const std::string& process) {
  std::string name = contentOf("/proc/" + process + "/comm");
  if (!name.empty()) name.pop_back();
  return "process " + process + " (" + name + ")";
}

// The inode of the route socket that holds the port, as the process's network lists it; empty if
// the port is free.
std::string holdingSocket(const std::string& process) {
  std::istringstream sockets(contentOf("/proc/" + process + "/net/netlink"));
  for (std::string line; std::getline(sockets, line);) {
    std::istringstream columns(line);
    std::string ignored;
    std::string protocol;
    std::string port;
    std::string inode;
    columns >> ignored >> protocol >> port;
    if (protocol != kRouteProtocol || port != process) continue;
    while (columns >> ignored) inode = ignored;
    return inode;
  }
  return "";
}

// The descriptor under which the process holds the socket; empty if it does not.
std::string descriptorOf(const std::string& process, const std::string& socket) {
  const std::string directory = "/proc/" + process + "/fd";
  std::error_code problem;
  const std::string target = "socket:[" + socket + "]";
  for (const std::string& descriptor : entriesOf(directory))
    if (fs::read_symlink(fs::path(directory) / descriptor, problem) == target) return descriptor;
  return "";
}

std::string holderOf(const std::string& socket, const std::string& process) {
  std::vector<std::string> suspects = allProcesses();
  suspects.insert(suspects.begin(), process);
  for (const std::string& suspect : suspects) {
    const std::string descriptor = descriptorOf(suspect, socket);
    if (descriptor.empty()) continue;
    return (suspect == process ? "the process itself" : described(suspect)) + ", descriptor " +
           descriptor;
  }
  return "a process that may not be looked at";
}

}  // namespace

NetlinkPorts findTakenNetlinkPorts(const std::vector<std::string>& processes) {
  std::set<std::string> suspects(processes.begin(), processes.end());
  for (const std::string& process : allProcesses())
    if (contentOf("/proc/" + process + "/maps").find("/libzrcommon.so") != std::string::npos)
      suspects.insert(process);
  NetlinkPorts ports;
  for (const std::string& process : suspects) {
    ++ports.processesLookedAt;
    const std::string socket = holdingSocket(process);
    if (!socket.empty()) ports.taken.push_back({described(process), holderOf(socket, process)});
  }
  return ports;
}
