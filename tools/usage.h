#ifndef ZRCOMMON_TOOLS_USAGE_H
#define ZRCOMMON_TOOLS_USAGE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// The names of the subcommands that the help shows.
std::vector<std::string> commandsOf(const CLI::App& app);

/// Requires a subcommand. (CLI11's own check would report a mistyped one as a missing one.)
void requireAction(CLI::App* family);

/// Accepts a decimal number in the range, for Option::transform(). Leading zeros, which CLI11 takes
/// for octal, are removed.
CLI::Validator numberFrom(long long least, long long most);

/// Accepts one of the words.
CLI::Validator oneOf(const std::vector<std::string>& words);

/// The command line as CLI11 takes it: the last argument first, and an empty value ("--name=") as
/// an argument of its own, which CLI11 would otherwise look for in the next argument.
std::vector<std::string> reversedArguments(int argc, const char* const* argv);

/// One plain sentence on what is wrong with the command line, with a suggestion for a mistyped
/// word, and where to read on.
std::string complaint(const CLI::App& app, const CLI::ParseError& problem);

/// Breaks the lines of a help text between words. The rest of a line is indented like its
/// description, which begins at @p column.
std::string wrapped(const std::string& help, std::size_t width, std::size_t column);

/// The width of the terminal at standard output, or 80.
std::size_t terminalWidth();

#endif  // ZRCOMMON_TOOLS_USAGE_H
