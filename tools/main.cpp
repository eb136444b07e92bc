#include <algorithm>
#include <new>
#include <sstream>

#include "tools/codes.h"
#include "tools/commands.h"

namespace {

constexpr int kRefused = 1;
constexpr int kBadUsage = 2;

void addCommands(CLI::App& app, Output& out) {
  addFetchCommand(app, out);
  addCheckCommand(app, out);
  addInterfacesCommand(app, out);
  addDirectoryCommands(app, out);
  addOptionsCommands(app, out);
  addProfileCommands(app, out);
  addSecureCommands(app, out);
  addLogCommand(app);
  addFileCommands(app, out);
  addSystemCommands(app, out);
  addExplainCommand(app, out);
  addDoctorCommand(app, out);
  addSandboxCommand(app);
  addCompletionCommands(app, out);
}

std::string exitStatus(unsigned int status) {
  return std::to_string(status) + ' ' + inWords(CodeOf::kExitStatus, status);
}

// CLI11 wants the last argument first. It takes "--name=" for a "--name" whose value is the next
// argument, so an empty value becomes an argument of its own.
std::vector<std::string> reversedArguments(int argc, char** argv) {
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

int refuse(Output& out, const Refusal& refusal, int status = kRefused) {
  out.fail(refusal);
  return status;
}

int answer(CLI::App& app, Output& out, const CLI::ParseError& problem) {
  std::ostringstream help;
  std::ostringstream complaint;
  out.isJson = app.get_option("--json")->count() > 0;
  if (app.exit(problem, help, complaint) != 0)
    return refuse(out, Refusal(problem.what()), kBadUsage);
  out.isJson = false;
  out.print(help.str());
  out.finish();
  return 0;
}

int run(CLI::App& app, Output& out, int argc, char** argv) {
  try {
    app.parse(reversedArguments(argc, argv));
    out.finish();
    return 0;
  } catch (const CLI::RuntimeError& end) {
    return end.get_exit_code();
  } catch (const CLI::ParseError& problem) {
    return answer(app, out, problem);
  }
}

}  // namespace

int main(int argc, char** argv) {
  occupyStandardStreams();
  Output out;
  try {
    CLI::App app(
        "The services of libzrcommon on the command line.\n"
        "Exit status: " +
            exitStatus(0) + ", " + exitStatus(kRefused) + ", " + exitStatus(kBadUsage) + '.',
        "zrtool");
    app.set_version_flag("--version", "zrtool " ZRCOMMON_VERSION);
    app.fallthrough();
    app.add_flag("--json", out.isJson, "Print the result, or the error, as JSON; for any command");
    requireAction(&app);
    addCommands(app, out);
    return run(app, out, argc, argv);
  } catch (const Refusal& refusal) {
    return refuse(out, refusal);
  } catch (const std::bad_alloc&) {
    return refuse(out, Refusal("there is not enough memory"));
  } catch (const std::exception& problem) {
    return refuse(out, Refusal(problem.what()));
  }
}
