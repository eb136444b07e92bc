#ifndef ZRCOMMON_TESTS_OPERATIONS_H
#define ZRCOMMON_TESTS_OPERATIONS_H

#include <string>
#include <utility>
#include <vector>

/// What an operation gave, in words. Writing it asks for no memory.
class Result {
 public:
  void say(const char* format, ...) __attribute__((format(printf, 2, 3)));
  const char* text() const { return text_; }

 private:
  char text_[256] = {};
};

/// An operation that asks the system for something, on files of its own.
struct Operation {
  std::string name;
  void (*prepare)();    ///< lays out its files
  std::string outcome;  ///< what it says, and the files that it changes

  /// The outcomes that differ when one of its calls fails ("write 2 fails": the second write) or
  /// takes a single byte ("read 1 is short"), or when there is no memory ("no memory").
  std::vector<std::pair<std::string, std::string>> failures;

  void (*call)(Result&);  ///< calls it and says what it gave
};

const std::vector<Operation>& operations();

#endif  // ZRCOMMON_TESTS_OPERATIONS_H
