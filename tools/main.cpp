#include <new>
#include <sstream>

#include "tools/codes.h"
#include "tools/commands.h"

namespace {

constexpr int kRefused = 1;
constexpr int kBadUsage = 2;
constexpr std::size_t kHelpColumn = 26;

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

int refuse(Output& out, const Refusal& refusal, int status = kRefused) {
  out.fail(refusal);
  return status;
}

// A message, the help or the version, for a command line that starts no command.
int answer(const CLI::App& app, Output& out, const CLI::ParseError& problem) {
  std::ostringstream help;
  std::ostringstream ignored;
  out.isJson = app.get_option("--json")->count() > 0;
  if (app.exit(problem, help, ignored) != 0)
    return refuse(out, Refusal(complaint(app, problem)), kBadUsage);
  out.isJson = false;
  out.print(wrapped(help.str(), terminalWidth(), kHelpColumn));
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
    app.get_formatter()->column_width(kHelpColumn);
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
