#include <zrcommon/system.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <map>

#include "tools/commands.h"
#include "tools/hex.h"

namespace {

constexpr int kPathBytes = 4096;

using PathService = int (*)(char*);

int appPath(char* buffer) {
  return GetAppPath(buffer, kPathBytes);
}

void printPaths() {
  const struct {
    const char* name;
    PathService get;
  } services[] = {{"installation", GetZrPath}, {"application", appPath}, {"module", GetModulePath}};
  std::string missing;
  for (const auto& service : services) {
    char path[kPathBytes] = {};
    if (service.get(path))
      std::cout << std::left << std::setw(14) << service.name << path << '\n';
    else
      missing += std::string(missing.empty() ? "" : ", ") + service.name;
  }
  if (!missing.empty()) throw Refusal("missing, or too long: " + missing);
}

struct ServiceArguments {
  std::string name;
  int action = 0;
};

void control(const ServiceArguments& arguments) {
  unsigned int error = 0;
  if (!HandleService(arguments.name.c_str(), arguments.action, &error))
    throw Refusal(std::to_string(error) + ": there is no init script " + arguments.name +
                  " in /etc/init.d/rc.d or /etc/init.d");
}

void printTime() {
  constexpr const char* kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                   "Thursday", "Friday", "Saturday"};
  tagSYSTEMTIME now = {};
  if (!GetLocalTime(&now)) throw Refusal("the system gives no time");
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d %s\n", now.wYear, now.wMonth,
                now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds,
                kDays[now.wDayOfWeek % 7]);
  std::cout << text;
}

void printFeatures() {
  tagZR_FEATURE feature = {};
  unsigned int error = 0;
  errno = 0;
  if (GetZRFeaturesSetting(&feature, &error)) {
    printHex(std::cout, feature.bytes, sizeof feature.bytes);
    return;
  }
  constexpr char kFile[] = "/usr/lib/Valdrix/Valdrix/zrfeature.dat";
  if (error == 2) throw Refusal(std::string("2: ") + kFile + " is missing or cannot be opened");
  throw Refusal(std::to_string(error) + ": " + kFile + ": " +
                (error ? std::strerror(static_cast<int>(error)) : "shorter than 11 bytes"));
}

void addService(CLI::App& app) {
  auto* command = app.add_subcommand(
      "service",
      "Run a service's init script and wait for its end. What the script says on standard output\n"
      "is thrown away, and whether it succeeded is not known.");
  auto arguments = std::make_shared<ServiceArguments>();
  command->add_option("NAME", arguments->name, "Bare name of the script")->required();
  const std::map<std::string, int> actions = {
      {"start", 1}, {"restart", 2}, {"stop", 3}, {"status", 4}};
  command->add_option("ACTION", arguments->action, "start, restart, stop or status")
      ->required()
      ->transform(CLI::CheckedTransformer(actions).description(""))
      ->type_name("");
  command->callback([arguments] { control(*arguments); });
}

}  // namespace

void addSystemCommands(CLI::App& app) {
  app.add_subcommand("paths", "Print the installation's and the running program's directories")
      ->callback(printPaths);
  addService(app);
  app.add_subcommand("time", "Print the local time, to the millisecond")->callback(printTime);
  app.add_subcommand("features", "Print the feature record as hexadecimal bytes")
      ->callback(printFeatures);
}
