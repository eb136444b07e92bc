#include <zrcommon/system.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/file.h"
#include "tools/commands.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kPatternMost = 2042;

struct CopyArguments {
  std::string source;
  std::string target;
  bool isForAll = false;
};

void copy(const CopyArguments& arguments) {
  const auto copyFile = arguments.isForAll ? CopyFile : ZRCopyFile;
  errno = 0;
  if (copyFile(arguments.source.c_str(), arguments.target.c_str())) return;
  const std::string reason =
      errno ? std::strerror(errno) : "the target took less than it was given";
  throw Refusal(arguments.source + " was not copied to " + arguments.target + ": " + reason);
}

struct FindArguments {
  std::string pattern;
  std::string file;
};

bool isLower(char c) {
  return 'a' <= c && c <= 'z';
}

// A file shorter than the overlap of two pieces ends the search with EINVAL.
long long findFrom(const Fd& file, const FindArguments& arguments, long long start) {
  const auto* const pattern = reinterpret_cast<const unsigned char*>(arguments.pattern.data());
  errno = 0;
  const long long found =
      SearchInFile(file.get(), pattern, static_cast<int>(arguments.pattern.size()), start);
  if (found < 0 && errno != 0 && errno != EINVAL)
    throw Refusal(arguments.file + ": " + std::strerror(errno));
  return found;
}

[[noreturn]] void refuseAsNotFound(const FindArguments& arguments) {
  const std::string& pattern = arguments.pattern;
  const bool hasLower = std::any_of(pattern.begin(), pattern.end(), isLower);
  throw Refusal("nothing found in " + arguments.file +
                (hasLower
                     ? ": lower-case letters in a pattern match nothing, upper-case ones match "
                       "both cases"
                     : ""));
}

void find(const FindArguments& arguments, Output& out) {
  if (arguments.pattern.empty() || arguments.pattern.size() > kPatternMost)
    throw Refusal("a pattern has 1 to " + std::to_string(kPatternMost) + " bytes");
  const Fd file(openFile(arguments.file.c_str(), O_RDONLY));
  if (!file) throw Refusal(arguments.file + ": " + std::strerror(errno));
  out.startList();
  long long found = findFrom(file, arguments, 0);
  if (found < 0) refuseAsNotFound(arguments);
  for (; found >= 0; found = findFrom(file, arguments, found + 1))
    out.entry(found, std::to_string(found));
}

void addCopy(CLI::App& app) {
  auto* command = app.add_subcommand("copy", "Copy a file's bytes");
  auto arguments = std::make_shared<CopyArguments>();
  command->add_option("SOURCE", arguments->source, "File to read")->required();
  command->add_option("TARGET", arguments->target, "File to replace, or to create with mode 0600")
      ->required();
  command->add_flag("--for-all", arguments->isForAll,
                    "Give the target mode 0777, and delete it if it cannot be written whole");
  command->callback([arguments] { copy(*arguments); });
}

void addFind(CLI::App& app, Output& out) {
  auto* command = app.add_subcommand(
      "find",
      "Print the offset of every place in a file where a pattern lies, overlapping ones included.\n"
      "The file is upper-cased before it is compared and the pattern is not: upper-case letters "
      "in\n"
      "the pattern match both cases, lower-case ones match nothing.");
  auto arguments = std::make_shared<FindArguments>();
  command->add_option("PATTERN", arguments->pattern, "1 to 2042 bytes, letters in upper case")
      ->required();
  command->add_option("FILE", arguments->file, "File to search")->required();
  command->callback([arguments, &out] { find(*arguments, out); });
}

}  // namespace

void addFileCommands(CLI::App& app, Output& out) {
  addCopy(app);
  addFind(app, out);
}
