#include "tools/profile_views.h"

#include <map>

#include "profile/error.h"
#include "profile/line.h"
#include "tools/codes.h"
#include "tools/input.h"
#include "tools/profile_lines.h"

using namespace zrcommon;

namespace {

Json optionalText(std::optional<std::string_view> text) {
  return text ? Json(*text) : Json();
}

Json jsonOf(const ProfileLine& line) {
  return {{"line", line.number},
          {"section", line.section},
          {"key", line.isEntry() ? Json(line.key) : Json()},
          {"value", optionalText(line.value)},
          {"hidden", line.hidden ? Json(line.hidden->code) : Json()}};
}

std::string textOf(const ProfileLine& line) {
  if (line.hidden)
    return "; hidden, line " + std::to_string(line.number) + ": " + std::string(line.text) + " (" +
           line.whyHidden() + ')';
  if (line.isHeader()) return '[' + std::string(line.section) + ']';
  return std::string(line.key) + '=' + std::string(*line.value);
}

// Without a wanted name, all match.
bool matches(std::string_view name, std::string_view wanted) {
  return wanted.empty() || isSameName(name, wanted);
}

using Entries = std::map<std::string, const ProfileLine*>;

std::string lowered(std::string_view name) {
  std::string text(name);
  for (char& each : text) each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
  return text;
}

// Line feeds stand in no name.
Entries visibleEntries(const std::vector<ProfileLine>& lines) {
  Entries entries;
  for (const ProfileLine& line : lines)
    if (line.isEntry() && !line.hidden)
      entries.emplace(lowered(line.section) + '\n' + lowered(line.key), &line);
  return entries;
}

std::optional<std::string_view> valueIn(const Entries& entries, const std::string& name) {
  const auto found = entries.find(name);
  if (found == entries.end()) return std::nullopt;
  return found->second->value;
}

void printChange(const ProfileLine& line, std::optional<std::string_view> before,
                 std::optional<std::string_view> after, Output& out) {
  const std::string name = " [" + std::string(line.section) + "] " + std::string(line.key) + '=';
  std::string text;
  if (before) text = '-' + name + std::string(*before);
  if (before && after) text += '\n';
  if (after) text += '+' + name + std::string(*after);
  out.entry({{"section", line.section},
             {"key", line.key},
             {"before", optionalText(before)},
             {"after", optionalText(after)}},
            text);
}

}  // namespace

void showProfile(const std::string& file, const std::string& section, const std::string& key,
                 Output& out) {
  const std::string content = InputFile(file).content();
  std::vector<ProfileLine> shown;
  bool isKeyThere = key.empty();
  for (const ProfileLine& line : profileLines(content)) {
    if (!matches(line.section, trimmed(section))) continue;
    const bool isWanted = line.isEntry() && matches(line.key, trimmed(key));
    if (isWanted || line.isHeader()) shown.push_back(line);
    isKeyThere |= isWanted;
  }
  if (shown.empty() && !section.empty()) throw refusal(CodeOf::kProfile, kNoSection, file);
  if (!isKeyThere) throw refusal(CodeOf::kProfile, kNoKey, file);
  out.startList();
  for (const ProfileLine& line : shown) out.entry(jsonOf(line), textOf(line));
}

void diffProfiles(const std::string& before, const std::string& after, Output& out) {
  const std::string oldContent = InputFile(before).content();
  const std::string newContent = InputFile(after).content();
  const std::vector<ProfileLine> oldLines = profileLines(oldContent);
  const std::vector<ProfileLine> newLines = profileLines(newContent);
  const Entries oldEntries = visibleEntries(oldLines);
  Entries all = visibleEntries(newLines);
  const Entries newEntries = all;
  all.insert(oldEntries.begin(), oldEntries.end());
  std::size_t count = 0;
  out.startList();
  for (const auto& [name, line] : all) {
    const auto oldValue = valueIn(oldEntries, name);
    const auto newValue = valueIn(newEntries, name);
    if (oldValue == newValue) continue;
    printChange(*line, oldValue, newValue, out);
    ++count;
  }
  if (count != 0)
    throw Refusal(before + " and " + after + " differ in entries: " + std::to_string(count));
}
