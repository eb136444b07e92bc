#include <zrcommon/profile.h>

#include <algorithm>
#include <optional>

#include "profile/error.h"
#include "profile/line.h"
#include "tools/codes.h"
#include "tools/commands.h"
#include "tools/input.h"
#include "tools/new_file.h"
#include "tools/profile_change.h"
#include "tools/profile_lint.h"
#include "tools/profile_views.h"

using namespace zrcommon;

namespace {

struct ProfileArguments {
  std::string file;
  std::vector<std::string> files;
  std::string secondFile;
  std::string section;
  std::string key;
  std::string value;
  std::optional<std::string> textDefault;
  std::optional<int> numberDefault;
  std::string failOn = "error";
  bool isDryRun = false;
  bool discard = false;
};

// Lets the library read the open file; why it found nothing, if so.
template <typename Reader>
std::optional<Refusal> tryReading(const std::string& file, Reader reader) {
  unsigned int error = kCannotOpen;
  int systemError = 0;
  try {
    reader(InputFile(file).openPath().c_str(), &error);
  } catch (const Refusal& refusal) {
    systemError = refusal.systemError();
    if (systemError == 0 || systemError == EISDIR) throw;
  }
  if (error == kSuccess) return std::nullopt;
  return refusal(CodeOf::kProfile, error, file, systemError);
}

void get(const ProfileArguments& arguments, Output& out) {
  char value[kChunkLength + 1] = {};
  const auto problem = tryReading(arguments.file, [&](const char* path, unsigned int* error) {
    GetPrivateProfileString(arguments.section.c_str(), arguments.key.c_str(), "", value,
                            sizeof value, path, error);
  });
  if (problem && !arguments.textDefault) throw *problem;
  const std::string text = problem ? *arguments.textDefault : value;
  out.result({{"value", text}, {"isDefault", problem.has_value()}}, text);
}

void getInt(const ProfileArguments& arguments, Output& out) {
  int number = 0;
  const auto problem = tryReading(arguments.file, [&](const char* path, unsigned int* error) {
    number = GetPrivateProfileInt(arguments.section.c_str(), arguments.key.c_str(),
                                  arguments.numberDefault.value_or(0), path, error);
  });
  if (problem && !arguments.numberDefault) throw *problem;
  out.result({{"value", number}, {"isDefault", problem.has_value()}}, std::to_string(number));
}

// The library makes the new content, but from a copy: its own replacement follows no link, keeps
// neither owner nor mode, and notices no full disk.
void set(const ProfileArguments& arguments, Output& out) {
  const std::string before = InputFile(arguments.file).content();
  NewFile profile(arguments.file);
  const std::string after =
      changedProfile(before, {arguments.section, arguments.key, arguments.value});
  Json result = {{"file", arguments.file}, {"isChanged", before != after}};
  if (arguments.isDryRun) {
    result["diff"] = unifiedDiff(arguments.file, before, after);
    out.print(result["diff"].get<std::string>());
  } else if (before != after) {
    profile.write(after);
    profile.commit();
    if (profile.replaced()->st_nlink > 1)
      Output::message(arguments.file + " had other names (hard links): they keep the old content");
  }
  if (out.isJson) out.result(result, "");
}

std::vector<Finding> findingsIn(const std::string& file) {
  try {
    return lintProfile(InputFile(file).content());
  } catch (const Refusal& refusal) {
    return {{0, Severity::kError, "unreadable", refusal.what()}};
  }
}

// A finding without a line is about the whole file.
void print(const std::string& file, const Finding& finding, Output& out) {
  const std::string& severity = severityNames()[static_cast<std::size_t>(finding.severity)];
  const std::string line = std::to_string(finding.line);
  out.entry({{"file", file},
             {"line", finding.line == 0 ? Json() : Json(finding.line)},
             {"severity", severity},
             {"code", finding.code},
             {"message", finding.message}},
            file + (finding.line == 0 ? "" : ':' + line) + ": " + severity + ": " +
                finding.message + " [" + finding.code + ']');
}

void lint(const ProfileArguments& arguments, Output& out) {
  const std::vector<std::string>& severities = severityNames();
  const auto least = std::find(severities.begin(), severities.end(), arguments.failOn);
  std::size_t grave = 0;
  out.startList();
  for (const std::string& file : arguments.files) {
    for (const Finding& finding : findingsIn(file)) {
      print(file, finding, out);
      grave += static_cast<int>(finding.severity) >= least - severities.begin();
    }
  }
  if (grave != 0)
    throw Refusal("findings of the severity " + arguments.failOn +
                  " or above: " + std::to_string(grave));
}

void show(const ProfileArguments& arguments, Output& out) {
  showProfile(arguments.file, arguments.section, arguments.key, out);
}

void diff(const ProfileArguments& arguments, Output& out) {
  diffProfiles(arguments.file, arguments.secondFile, out);
}

void recover(const ProfileArguments& arguments, Output& out) {
  recoverProfile(arguments.file, arguments.discard, out);
}

class Family {
 public:
  using Action = void (*)(const ProfileArguments&, Output&);

  Family(CLI::App& app, Output& out)
      : family_(app.add_subcommand("profile", "Profile (INI) files, as components see them")),
        out_(out) {
    requireAction(family_);
  }

  CLI::App* add(const char* name, const char* help, Action action) {
    auto* command = family_->add_subcommand(name, help);
    command->callback([this_ = arguments_, &out = out_, action] { action(*this_, out); });
    return command;
  }

  CLI::App* addForFile(const char* name, const char* help, Action action) {
    auto* command = add(name, help, action);
    command->add_option("FILE", arguments_->file, "Profile file")->required();
    return command;
  }

  CLI::App* addForEntry(const char* name, const char* help, Action action, bool isRequired = true) {
    auto* command = addForFile(name, help, action);
    command->add_option("SECTION", arguments_->section, "Name of the section")
        ->required(isRequired);
    command->add_option("KEY", arguments_->key, "Name of the entry")->required(isRequired);
    return command;
  }

  ProfileArguments& arguments() { return *arguments_; }

 private:
  CLI::App* family_;
  Output& out_;
  std::shared_ptr<ProfileArguments> arguments_ = std::make_shared<ProfileArguments>();
};

void addReaders(Family& family) {
  family.addForEntry("get", "Print the value of an entry", get)
      ->add_option("--default", family.arguments().textDefault, "Print this if there is no value");
  family.addForEntry("get-int", "Print the value as an integer", getInt)
      ->add_option("--default", family.arguments().numberDefault,
                   "Print this if there is no value");
  family.addForEntry("show", "Print the entries as components see them, and what they do not see",
                     show, false);
  family.addForFile("diff", "Compare two profiles by section and key; 1 if they differ", diff)
      ->add_option("OTHER", family.arguments().secondFile, "Profile file to compare with")
      ->required();
}

void addWriters(Family& family) {
  auto* set = family.addForEntry("set", "Change or add an entry", ::set);
  set->add_option("VALUE", family.arguments().value, "Its new value")->required();
  set->add_flag("--dry-run", family.arguments().isDryRun,
                "Print what would change, as a unified diff, and change nothing");
  family
      .addForFile("recover",
                  "Tell what an interrupted change left of FILE, and finish it where that is safe. "
                  "Nothing else may be changing FILE meanwhile.",
                  recover)
      ->add_flag("--discard", family.arguments().discard, "Remove FILE.tmp if FILE is there");
}

void addLint(Family& family) {
  auto* lint = family.add("lint", "Say, line by line, what is not read as people expect", ::lint);
  lint->add_option("FILE", family.arguments().files, "Profile files")->required();
  lint->add_option("--fail-on", family.arguments().failOn,
                   "Least severity that ends with exit status 1 (error)")
      ->check(oneOf(severityNames()));
}

}  // namespace

void addProfileCommands(CLI::App& app, Output& out) {
  Family family(app, out);
  addReaders(family);
  addWriters(family);
  addLint(family);
}
