#include "fuzz/answers.h"
#include "network/inet_library.h"

using namespace zrcommon;

extern "C" {

AnswersPointer zrFuzzAnswers = nullptr;

int InetOpenFile(const char*, tagZRINETCONFIG*, InetHandle*) {
  return zrFuzzAnswers->open();
}

int InetReadFile(InetHandle*, char* buffer, unsigned int size) {
  return zrFuzzAnswers->read(buffer, size);
}

int GetHeader(const char*, unsigned int, char* header, std::size_t* headerSize) {
  return zrFuzzAnswers->header(header, headerSize);
}

int InetCloseFile(InetHandle*) {
  return 1;
}

int IsInternetFilePresent(const char*, tagZRINETCONFIG*) {
  return zrFuzzAnswers->isPresent();
}

}  // extern "C"
