#include <zrcommon/network.h>

#include <iostream>

#include "tools/codes.h"
#include "tools/json.h"

namespace {

void check(bool json) {
  unsigned int error = 0;
  const bool isReached = CheckInternetConnection(&error) == 1;
  const std::string reason = inWords(isReached ? CodeOf::kReached : CodeOf::kNotReached, error);
  const std::string line = std::string("result ") + (isReached ? "1" : "0") + ", code " +
                           std::to_string(error) + ": " + reason;
  if (json)
    printJson(JsonObject().add("reachable", isReached).add("code", error).add("reason", reason));
  else if (isReached)
    std::cout << line << '\n';
  if (!isReached) throw Refusal(line);
}

}  // namespace

void addCheckCommand(CLI::App& app) {
  auto* command =
      app.add_subcommand("check", "Tell whether the internet is reachable, and if not, why");
  auto json = std::make_shared<bool>(false);
  command->add_flag("--json", *json, "Print a JSON object of reachable, code and reason");
  command->callback([json] { check(*json); });
}
