#ifndef ZRCOMMON_TOOLS_COMMANDS_H
#define ZRCOMMON_TOOLS_COMMANDS_H

#include <CLI/CLI.hpp>

#include "tools/output.h"
#include "tools/usage.h"

/// The words after "--", for a command that takes the words of another command: the first one,
/// which is an argument of its own, and those that CLI11 leaves after that.
inline std::vector<std::string> withRemaining(const std::string& first, const CLI::App& command) {
  std::vector<std::string> words = command.remaining();
  if (!words.empty() && words.front() == "--") words.erase(words.begin());
  words.insert(words.begin(), first);
  return words;
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
