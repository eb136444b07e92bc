#include <sys/stat.h>
#include <zrcommon/logging.h>

#include <filesystem>

#include "tools/commands.h"

namespace {

struct LogArguments {
  std::string file;
  std::string component;
  std::string message;
  unsigned int level = 1;
};

std::uintmax_t sizeOf(const std::string& file) {
  std::error_code missing;
  const auto size = std::filesystem::file_size(file, missing);
  return missing ? 0 : size;
}

// A named pipe would wait for a reader, and a device has no size.
void requireRegular(const std::string& file) {
  struct stat status = {};
  if (::stat(file.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return;
  throw Refusal(file + " is not a regular file");
}

// The logger reports nothing, so the size of the file tells whether the line arrived.
void log(const LogArguments& arguments) {
  if ((arguments.level & g_dwCurrentTraceLevel__) == 0)
    throw Refusal("level " + std::to_string(arguments.level) + " has no bit of the trace mask " +
                  std::to_string(g_dwCurrentTraceLevel__) + ": nothing was written");
  requireRegular(arguments.file);
  const auto before = sizeOf(arguments.file);
  CZRLogger logger(arguments.file.c_str(), "zrtool", arguments.component.c_str());
  errno = 0;
  logger.WriteToLog(arguments.level, static_cast<unsigned int>(arguments.message.size() + 1), "%s",
                    arguments.message.c_str());
  const auto expected = before + std::min<std::size_t>(arguments.component.size(), 259) + 1 +
                        arguments.message.size() + 2;
  if (sizeOf(arguments.file) < expected)
    throw systemRefusal("the line could not be written whole to " + arguments.file);
}

}  // namespace

void addLogCommand(CLI::App& app) {
  auto* command = app.add_subcommand("log", "Append a line to a log file");
  auto arguments = std::make_shared<LogArguments>();
  command->add_option("FILE", arguments->file, "Log file, created if missing")->required();
  command->add_option("COMPONENT", arguments->component, "Starts the line")->required();
  command->add_option("MESSAGE", arguments->message, "The text of the line")->required();
  command->add_option("--level", arguments->level, "Level mask; the trace mask is 3")
      ->capture_default_str()
      ->transform(numberFrom(0, 0xFFFFFFFF));
  command->callback([arguments] { log(*arguments); });
}
