#ifndef ZRCOMMON_TOOLS_REPORT_H
#define ZRCOMMON_TOOLS_REPORT_H

#include <iostream>
#include <string>
#include <vector>

#include "tools/json.h"

/// Prints one line a check, or all of them as JSON at the end, and counts what needs mending.
class Report {
 public:
  explicit Report(bool json) : json_(json) {}

  void good(const std::string& line) { add("ok", "ok       ", line); }
  void note(const std::string& line) { add("note", "note     ", line); }
  void bad(const std::string& line) {
    add("problem", "PROBLEM  ", line);
    ++problems_;
  }

  void finish() const {
    if (json_) printJson(objects_);
  }
  int problems() const { return problems_; }

 private:
  void add(const char* status, const char* mark, const std::string& line) {
    if (json_)
      objects_.push_back(JsonObject().add("status", status).add("check", line));
    else
      std::cout << mark << line << std::endl;
  }

  bool json_;
  int problems_ = 0;
  std::vector<JsonObject> objects_;
};

#endif  // ZRCOMMON_TOOLS_REPORT_H
