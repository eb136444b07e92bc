#ifndef ZRCOMMON_TESTS_OPERATIONS_H
#define ZRCOMMON_TESTS_OPERATIONS_H

#include <map>
#include <string>
#include <vector>

/// What an operation gave: its result and, if it set them, its error code and its text.
struct Result {
  long long value = 0;
  unsigned int error = 9;
  char text[300] = "-";

  std::string words() const;
};

/// An operation that asks the system for something, on files of its own.
struct Operation {
  std::string name;
  void (*prepare)();      ///< lays out its files
  std::string outcome;    ///< what it gave, and the files that it changed
  void (*call)(Result&);  ///< asks for no memory of its own

  /// The outcomes that differ when one of its calls fails ("write 2 fails": the second write) or
  /// takes a single byte ("read 1 is short"), or when there is no memory ("no memory").
  std::map<std::string, std::string> failures;
};

const std::vector<Operation>& operations();

#endif  // ZRCOMMON_TESTS_OPERATIONS_H
