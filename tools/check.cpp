#include <zrcommon/network.h>

#include <iostream>

#include "tools/commands.h"

namespace {

std::string reasonOf(unsigned int error) {
  switch (error) {
    case 140:
      return "msg32.htm was not reached, though msg32.bin beside it was";
    case 105:
      return "neither msg32.htm nor msg32.bin was reached";
    default:
      return "entry 12, \"Connection Check\", of the server directory is missing, empty or too "
             "long, so nothing was asked";
  }
}

void check() {
  unsigned int error = 0;
  if (!CheckInternetConnection(&error))
    throw Refusal("result 0, code " + std::to_string(error) + ": " + reasonOf(error));
  std::cout << "result 1, code " << error << ": the internet is reachable\n";
}

}  // namespace

void addCheckCommand(CLI::App& app) {
  app.add_subcommand("check", "Tell whether the internet is reachable, and if not, why")
      ->callback(check);
}
