#ifndef ZRCOMMON_TOOLS_COMMANDS_H
#define ZRCOMMON_TOOLS_COMMANDS_H

#include <CLI/CLI.hpp>

#include "tools/output.h"
#include "tools/usage.h"

// One function for each family; each adds its commands, whose callbacks do the work.
void addCheckCommand(CLI::App& app, Output& out);
void addDirectoryCommands(CLI::App& app, Output& out);
void addDoctorCommand(CLI::App& app, Output& out);
void addExplainCommand(CLI::App& app, Output& out);
void addFetchCommand(CLI::App& app, Output& out);
void addFileCommands(CLI::App& app, Output& out);
void addInterfacesCommand(CLI::App& app, Output& out);
void addLogCommand(CLI::App& app);
void addOptionsCommands(CLI::App& app, Output& out);
void addProfileCommands(CLI::App& app, Output& out);
void addSecureCommands(CLI::App& app, Output& out);
void addSystemCommands(CLI::App& app, Output& out);

#endif  // ZRCOMMON_TOOLS_COMMANDS_H
