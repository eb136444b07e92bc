#ifndef ZRCOMMON_TOOLS_COMMANDS_H
#define ZRCOMMON_TOOLS_COMMANDS_H

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>

/// The library said no: main() prints the reason to standard error and exits with 1. Bad usage is
/// CLI11's to find and exits with 2; results go to standard output.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Makes it bad usage to name no subcommand. (CLI11's own way would say so to a mistyped one too,
/// instead of naming the word it does not know.)
inline void requireAction(CLI::App* family) {
  family->callback([family] {
    if (family->get_subcommands().empty()) throw CLI::RequiredError::Subcommand(1);
  });
}

// One function a family; each adds its commands, whose callbacks do the work.
void addCheckCommand(CLI::App& app);
void addDirectoryCommands(CLI::App& app);
void addDoctorCommand(CLI::App& app);
void addExplainCommand(CLI::App& app);
void addFetchCommand(CLI::App& app);
void addFileCommands(CLI::App& app);
void addInterfacesCommand(CLI::App& app);
void addLogCommand(CLI::App& app);
void addOptionsCommands(CLI::App& app);
void addProfileCommands(CLI::App& app);
void addSecureCommands(CLI::App& app);
void addSystemCommands(CLI::App& app);

#endif  // ZRCOMMON_TOOLS_COMMANDS_H
