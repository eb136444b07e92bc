#include "fuzz/support.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "support/sandbox.h"

// The library's paths are fixed: the fuzzers use them in a sandbox of their own.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  enterSandbox();
  return 0;
}

std::string Input::line() {
  const std::string text = left_.substr(0, left_.find('\n'));
  left_.erase(0, text.size() + 1);
  return text;
}

int Input::number() {
  return static_cast<int>(std::strtoll(line().c_str(), nullptr, 10));
}

std::string Input::take(std::size_t count) {
  const std::string bytes = left_.substr(0, count);
  left_.erase(0, count);
  return bytes;
}

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

PageEnd::PageEnd() {
  constexpr std::size_t kPageBytes = 4096;
  void* const memory = ::mmap(nullptr, kBytes + kPageBytes, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  expect(memory != MAP_FAILED, "memory is mapped");
  end_ = static_cast<char*>(memory) + kBytes;
  expect(::mprotect(end_, kPageBytes, PROT_NONE) == 0, "the last page is unreadable");
}

const char* PageEnd::putMemory(const void* bytes, std::size_t size) {
  expect(size <= kBytes, "the text fits");
  return static_cast<const char*>(std::memcpy(end_ - size, bytes, size));
}

const unsigned short* PageEnd::put(const std::u16string& text) {
  const std::size_t bytes = (text.size() + 1) * sizeof(char16_t);
  return reinterpret_cast<const unsigned short*>(putMemory(text.c_str(), bytes));
}

void putFile(const std::string& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  expect(file.good(), "a file is written");
}

std::string getFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
