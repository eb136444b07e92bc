#include <zrcommon/network.h>

#include <iostream>
#include <iterator>

#include "tools/commands.h"
#include "tools/hex.h"

namespace {

constexpr char kDefaultFile[] = "/usr/lib/Valdrix/Valdrix/zrinet.opt";

void show(const std::string& file) {
  tagInetSettings settings = {};
  switch (ReadInetOptions(file.c_str(), &settings)) {
    case 1:
      printHex(std::cout, settings.bytes, sizeof settings.bytes);
      return;
    case 2:
      throw Refusal("2: there is no " + file + ", or its path has 256 characters or more");
    case 3:
      throw Refusal("3: " + file + " cannot be opened for reading");
    default:
      throw Refusal("4: " + file + " does not hold the 788 bytes of a settings record");
  }
}

void save(const std::string& file) {
  const std::string text(std::istreambuf_iterator<char>(std::cin), {});
  tagInetSettings settings = {};
  const std::string bytes = parseHex(text);
  if (bytes.size() != sizeof settings.bytes)
    throw Refusal("a settings record has 788 bytes; standard input gave " +
                  std::to_string(bytes.size()));
  bytes.copy(reinterpret_cast<char*>(settings.bytes), bytes.size());
  switch (SaveInetOptions(file.c_str(), &settings)) {
    case 1:
      return;
    case 2:
      throw Refusal("2: " + file +
                    " can neither be opened nor created, or its path has 256 "
                    "characters or more");
    default:
      throw Refusal("3: the record could not be written whole; " + file + " was deleted");
  }
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
