#ifndef ZRCOMMON_TESTS_SUPPORT_CHILD_H
#define ZRCOMMON_TESTS_SUPPORT_CHILD_H

#include <functional>
#include <string>
#include <vector>

/// What a program printed, and its exit status (128 + the number of the signal that ended it).
struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs a program to its end, with @p input on its standard input.
Outcome run(const std::vector<std::string>& command, const std::string& input = "");

/// The same for zrtool.
Outcome runTool(std::vector<std::string> arguments, const std::string& input = "");

/// Runs @p body in a forked child and gives its result (0 to 255) as the exit status, with what it
/// printed. For what changes a process for good.
Outcome runForked(const std::function<int()>& body);

/// Gives up the power to ignore file permissions, for good; for use in a forked child.
void dropPrivileges();

#endif  // ZRCOMMON_TESTS_SUPPORT_CHILD_H
