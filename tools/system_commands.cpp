#include <zrcommon/system.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "base/product_files.h"
#include "tools/codes.h"
#include "tools/commands.h"
#include "tools/hex.h"

using namespace zrcommon;

namespace {

constexpr int kPathBytes = 4096;

using PathService = int (*)(char*);

int appPath(char* buffer) {
  return GetAppPath(buffer, kPathBytes);
}

void printPaths(Output& out) {
  const struct {
    const char* name;
    PathService get;
  } services[] = {{"installation", GetZrPath}, {"application", appPath}, {"module", GetModulePath}};
  std::string missing;
  Json paths = Json::object();
  for (const auto& service : services) {
    char path[kPathBytes] = {};
    if (service.get(path))
      paths[service.name] = path;
    else
      missing += std::string(missing.empty() ? "" : ", ") + service.name;
  }
  for (const auto& [name, path] : paths.items())
    out.print(name + std::string(14 - name.size(), ' ') + path.get<std::string>() + '\n');
  out.result(paths);
  if (!missing.empty()) throw Refusal("missing, or too long: " + missing);
}

// The library counts them from 1.
const std::vector<std::string> kActions = {"start", "restart", "stop", "status"};

struct ServiceArguments {
  std::string name;
  std::string action;
};

void control(const ServiceArguments& arguments) {
  unsigned int error = 0;
  const auto action = std::find(kActions.begin(), kActions.end(), arguments.action);
  const auto number = static_cast<int>(action - kActions.begin()) + 1;
  if (!HandleService(arguments.name.c_str(), number, &error))
    throw refusal(CodeOf::kService, error, arguments.name);
}

void printTime(Output& out) {
  constexpr const char* kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                   "Thursday", "Friday", "Saturday"};
  tagSYSTEMTIME now = {};
  if (!GetLocalTime(&now)) throw Refusal("the system gives no time");
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", now.wYear, now.wMonth,
                now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  const char* const day = kDays[now.wDayOfWeek % 7];
  out.result({{"time", text}, {"dayOfWeek", day}}, std::string(text) + ' ' + day);
}

void printFeatures(Output& out) {
  tagZR_FEATURE feature = {};
  unsigned int error = 0;
  errno = 0;
  if (!GetZRFeaturesSetting(&feature, &error))
    throw refusal(CodeOf::kFeature, error, kFeaturePath.get(), errno);
  const std::string text = hexText(feature.bytes, sizeof feature.bytes);
  out.result({{"bytes", text}}, text);
}

void addService(CLI::App& app) {
  auto* command = app.add_subcommand("service", "Run a service's init script and wait for its end");
  command->footer(
      "What the script prints on standard output is discarded. Whether it succeeded is not known.");
  auto arguments = std::make_shared<ServiceArguments>();
  command->add_option("NAME", arguments->name, "Bare name of the script")->required();
  command->add_option("ACTION", arguments->action, "start, restart, stop or status")
      ->required()
      ->check(oneOf(kActions));
  command->callback([arguments] { control(*arguments); });
}

}  // namespace

void addSystemCommands(CLI::App& app, Output& out) {
  app.add_subcommand("paths", "Print the directories of the installation and of this program")
      ->callback([&out] { printPaths(out); });
  addService(app);
  app.add_subcommand("time", "Print the local time, to the millisecond")->callback([&out] {
    printTime(out);
  });
  app.add_subcommand("features", "Print the feature record as hexadecimal bytes")->callback([&out] {
    printFeatures(out);
  });
}
