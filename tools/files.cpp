#include <zrcommon/system.h>

#include <algorithm>

#include "tools/commands.h"
#include "tools/input.h"
#include "tools/new_file.h"

namespace {

constexpr mode_t kNewMode = 0600;
constexpr mode_t kModeForAll = 0777;
constexpr std::size_t kPatternMost = 2042;

struct CopyArguments {
  std::string source;
  std::string target;
  bool isForAll = false;
};

bool isSame(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// The library takes a failed read for the end of the source.
void requireWhole(const CopyArguments& arguments, const InputFile& source, const NewFile& target) {
  struct stat copied = {};
  if (::stat(target.openPath().c_str(), &copied) != 0) throw systemRefusal(arguments.target);
  if (copied.st_size < source.status().st_size)
    throw Refusal(arguments.source + " was not copied: only " + std::to_string(copied.st_size) +
                  " of its " + std::to_string(source.status().st_size) + " bytes could be read");
}

void copy(const CopyArguments& arguments) {
  const InputFile source(arguments.source);
  NewFile target(arguments.target, kNewMode);
  if (target.replaced() && isSame(source.status(), *target.replaced()))
    throw Refusal(arguments.source + " and " + arguments.target + " are the same file");
  if (arguments.isForAll) target.setMode(kModeForAll);
  const auto copyFile = arguments.isForAll ? CopyFile : ZRCopyFile;
  errno = 0;
  if (!copyFile(source.openPath().c_str(), target.openPath().c_str()))
    throw systemRefusal(arguments.source + " was not copied to " + arguments.target);
  requireWhole(arguments, source, target);
  target.commit();
}

struct FindArguments {
  std::string pattern;
  std::string file;
};

bool isLower(char c) {
  return 'a' <= c && c <= 'z';
}

// A file that is shorter than the overlap of two pieces ends the search with EINVAL.
long long findFrom(const InputFile& file, const FindArguments& arguments, long long start) {
  const auto* const pattern = reinterpret_cast<const unsigned char*>(arguments.pattern.data());
  const auto length = static_cast<int>(arguments.pattern.size());
  errno = 0;
  const long long found = SearchInFile(file.descriptor(), pattern, length, start);
  if (found < 0 && errno != 0 && errno != EINVAL) throw systemRefusal(arguments.file);
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
  const InputFile file(arguments.file);
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
                    "Give the target mode 0777, so that every local user can change it");
  command->callback([arguments] { copy(*arguments); });
}

void addFind(CLI::App& app, Output& out) {
  auto* command = app.add_subcommand(
      "find", "Print the offset of every occurrence of a pattern in a file, overlapping ones too");
  command->footer(
      "The file is upper-cased before it is compared and the pattern is not: upper-case letters in "
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
