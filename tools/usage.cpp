#include "tools/usage.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <numeric>
#include <sstream>

namespace {

constexpr std::size_t kUsualWidth = 80;
constexpr std::size_t kLeastWidth = 40;
constexpr std::size_t kQuotedLength = 40;

std::string quoted(const std::string& word) {
  return '"' + word.substr(0, kQuotedLength) + (word.size() > kQuotedLength ? "...\"" : "\"");
}

// Levenshtein's distance: the changes of one character that make one word of the other.
std::size_t distance(const std::string& one, const std::string& other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < other.size(); ++j) {
      const std::size_t changed = diagonal + (one[i] == other[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
  if (word.size() > kQuotedLength || known.empty()) return "";
  const auto isNearer = [&](const std::string& one, const std::string& other) {
    return distance(word, one) < distance(word, other);
  };
  const std::string nearest = *std::min_element(known.begin(), known.end(), isNearer);
  const bool isFar = distance(word, nearest) > 1 + nearest.size() / 4;
  return isFar ? "" : " (did you mean " + quoted(nearest) + "?)";
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words)
    text += (text.empty() ? "" : word == words.back() ? " or " : ", ") + word;
  return text;
}

// Those of the command and, as they are valid everywhere, of zrtool itself.
std::vector<std::string> optionsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* each = &app; each; each = each->get_parent())
    for (const CLI::Option* option : each->get_options())
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  return names;
}

const CLI::App& commandIn(const CLI::App& app) {
  const std::vector<CLI::App*> given = app.get_subcommands();
  return given.empty() ? app : commandIn(*given.front());
}

std::string fullName(const CLI::App& app) {
  return (app.get_parent() ? fullName(*app.get_parent()) + ' ' : "") + app.get_name();
}

std::string unexpected(const CLI::App& command, const std::string& word) {
  const std::vector<std::string> commands = commandsOf(command);
  const std::string hint = suggestion(word, optionsOf(command));
  if (word[0] == '-')
    return "there is no option " + quoted(word) +
           (hint.empty() ? "; an argument that begins with \"-\" is written after \"--\"" : hint);
  if (commands.empty()) return "the argument " + quoted(word) + " is one too many";
  return "there is no command " + quoted(word) + suggestion(word, commands);
}

std::string wrappedLine(const std::string& line, std::size_t width, std::size_t indent) {
  std::string text;
  std::size_t start = 0;
  while (line.size() - start > width - (start > 0 ? indent : 0)) {
    const std::size_t room = width - (start > 0 ? indent : 0);
    const std::size_t space = line.rfind(' ', start + room);
    if (space == line.npos || space <= start + (start > 0 ? 0 : indent)) break;
    text += line.substr(start, space - start) + '\n' + std::string(indent, ' ');
    start = space + 1;
  }
  return text + line.substr(start) + '\n';
}

}  // namespace

std::vector<std::string> commandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; }))
    if (!each->get_group().empty()) names.push_back(each->get_name());
  return names;
}

void requireAction(CLI::App* family) {
  family->require_subcommand(0, 1)->callback([family] {
    const std::string choice = family->get_parent() ? ": " + joined(commandsOf(*family)) : "";
    if (family->get_subcommands().empty())
      throw CLI::RequiredError("a command is missing" + choice, CLI::ExitCodes::RequiredError);
  });
}

CLI::Validator numberFrom(long long least, long long most) {
  const auto check = [least, most](std::string& text) -> std::string {
    char* end = nullptr;
    errno = 0;
    const long long number = std::strtoll(text.c_str(), &end, 10);
    const bool isNumber = !text.empty() && text.find_first_not_of("-0123456789") == text.npos;
    const bool isGood = isNumber && *end == '\0' && errno == 0 && least <= number && number <= most;
    if (!isGood)
      return "must be a number from " + std::to_string(least) + " to " + std::to_string(most);
    text = std::to_string(number);
    return "";
  };
  return CLI::Validator(check, "");
}

CLI::Validator oneOf(const std::vector<std::string>& words) {
  const auto check = [words](const std::string& text) -> std::string {
    const bool isGood = std::find(words.begin(), words.end(), text) != words.end();
    return isGood ? "" : "must be " + joined(words) + suggestion(text, words);
  };
  return CLI::Validator(check, '{' + CLI::detail::join(words, ",") + '}');
}

std::vector<std::string> reversedArguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  bool isOption = true;
  for (int i = 1; i < argc; ++i) {
    std::string each = argv[i];
    isOption = isOption && each != "--";
    const bool hasEmptyValue =
        isOption && each.rfind("--", 0) == 0 && each.find('=') == each.size() - 1;
    if (hasEmptyValue) each.pop_back();
    arguments.push_back(each);
    if (hasEmptyValue) arguments.emplace_back();
  }
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

std::string complaint(const CLI::App& app, const CLI::ParseError& problem) {
  const CLI::App& command = commandIn(app);
  const std::vector<std::string> extras = app.remaining(true);
  const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&problem) && !extras.empty();
  const std::string what = isExtra ? unexpected(command, extras.front()) : problem.what();
  return what + "; see " + fullName(command) + " --help";
}

std::string wrapped(const std::string& help, std::size_t width, std::size_t column) {
  std::istringstream lines(help);
  std::string text;
  for (std::string line; std::getline(lines, line);)
    text += wrappedLine(line, width, line.rfind("  ", 0) == 0 ? column : 0);
  return text;
}

std::size_t terminalWidth() {
  struct winsize size = {};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualWidth;
  return std::max<std::size_t>(size.ws_col, kLeastWidth);
}
