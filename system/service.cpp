#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/file.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kPathBytes = 1024;
constexpr std::size_t kCommandBytes = 1024;

enum Code : unsigned int { kSuccess = 0, kNoScript = 120, kNoAction = 121 };

// The name goes to a shell unquoted, always after a directory: what a shell interprets only at the
// beginning of a word ('~', '#', '=') or as a word of its own ('!', '}') means nothing there.
// Braces open a list in some shells.
bool isScriptName(const char* name) {
  constexpr char kInterpreted[] = "/ \t\n\"$&'()*;<>?[\\`{|";
  return name[std::strcspn(name, kInterpreted)] == '\0' && std::strcmp(name, "") != 0 &&
         std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0;
}

template <std::size_t Size>
bool join(char (&to)[Size], const char* begin, const char* end) {
  const int length = std::snprintf(to, sizeof to, "%s%s", begin, end);
  return 0 <= length && static_cast<std::size_t>(length) < sizeof to;
}

bool findScript(char (&path)[kPathBytes], const char* name) {
  if (!isScriptName(name)) return false;
  return (join(path, "/etc/init.d/rc.d/", name) && exists(path)) ||
         (join(path, "/etc/init.d/", name) && exists(path));
}

const char* argumentsFor(int action) {
  switch (action) {
    case kServiceStart:
      return " start >/dev/null";
    case kServiceRestart:
      return " restart >/dev/null";
    case kServiceStop:
      return " stop >/dev/null";
    case kServiceStatus:
      return " status >/dev/null";
    default:
      return nullptr;
  }
}

int fail(unsigned int* error, Code code) {
  *error = code;
  return 0;
}

}  // namespace

int HandleService(const char* serviceName, int action, unsigned int* error) {
  *error = kSuccess;
  char script[kPathBytes];
  if (!findScript(script, serviceName)) return fail(error, kNoScript);
  const char* const arguments = argumentsFor(action);
  if (!arguments) return fail(error, kNoAction);
  char command[kCommandBytes];
  if (!join(command, script, arguments)) return fail(error, kNoScript);
  // Kept: HandleService() returns 1 whatever the exit status of the script (test
  // Service.RunsTheScript)
  [[maybe_unused]] const int status = std::system(command);
  return 1;
}
