#include <filesystem>
#include <sstream>

#include "tools/commands.h"
#include "tools/input.h"
#include "tools/profile_lines.h"

namespace {

using Words = std::vector<std::string>;

// Where the words lead: the command, its arguments so far, and the option whose value comes next.
struct Place {
  const CLI::App* command;
  Words arguments;
  const CLI::Option* option = nullptr;
};

const CLI::App* commandNamed(const CLI::App& parent, const std::string& name) {
  for (const CLI::App* each : parent.get_subcommands([](const CLI::App*) { return true; }))
    if (each->get_name() == name) return each;
  return nullptr;
}

void follow(Place& place, const std::string& word) {
  if (word == "=") return;
  if (place.option) {
    place.option = nullptr;
  } else if (word.rfind('-', 0) == 0) {
    const CLI::Option* const option = place.command->get_option_no_throw(word);
    if (option && option->get_type_size() > 0) place.option = option;
  } else if (const CLI::App* const command = commandNamed(*place.command, word)) {
    place = {command, {}};
  } else {
    place.arguments.push_back(word);
  }
}

// The command's own, and --json, which stands with any command.
Words optionNames(const CLI::App& command) {
  Words names;
  for (const CLI::Option* option : command.get_options())
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  if (command.get_parent() && command.get_fallthrough()) names.emplace_back("--json");
  return names;
}

// The sections of a profile; with a section, its keys.
Words namesInProfile(const std::string& file, const std::string& section) {
  Words names;
  const std::string content = InputFile(file).content();
  for (const ProfileLine& line : profileLines(content)) {
    const bool isWanted =
        section.empty() ? line.isHeader() : line.isEntry() && line.section == section;
    if (isWanted && !line.hidden) names.emplace_back(section.empty() ? line.section : line.key);
  }
  return names;
}

Words services() {
  Words names;
  std::error_code ignored;
  for (const auto& script : std::filesystem::directory_iterator("/etc/init.d", ignored))
    if (!script.is_directory()) names.push_back(script.path().filename());
  return names;
}

// A choice of words is described as "{one,other}".
Words choices(const std::string& type) {
  Words words;
  const std::size_t open = type.find('{');
  if (open == type.npos) return words;
  std::istringstream list(type.substr(open + 1, type.find('}') - open - 1));
  for (std::string word; std::getline(list, word, ',');) words.push_back(word);
  return words;
}

Words valuesOf(const CLI::Option& option, const Place& place) {
  const std::string name = option.get_single_name();
  if (name == "SECTION") return namesInProfile(place.arguments.at(0), "");
  if (name == "KEY") return namesInProfile(place.arguments.at(0), place.arguments.at(1));
  if (place.command->get_name() == "service" && name == "NAME") return services();
  return choices(option.get_type_name());
}

Words nextArgument(const Place& place) {
  std::size_t position = 0;
  for (const CLI::Option* option : place.command->get_options())
    if (option->get_positional() && position++ == place.arguments.size())
      return valuesOf(*option, place);
  return commandsOf(*place.command);
}

Words candidates(const CLI::App& app, const Words& words) {
  Place place{&app, {}};
  for (std::size_t i = 1; i + 1 < words.size(); ++i) follow(place, words[i]);
  if (place.option) return valuesOf(*place.option, place);
  return words.back().rfind('-', 0) == 0 ? optionNames(*place.command) : nextArgument(place);
}

// The words are those of the command line, from zrtool on. A shell may take "=" for a word.
void complete(const CLI::App& app, const Words& words, Output& out) {
  const std::string last = words.back() == "=" ? "" : words.back();
  out.startList();
  try {
    for (const std::string& each : candidates(app, words))
      if (each.rfind(last, 0) == 0) out.entry(each, each);
  } catch (const Refusal&) {
    // A profile that cannot be read has no names to offer.
  }
}

// One line for each command without actions, and one for each of its options.
void describe(const CLI::App& command, const std::string& path, Output& out) {
  for (const std::string& each : commandsOf(command))
    describe(*commandNamed(command, each), path + (path.empty() ? "" : " ") + each, out);
  if (!commandsOf(command).empty()) return;
  out.entry(path, path);
  for (const CLI::Option* option : command.get_options())
    for (const std::string& name : option->get_lnames())
      out.entry(path + " --" + name, path + " --" + name);
}

}  // namespace

void addCompletionCommands(CLI::App& app, Output& out) {
  auto* command = app.add_subcommand(
      "complete", "Print what the last of these words may become; for the shell");
  command->group("");
  auto first = std::make_shared<std::string>();
  command->add_option("WORD", *first, "What stands on the command line")->required();
  command->fallthrough(false)->prefix_command();
  command->callback(
      [&app, &out, command, first] { complete(app, withRemaining(*first, *command), out); });
  auto* description = app.add_subcommand("describe", "Print every command with its options");
  description->group("");
  description->callback([&app, &out] { describe(app, "", out); });
}
