#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "examples/inet/script.h"
#include "sandbox_script.h"
#include "tools/commands.h"
#include "tools/input.h"
#include "tools/scratch.h"

namespace {

struct SandboxArguments {
  std::string script;
  std::string library;
  std::string command;
  bool noNetwork = false;
};

constexpr int kNoSandbox = 125;

// Puts the library in its place first.
constexpr char kInstallLibrary[] =
    "cp -- \"$1\" /usr/lib/Valdrix/Valdrix/libinet.so && shift && exec \"$@\"";

void checkScript(const std::string& path) {
  std::istringstream text(InputFile(path).content());
  const InetScript script(text);
  for (const std::string& error : script.errors()) Output::message(path + ": " + error);
  if (!script.errors().empty()) throw Refusal(path + " is no script for the internet library");
}

// Beside the build's zrtool, or below the prefix of an installed one.
std::string scriptedLibrary() {
  const auto tool = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  for (const char* each : {"examples/inet/libinet_scripted.so", ZRTOOL_MODULES "inet_scripted.so"})
    if (std::filesystem::exists(tool / each)) return std::filesystem::canonical(tool / each);
  throw Refusal(
      "the scripted internet library is not installed: install the package "
      "zrcommon-inet-dev, or name one with --inet-library");
}

std::vector<std::string> sandboxCommand(const SandboxArguments& arguments, const Scratch& scratch,
                                        const std::vector<std::string>& command) {
  std::vector<std::string> words = {"sh", scratch / "sandbox.sh"};
  if (arguments.noNetwork) words.push_back("--own-network");
  if (!arguments.library.empty())
    words.insert(words.end(), {"sh", "-c", kInstallLibrary, "sh", arguments.library});
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

pid_t start(std::vector<std::string> words, const sigset_t& signals) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const pid_t child = ::fork();
  if (child < 0) throw systemRefusal("starting the command");
  if (child > 0) return child;
  ::sigprocmask(SIG_SETMASK, &signals, nullptr);
  ::execvp(pointers[0], pointers.data());
  ::_exit(kNoSandbox);
}

// The signals that would end zrtool are blocked. A terminal sends its own to the command as well.
int waitFor(pid_t child) {
  sigset_t awaited = Scratch::endingSignals();
  ::sigaddset(&awaited, SIGCHLD);
  ::sigprocmask(SIG_BLOCK, &awaited, nullptr);
  int status = 0;
  while (::waitpid(child, &status, WNOHANG) != child) {
    int signal = 0;
    ::sigwait(&awaited, &signal);
    if (signal == SIGTERM || signal == SIGHUP) ::kill(child, signal);
  }
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void showCalls(const std::string& record) {
  std::istringstream calls(InputFile(record).content());
  for (std::string call; std::getline(calls, call);) Output::message("internet library: " + call);
}

void runInSandbox(SandboxArguments arguments, const std::vector<std::string>& command) {
  const bool isScripted = !arguments.script.empty();
  if (isScripted) checkScript(arguments.script);
  if (isScripted && arguments.library.empty()) arguments.library = scriptedLibrary();
  const Scratch scratch;
  scratch.put("sandbox.sh", kSandboxScript);
  if (isScripted) {
    scratch.put("record", "");
    ::setenv("INET_SCRIPT", std::filesystem::absolute(arguments.script).c_str(), 1);
    ::setenv("INET_RECORD", (scratch / "record").c_str(), 1);
  }
  ::signal(SIGCHLD, SIG_DFL);
  const int status =
      waitFor(start(sandboxCommand(arguments, scratch, command), scratch.signalsBefore()));
  if (isScripted) showCalls(scratch / "record");
  if (status != 0) throw CLI::RuntimeError(status);
}

}  // namespace

void addSandboxCommand(CLI::App& app) {
  auto* command = app.add_subcommand(
      "sandbox",
      "Run a command in a private root: its installation directory, init scripts, /dev, /scratch "
      "and /zrcommon.log are private and empty, everything else is the machine's. The exit status "
      "is the command's; 125 if the machine allows no private root.");
  auto arguments = std::make_shared<SandboxArguments>();
  command->add_option("--inet", arguments->script,
                      "Install the internet library that answers from this script, and show its "
                      "calls at the end");
  command->add_option("--inet-library", arguments->library,
                      "Install this internet library instead");
  command->add_flag("--no-network", arguments->noNetwork, "Leave the command loopback only");
  command->add_option("COMMAND", arguments->command, "What to run; it stands after \"--\"")
      ->required();
  command->fallthrough(false)->prefix_command();
  command->callback([arguments, command] {
    runInSandbox(*arguments, withRemaining(arguments->command, *command));
  });
}
