#include <zrcommon/codecs.h>

#include <cstdlib>
#include <vector>

#include "tools/commands.h"
#include "tools/input.h"

namespace {

constexpr char kKeyVariable[] = "ZRTOOL_KEY";
constexpr char kSecureLimits[] = "names have 1 to 765 bytes, values at most 1023";
constexpr char kPlainLimits[] =
    "names and values must be secure strings of this key, of at most 1023 bytes";

struct SecureArguments {
  std::string command;
  std::string keyFile;
};

std::string keyFromFile(const std::string& name) {
  const std::string content = name == "-" ? standardInput() : InputFile(name).content();
  const std::string key = content.substr(0, content.find('\n'));
  return key.substr(0, key.size() - (!key.empty() && key.back() == '\r' ? 1 : 0));
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

// At worst, one byte becomes four and "=".
std::vector<char> withRoomToGrow(const std::string& command) {
  std::vector<char> buffer(command.begin(), command.end());
  buffer.resize(5 * command.size() + 1);
  return buffer;
}

// A wrong key gives other bytes, not an error.
void warnOfWrongKey(const std::string& command) {
  if (printable(command) != command)
    Output::message("the result holds characters that cannot be printed; is the key wrong?");
}

void convert(const SecureArguments& arguments, bool toSecure, Output& out) {
  CPHPOperations operations(readKey(arguments.keyFile).c_str());
  std::vector<char> buffer = withRoomToGrow(arguments.command);
  const auto capacity = static_cast<unsigned int>(buffer.size());
  const bool converted = toSecure ? operations.ConvertToSecurePhpCommand(buffer.data(), capacity)
                                  : operations.ConvertToPlainPhpCommand(buffer.data(), capacity);
  if (!converted)
    throw Refusal(std::string("the command could not be converted after \"") + buffer.data() +
                  "\": " + (toSecure ? kSecureLimits : kPlainLimits) +
                  ", and all that follows the last '?' at most 5119");
  if (!toSecure) warnOfWrongKey(buffer.data());
  out.result({{"command", buffer.data()}}, buffer.data());
}

void addDirection(CLI::App& app, const char* name, const char* help, bool toSecure, Output& out) {
  auto* command = app.add_subcommand(name, help);
  auto arguments = std::make_shared<SecureArguments>();
  command->add_option("COMMAND", arguments->command, "Such as page?name=value&name=value")
      ->required();
  command
      ->add_option(
          "--key-file", arguments->keyFile,
          std::string("Take the key from the first line of this file (- for standard input), not "
                      "from ") +
              kKeyVariable)
      ->type_name("FILE");
  command->callback([arguments, toSecure, &out] { convert(*arguments, toSecure, out); });
}

}  // namespace

void addSecureCommands(CLI::App& app, Output& out) {
  addDirection(app, "secure", "Hide the names and values in a request command", true, out);
  addDirection(app, "plain", "Show the names and values in a secure request command", false, out);
}
