#include <cstring>
#include <optional>

#include "tools/codes.h"
#include "tools/commands.h"

namespace {

struct Meaning {
  unsigned int code;
  std::string giver;
  std::string words;
};

std::vector<Meaning> meaningsOf(const std::optional<unsigned int>& code) {
  std::vector<Meaning> meanings;
  for (const CodeMeaning& each : codeMeanings())
    if (!code || each.code == *code)
      meanings.push_back({each.code, nameOf(each.giver), each.words});
  if (!code || *code == 0) return meanings;
  const std::string lastError = std::strerror(static_cast<int>(*code));
  if (lastError.rfind("Unknown error", 0) != 0)
    meanings.push_back({*code, "last error (errno)", lastError});
  return meanings;
}

void explain(const std::optional<unsigned int>& code, Output& out) {
  const std::vector<Meaning> meanings = meaningsOf(code);
  if (meanings.empty())
    throw Refusal("code " + std::to_string(*code) +
                  " is none of the library's, of zrtool's or of the system's");
  for (const Meaning& each : meanings)
    out.entry({{"code", each.code}, {"from", each.giver}, {"meaning", each.words}},
              std::to_string(each.code) + "  " + each.giver + ": " + each.words);
}

}  // namespace

void addExplainCommand(CLI::App& app, Output& out) {
  auto* command =
      app.add_subcommand("explain", "Say what a code of the library, a component or zrtool means");
  auto code = std::make_shared<std::optional<unsigned int>>();
  command->add_option("CODE", *code, "The code; without one, all codes of the library are listed")
      ->transform(numberFrom(0, 0xFFFFFFFF));
  command->callback([code, &out] { explain(*code, out); });
}
