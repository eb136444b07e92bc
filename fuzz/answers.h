#ifndef ZRCOMMON_FUZZ_ANSWERS_H
#define ZRCOMMON_FUZZ_ANSWERS_H

#include <cstddef>

/// What the made-up internet library answers, one function an entry point.
class Answers {
 public:
  virtual ~Answers() = default;
  virtual int open() = 0;
  virtual int read(char* buffer, unsigned int size) = 0;
  virtual int header(char* header, std::size_t* size) = 0;
  virtual int isPresent() = 0;
};

/// Exported by the made-up internet library: who answers.
using AnswersPointer = Answers*;
inline constexpr char kAnswersSymbol[] = "zrFuzzAnswers";

#endif  // ZRCOMMON_FUZZ_ANSWERS_H
