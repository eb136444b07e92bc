#include <cstring>
#include <iostream>
#include <optional>

#include "tools/codes.h"
#include "tools/json.h"

namespace {

struct Meaning {
  unsigned int code;
  std::string giver;
  std::string words;
};

struct ExplainArguments {
  std::optional<unsigned int> code;
  bool json = false;
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

void explain(const ExplainArguments& arguments) {
  const std::vector<Meaning> meanings = meaningsOf(arguments.code);
  if (meanings.empty())
    throw Refusal("code " + std::to_string(*arguments.code) +
                  " is none of the library's, of zrtool's or of the system's");
  std::vector<JsonObject> objects;
  for (const Meaning& each : meanings) {
    if (arguments.json)
      objects.push_back(
          JsonObject().add("code", each.code).add("from", each.giver).add("meaning", each.words));
    else
      std::cout << each.code << "  " << each.giver << ": " << each.words << '\n';
  }
  if (arguments.json) printJson(objects);
}

}  // namespace

void addExplainCommand(CLI::App& app) {
  auto* command = app.add_subcommand(
      "explain", "Say what a code means that the library, a component or zrtool gave");
  auto arguments = std::make_shared<ExplainArguments>();
  command->add_option("CODE", arguments->code, "The code; all of the library's, if there is none");
  command->add_flag("--json", arguments->json, "Print a JSON array of code, from and meaning");
  command->callback([arguments] { explain(*arguments); });
}
