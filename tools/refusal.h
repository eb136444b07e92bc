#ifndef ZRCOMMON_TOOLS_REFUSAL_H
#define ZRCOMMON_TOOLS_REFUSAL_H

#include <cerrno>
#include <optional>
#include <stdexcept>
#include <string>

/// Ends a command with exit status 1. main() prints the message to standard error.
class Refusal : public std::runtime_error {
 public:
  explicit Refusal(const std::string& message) : std::runtime_error(message) {}

  /// @param code         the library's code, if it has one
  /// @param systemError  the errno value that the system gave; 0 if none is known. The message gets
  ///                     its text and name.
  Refusal(const std::string& message, std::optional<unsigned int> code, int systemError);

  std::optional<unsigned int> code() const { return code_; }
  int systemError() const { return systemError_; }

 private:
  std::optional<unsigned int> code_;
  int systemError_ = 0;
};

/// "SUBJECT: No such file or directory (ENOENT)"
Refusal systemRefusal(const std::string& subject, int systemError = errno);

/// "ENOENT"; empty for a number that the system does not use.
std::string errorName(int systemError);

#endif  // ZRCOMMON_TOOLS_REFUSAL_H
