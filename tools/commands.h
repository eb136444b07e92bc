#ifndef ZRCOMMON_TOOLS_COMMANDS_H
#define ZRCOMMON_TOOLS_COMMANDS_H

#include <CLI/CLI.hpp>

#include "tools/output.h"

/// Requires a subcommand. (CLI11's own check would report a mistyped one as a missing one.)
inline void requireAction(CLI::App* family) {
  family->require_subcommand(0, 1)->callback([family] {
    if (family->get_subcommands().empty()) throw CLI::RequiredError::Subcommand(1);
  });
}

// One function for each family; each adds its commands, whose callbacks do the work.
void addCheckCommand(CLI::App& app, Output& out);
void addCompletionCommands(CLI::App& app, Output& out);
void addDirectoryCommands(CLI::App& app, Output& out);
void addDoctorCommand(CLI::App& app, Output& out);
void addExplainCommand(CLI::App& app, Output& out);
void addFetchCommand(CLI::App& app, Output& out);
void addFileCommands(CLI::App& app, Output& out);
void addInterfacesCommand(CLI::App& app, Output& out);
void addLogCommand(CLI::App& app);
void addOptionsCommands(CLI::App& app, Output& out);
void addProfileCommands(CLI::App& app, Output& out);
void addSandboxCommand(CLI::App& app);
void addSecureCommands(CLI::App& app, Output& out);
void addSystemCommands(CLI::App& app, Output& out);

#endif  // ZRCOMMON_TOOLS_COMMANDS_H
