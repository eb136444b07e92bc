#ifndef ZRCOMMON_TESTS_SUPPORT_OPERATIONS_H
#define ZRCOMMON_TESTS_SUPPORT_OPERATIONS_H

#include <string>
#include <vector>

/// What an operation gave, in words. Writing it asks the system for nothing.
class Result {
 public:
  void say(const char* format, ...) __attribute__((format(printf, 2, 3)));
  const char* text() const { return text_; }

 private:
  char text_[256] = {};
};

/// A call of an exported operation, at work on the files of the sandbox.
struct Operation {
  std::string name;           ///< the operation, and what is special about this call
  void (*call)(Result&);      ///< calls it and says what it gave
  void (*prepare)() = [] {};  ///< lays out its files, each time anew
};

/// All that ask the system for something.
const std::vector<Operation>& systemOperations();

/// All that work on the caller's memory alone.
const std::vector<Operation>& pureOperations();

/// Empties the places that operations write to, then lays out this one's files.
void prepare(const Operation& operation);

/// What is changed, from now on, of the files in those places: " -(file as it was) +(file as it
/// is)". A file is its name, its content, if that is short, and its mode: "f 'text' 0600".
class Changes {
 public:
  Changes();
  std::string text() const;

 private:
  std::vector<std::string> before_;
};

/// Lays out an operation's files and calls it: what it said, and its Changes.
std::string outcomeOf(const Operation& operation);

#endif  // ZRCOMMON_TESTS_SUPPORT_OPERATIONS_H
