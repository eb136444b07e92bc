#include "tools/report.h"

namespace {

Json orNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

}  // namespace

void Report::good(const Check& check, const std::string& message) {
  add("ok", check, message, "");
}

void Report::note(const Check& check, const std::string& message, const std::string& remedy) {
  add("note", check, message, remedy);
}

void Report::bad(const Check& check, const std::string& message, const std::string& remedy) {
  add("PROBLEM", check, message, remedy);
  ++problems_;
}

void Report::add(const char* status, const Check& check, const std::string& message,
                 const std::string& remedy) {
  std::string line = status;
  line.resize(9, ' ');
  line += check.id + (check.path.empty() ? "" : " " + check.path) + ": " + message;
  if (!remedy.empty()) line += "\n         try: " + remedy;
  const bool isProblem = status[0] == 'P';
  out_.entry({{"id", check.id},
              {"status", isProblem ? "problem" : status},
              {"path", orNull(check.path)},
              {"message", message},
              {"try", orNull(remedy)}},
             line);
}
