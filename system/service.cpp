#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/file.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kTextBytes = 1024;

enum Error : unsigned int { kNoError = 0, kNoScript = 120, kNoAction = 121 };
enum ServiceAction : int { kStart = 1, kRestart = 2, kStop = 3, kStatus = 4 };

// Names go to a shell unquoted, so only what means nothing to it may pass.
bool isScriptName(const char* name) {
  constexpr char kAllowed[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-+@";
  const std::size_t length = std::strspn(name, kAllowed);
  return length > 0 && name[length] == '\0' && std::strcmp(name, ".") != 0 &&
         std::strcmp(name, "..") != 0;
}

bool join(char (&to)[kTextBytes], const char* begin, const char* end) {
  const int length = std::snprintf(to, sizeof to, "%s%s", begin, end);
  return 0 <= length && static_cast<std::size_t>(length) < sizeof to;
}

bool findScript(char (&path)[kTextBytes], const char* name) {
  if (!isScriptName(name)) return false;
  return (join(path, "/etc/init.d/rc.d/", name) && exists(path)) ||
         (join(path, "/etc/init.d/", name) && exists(path));
}

const char* argumentsFor(int action) {
  switch (action) {
    case kStart:
      return " start >/dev/null";
    case kRestart:
      return " restart >/dev/null";
    case kStop:
      return " stop >/dev/null";
    case kStatus:
      return " status >/dev/null";
    default:
      return nullptr;
  }
}

int fail(unsigned int* error, Error code) {
  *error = code;
  return 0;
}

}  // namespace

int HandleService(const char* serviceName, int action, unsigned int* error) {
  *error = kNoError;
  char script[kTextBytes];
  if (!findScript(script, serviceName)) return fail(error, kNoScript);
  const char* const arguments = argumentsFor(action);
  if (!arguments) return fail(error, kNoAction);
  char command[kTextBytes];
  if (!join(command, script, arguments)) return fail(error, kNoScript);
  // Kept: the script's own result is not looked at; components ask for a service's state by other
  // means (test Service.RunsTheScript)
  [[maybe_unused]] const int status = std::system(command);
  return 1;
}
