#include <iostream>

#include "tools/commands.h"

namespace {

constexpr int kRefused = 1;
constexpr int kBadUsage = 2;

void addCommands(CLI::App& app) {
  addFetchCommand(app);
  addCheckCommand(app);
  addInterfacesCommand(app);
  addDirectoryCommands(app);
  addOptionsCommands(app);
  addProfileCommands(app);
  addSecureCommands(app);
  addLogCommand(app);
  addFileCommands(app);
  addSystemCommands(app);
  addDoctorCommand(app);
}

int runCommand(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    if (!std::cout.flush()) throw Refusal("standard output could not be written");
    return 0;
  } catch (const CLI::ParseError& problem) {
    return app.exit(problem) == 0 ? 0 : kBadUsage;
  } catch (const std::exception& problem) {
    std::cout.flush();
    std::cerr << "zrtool: " << problem.what() << '\n';
    return kRefused;
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "The services of libzrcommon on the command line.\n"
      "Exit status: 0 done, 1 the library said no, 2 bad usage.",
      "zrtool");
  requireAction(&app);
  addCommands(app);
  return runCommand(app, argc, argv);
}
