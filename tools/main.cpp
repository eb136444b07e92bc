#include <iostream>
#include <new>

#include "tools/codes.h"

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
  addExplainCommand(app);
  addDoctorCommand(app);
}

int refuse(const char* reason) {
  std::cout.flush();
  std::cerr << "zrtool: " << reason << '\n';
  return kRefused;
}

std::string exitStatus(unsigned int status) {
  return std::to_string(status) + ' ' + inWords(CodeOf::kExitStatus, status);
}

int runCommand(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    if (!std::cout.flush()) throw Refusal("standard output could not be written");
    return 0;
  } catch (const CLI::ParseError& problem) {
    return app.exit(problem) == 0 ? 0 : kBadUsage;
  } catch (const std::bad_alloc&) {
    return refuse("there is not enough memory");
  } catch (const std::exception& problem) {
    return refuse(problem.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "The services of libzrcommon on the command line.\n"
      "Exit status: " +
          exitStatus(0) + ", " + exitStatus(kRefused) + ", " + exitStatus(kBadUsage) + '.',
      "zrtool");
  app.set_version_flag("--version", "zrtool " ZRCOMMON_VERSION);
  requireAction(&app);
  addCommands(app);
  return runCommand(app, argc, argv);
}
