#include "support/failing_memory.h"

#include <cstdlib>
#include <new>

int allocationsUntilFailure = -1;

namespace {

bool fails() {
  return allocationsUntilFailure >= 0 && allocationsUntilFailure-- == 0;
}

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = fails() ? nullptr : std::malloc(size);
  return memory ? memory : throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fails() ? nullptr : std::malloc(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

#ifndef __SANITIZE_ADDRESS__

// What the loader, the streams and the time zone allocate. The sanitizer has its own of these.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size) {
  return fails() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  return fails() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
  return fails() ? nullptr : __libc_realloc(memory, size);
}
}

#endif
