#include <zrcommon/network.h>

#include "base/product_files.h"
#include "tools/codes.h"
#include "tools/commands.h"
#include "tools/hex.h"
#include "tools/input.h"
#include "tools/new_file.h"

using namespace zrcommon;

namespace {

constexpr unsigned int kDone = 1;
constexpr unsigned int kMissing = 2;
constexpr unsigned int kCannotOpen = 3;
constexpr unsigned int kTooShort = 4;

std::string contentOf(const std::string& file) {
  try {
    return InputFile(file).content();
  } catch (const Refusal& reason) {
    if (reason.systemError() == 0) throw;
    const unsigned int code = reason.systemError() == ENOENT ? kMissing : kCannotOpen;
    throw refusal(CodeOf::kSettingsRead, code, file, reason.systemError());
  }
}

// Reads the file itself: ReadInetOptions() would give it mode 0666.
void show(const std::string& file, Output& out) {
  const std::string content = contentOf(file);
  const std::size_t size = sizeof(tagInetSettings);
  if (content.size() < size) throw refusal(CodeOf::kSettingsRead, kTooShort, file);
  const std::string text = hexText(reinterpret_cast<const unsigned char*>(content.data()), size);
  out.result({{"bytes", text}}, text);
}

tagInetSettings settingsFrom(const std::string& text) {
  tagInetSettings settings = {};
  const std::string bytes = parseHex(text);
  if (bytes.size() != sizeof settings.bytes)
    throw Refusal("a settings record has " + std::to_string(sizeof settings.bytes) +
                  " bytes; standard input gave " + std::to_string(bytes.size()));
  bytes.copy(reinterpret_cast<char*>(settings.bytes), bytes.size());
  return settings;
}

// What lies beyond the record in the old file stays, as SaveInetOptions() leaves it.
void save(const std::string& file, Output&) {
  tagInetSettings settings = settingsFrom(standardInput());
  NewFile saved(file);
  if (saved.replaced()) saved.write(InputFile(file).content());
  saved.setMode(0666);
  errno = 0;
  const unsigned int result = SaveInetOptions(saved.openPath().c_str(), &settings);
  if (result != kDone) throw refusal(CodeOf::kSettingsSaved, result, file, errno);
  saved.commit();
}

void addAction(CLI::App* family, const char* name, const char* help, Output& out,
               void (*action)(const std::string&, Output&)) {
  auto* command = family->add_subcommand(name, help);
  auto file = std::make_shared<std::string>(kInetOptionsPath.get());
  command->add_option("FILE", *file, "Options file")->capture_default_str();
  command->callback([file, action, &out] { action(*file, out); });
}

}  // namespace

void addOptionsCommands(CLI::App& app, Output& out) {
  auto* family = app.add_subcommand("options", "The internet settings file, as hexadecimal bytes");
  requireAction(family);
  addAction(family, "show", "Print the 788 bytes; the file keeps its mode", out, show);
  addAction(family, "save",
            "Write the 788 bytes given on standard input. Every local user can change the file "
            "afterwards (mode 0666).",
            out, save);
}
