#include <zrcommon/system.h>

#include <cerrno>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <map>

#include "tools/codes.h"
#include "tools/hex.h"
#include "tools/json.h"

namespace {

constexpr int kPathBytes = 4096;

using PathService = int (*)(char*);

int appPath(char* buffer) {
  return GetAppPath(buffer, kPathBytes);
}

void printPaths(bool json) {
  const struct {
    const char* name;
    PathService get;
  } services[] = {{"installation", GetZrPath}, {"application", appPath}, {"module", GetModulePath}};
  std::string missing;
  JsonObject object;
  for (const auto& service : services) {
    char path[kPathBytes] = {};
    if (!service.get(path))
      missing += std::string(missing.empty() ? "" : ", ") + service.name;
    else if (json)
      object.add(service.name, path);
    else
      std::cout << std::left << std::setw(14) << service.name << path << '\n';
  }
  if (json) printJson(object);
  if (!missing.empty()) throw Refusal("missing, or too long: " + missing);
}

struct ServiceArguments {
  std::string name;
  int action = 0;
};

void control(const ServiceArguments& arguments) {
  unsigned int error = 0;
  if (!HandleService(arguments.name.c_str(), arguments.action, &error))
    throw refusal(CodeOf::kService, error, arguments.name);
}

void printTime(bool json) {
  constexpr const char* kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                   "Thursday", "Friday", "Saturday"};
  tagSYSTEMTIME now = {};
  if (!GetLocalTime(&now)) throw Refusal("the system gives no time");
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", now.wYear, now.wMonth,
                now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  const char* const day = kDays[now.wDayOfWeek % 7];
  if (json)
    printJson(JsonObject().add("time", text).add("dayOfWeek", day));
  else
    std::cout << text << ' ' << day << '\n';
}

void printFeatures() {
  constexpr char kFile[] = "/usr/lib/Valdrix/Valdrix/zrfeature.dat";
  tagZR_FEATURE feature = {};
  unsigned int error = 0;
  errno = 0;
  if (!GetZRFeaturesSetting(&feature, &error)) throw refusal(CodeOf::kFeature, error, kFile);
  printHex(std::cout, feature.bytes, sizeof feature.bytes);
}

// A command without arguments of its own, whose result a program may want.
void addPrinter(CLI::App& app, const char* name, const char* help, void (*print)(bool json)) {
  auto* command = app.add_subcommand(name, help);
  auto json = std::make_shared<bool>(false);
  command->add_flag("--json", *json, "Print a JSON object");
  command->callback([json, print] { print(*json); });
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
  addPrinter(app, "paths", "Print the installation's and the running program's directories",
             printPaths);
  addService(app);
  addPrinter(app, "time", "Print the local time, to the millisecond", printTime);
  app.add_subcommand("features", "Print the feature record as hexadecimal bytes")
      ->callback(printFeatures);
}
