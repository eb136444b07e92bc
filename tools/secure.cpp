#include <zrcommon/codecs.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <vector>

#include "tools/commands.h"

namespace {

constexpr char kKeyVariable[] = "ZRTOOL_KEY";

struct SecureArguments {
  std::string command;
  std::string keyFile;
};

std::string keyFromFile(const std::string& name) {
  std::ifstream file(name);
  std::string key;
  if (!std::getline(file, key)) throw Refusal("no key could be read from " + name);
  if (!key.empty() && key.back() == '\r') key.pop_back();
  return key;
}

// Never from the command line, which every process of the machine can read.
std::string readKey(const std::string& keyFile) {
  const char* const variable = std::getenv(kKeyVariable);
  if (keyFile.empty() && !variable)
    throw Refusal(std::string("there is no key: set ") + kKeyVariable + " or give --key-file");
  const std::string key = keyFile.empty() ? variable : keyFromFile(keyFile);
  if (key.empty()) throw Refusal("the key is empty");
  return key;
}

// A pair of one byte becomes four and '=' at worst.
std::vector<char> withRoomToGrow(const std::string& command) {
  std::vector<char> buffer(command.begin(), command.end());
  buffer.resize(5 * command.size() + 1);
  return buffer;
}

void convert(const SecureArguments& arguments, bool toSecure, Output& out) {
  CPHPOperations operations(readKey(arguments.keyFile).c_str());
  std::vector<char> buffer = withRoomToGrow(arguments.command);
  const auto capacity = static_cast<unsigned int>(buffer.size());
  const bool converted = toSecure ? operations.ConvertToSecurePhpCommand(buffer.data(), capacity)
                                  : operations.ConvertToPlainPhpCommand(buffer.data(), capacity);
  if (converted) {
    return out.result({{"command", buffer.data()}}, buffer.data());
  }
  throw Refusal(
      std::string("the command could not be converted") + " past \"" + buffer.data() + "\": " +
      (toSecure ? "names have 1 to 765 bytes, values at most 1023"
                : "names and values must be secure strings of this key, of at most 1023 bytes") +
      ", and all that follows the last '?' at most 5119");
}

void addDirection(CLI::App& app, const char* name, const char* help, bool toSecure, Output& out) {
  auto* command = app.add_subcommand(name, help);
  auto arguments = std::make_shared<SecureArguments>();
  command->add_option("COMMAND", arguments->command, "Such as page?name=value&name=value")
      ->required();
  command
      ->add_option(
          "--key-file", arguments->keyFile,
          std::string("Take the key from the first line of this file, not from ") + kKeyVariable)
      ->type_name("FILE");
  command->callback([arguments, toSecure, &out] { convert(*arguments, toSecure, out); });
}

}  // namespace

void addSecureCommands(CLI::App& app, Output& out) {
  addDirection(app, "secure", "Hide the names and values in a request command", true, out);
  addDirection(app, "plain", "Show the names and values in a secure request command", false, out);
}
