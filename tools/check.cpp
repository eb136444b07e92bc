#include <zrcommon/network.h>

#include "tools/codes.h"
#include "tools/commands.h"
#include "tools/internet_library.h"

namespace {

constexpr unsigned int kNothingReached = 105;

void check(Output& out) {
  unsigned int error = 0;
  const bool isReached = CheckInternetConnection(&error) == 1;
  const std::string reason = inWords(isReached ? CodeOf::kReached : CodeOf::kNotReached, error);
  const std::string line = std::string("result ") + (isReached ? "1" : "0") + ", code " +
                           std::to_string(error) + ": " + reason;
  out.result({{"reachable", isReached}, {"code", error}, {"reason", reason}});
  if (isReached) return out.print(line + '\n');
  const std::string problem = error == kNothingReached ? internetLibraryProblem() : "";
  throw Refusal(line + (problem.empty() ? "" : ": " + problem) + "; see zrtool doctor", error, 0);
}

}  // namespace

void addCheckCommand(CLI::App& app, Output& out) {
  app.add_subcommand("check", "Tell whether the internet is reachable, and if not, why")
      ->callback([&out] { check(out); });
}
