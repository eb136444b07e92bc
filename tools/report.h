#ifndef ZRCOMMON_TOOLS_REPORT_H
#define ZRCOMMON_TOOLS_REPORT_H

#include <string>

#include "tools/output.h"

/// What a check of the installation looked at.
struct Check {
  const char* id;
  std::string path;
};

/// Prints one entry for each finding, and counts the problems.
class Report {
 public:
  explicit Report(Output& out) : out_(out) {}

  void good(const Check& check, const std::string& message);
  void note(const Check& check, const std::string& message, const std::string& remedy = "");

  /// @param remedy  a command or a step that mends it
  void bad(const Check& check, const std::string& message, const std::string& remedy);

  int problems() const { return problems_; }

 private:
  void add(const char* status, const Check& check, const std::string& message,
           const std::string& remedy);

  Output& out_;
  int problems_ = 0;
};

#endif  // ZRCOMMON_TOOLS_REPORT_H
