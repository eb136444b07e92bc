#include "tools/profile.h"

#include <zrcommon/profile.h>

#include <iostream>
#include <optional>

#include "profile/error.h"
#include "profile/line.h"
#include "tools/codes.h"
#include "tools/json.h"

using namespace zrcommon;

namespace {

struct ProfileArguments {
  std::string file;
  std::string section;
  std::string key;
  std::string value;
  std::optional<std::string> textDefault;
  std::optional<int> numberDefault;
  bool json = false;
  bool discard = false;
};

unsigned int read(const ProfileArguments& arguments, std::string& text) {
  char value[kChunkLength + 1] = {};
  unsigned int error = 0;
  GetPrivateProfileString(arguments.section.c_str(), arguments.key.c_str(), "", value, sizeof value,
                          arguments.file.c_str(), &error);
  text = value;
  return error;
}

void get(const ProfileArguments& arguments) {
  std::string value;
  const unsigned int error = read(arguments, value);
  if (error != kSuccess && !arguments.textDefault)
    throw refusal(CodeOf::kProfile, error, arguments.file);
  std::cout << (error == kSuccess ? value : *arguments.textDefault) << '\n';
}

void getInt(const ProfileArguments& arguments) {
  unsigned int error = 0;
  const int number =
      GetPrivateProfileInt(arguments.section.c_str(), arguments.key.c_str(),
                           arguments.numberDefault.value_or(0), arguments.file.c_str(), &error);
  if (error != kSuccess && !arguments.numberDefault)
    throw refusal(CodeOf::kProfile, error, arguments.file);
  std::cout << number << '\n';
}

// Reads the entry back: the library cuts long texts silently, notices no full disk, and writes keys
// that no reader can find, such as "#key".
void set(const ProfileArguments& arguments) {
  unsigned int error = 0;
  WritePrivateProfileString(arguments.section.c_str(), arguments.key.c_str(),
                            arguments.value.c_str(), arguments.file.c_str(), &error);
  if (error != kSuccess) throw refusal(CodeOf::kProfile, error, arguments.file);
  std::string value;
  if (read(arguments, value) != kSuccess || value != trimmed(arguments.value))
    throw Refusal(arguments.file + " was changed, but the entry does not read back as given: " +
                  "its names or value are longer than 256 characters or hold characters that mean "
                  "something else there, or the disk is full");
}

void lint(const ProfileArguments& arguments) {
  const std::vector<Remark> remarks = lintProfile(arguments.file);
  std::vector<JsonObject> objects;
  for (const Remark& remark : remarks) {
    if (arguments.json)
      objects.push_back(JsonObject().add("line", remark.line).add("remark", remark.text));
    else
      std::cout << arguments.file << ':' << remark.line << ": " << remark.text << '\n';
  }
  if (arguments.json) printJson(objects);
  if (!remarks.empty())
    throw Refusal(arguments.file + ": remarks: " + std::to_string(remarks.size()));
}

void recover(const ProfileArguments& arguments) {
  recoverProfile(arguments.file, arguments.discard);
}

using Arguments = std::shared_ptr<ProfileArguments>;

CLI::App* addAction(CLI::App* family, const char* name, const char* help,
                    const Arguments& arguments, void (*action)(const ProfileArguments&)) {
  auto* command = family->add_subcommand(name, help);
  command->add_option("FILE", arguments->file, "Profile file")->required();
  command->callback([arguments, action] { action(*arguments); });
  return command;
}

void addEntry(CLI::App* command, const Arguments& arguments) {
  command->add_option("SECTION", arguments->section, "Name of the section")->required();
  command->add_option("KEY", arguments->key, "Name of the entry")->required();
}

}  // namespace

void addProfileCommands(CLI::App& app) {
  auto* family = app.add_subcommand("profile", "Profile (INI) files, as components see them");
  requireAction(family);
  auto arguments = std::make_shared<ProfileArguments>();
  auto* text = addAction(family, "get", "Print the value of an entry", arguments, get);
  addEntry(text, arguments);
  text->add_option("--default", arguments->textDefault, "Print this if there is no value");
  auto* number = addAction(family, "get-int", "Print the value as an integer", arguments, getInt);
  addEntry(number, arguments);
  number->add_option("--default", arguments->numberDefault, "Print this if there is no value");
  auto* change = addAction(family, "set", "Change or add an entry", arguments, set);
  addEntry(change, arguments);
  change->add_option("VALUE", arguments->value, "Its new value")->required();
  auto* linting = addAction(family, "lint", "Say, line by line, what is not read as people expect",
                            arguments, lint);
  linting->add_flag("--json", arguments->json, "Print a JSON array of line and remark");
  addAction(
      family, "recover",
      "Tell what an interrupted change left of FILE, and finish it where that is safe. Nothing "
      "else may be changing FILE meanwhile.",
      arguments, recover)
      ->add_flag("--discard", arguments->discard, "Remove FILE.tmp where FILE itself is whole");
}
