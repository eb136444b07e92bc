#include <zrcommon/network.h>

#include <iostream>
#include <iterator>

#include "tools/codes.h"
#include "tools/hex.h"

namespace {

constexpr char kDefaultFile[] = "/usr/lib/Valdrix/Valdrix/zrinet.opt";
constexpr unsigned int kDone = 1;

void show(const std::string& file) {
  tagInetSettings settings = {};
  const unsigned int result = ReadInetOptions(file.c_str(), &settings);
  if (result != kDone) throw refusal(CodeOf::kSettingsRead, result, file);
  printHex(std::cout, settings.bytes, sizeof settings.bytes);
}

void save(const std::string& file) {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  tagInetSettings settings = {};
  const std::string bytes = parseHex(text);
  if (bytes.size() != sizeof settings.bytes)
    throw Refusal("a settings record has 788 bytes; standard input gave " +
                  std::to_string(bytes.size()));
  bytes.copy(reinterpret_cast<char*>(settings.bytes), bytes.size());
  const unsigned int result = SaveInetOptions(file.c_str(), &settings);
  if (result != kDone) throw refusal(CodeOf::kSettingsSaved, result, file);
}

void addAction(CLI::App* family, const char* name, const char* help,
               void (*action)(const std::string&)) {
  auto* command = family->add_subcommand(name, help);
  auto file = std::make_shared<std::string>(kDefaultFile);
  command->add_option("FILE", *file, "Options file")->capture_default_str();
  command->callback([file, action] { action(*file); });
}

}  // namespace

void addOptionsCommands(CLI::App& app) {
  auto* family = app.add_subcommand("options", "The internet settings file, as hexadecimal bytes");
  requireAction(family);
  addAction(family, "show", "Print the 788 bytes", show);
  addAction(family, "save", "Write the 788 bytes given on standard input", save);
}
