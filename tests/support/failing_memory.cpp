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
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return fails() ? nullptr : std::malloc(size);
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

extern "C" {

#ifdef __SANITIZE_ADDRESS__

// So that the faults of faults_test reach the program instead of ending it.
const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}

#else

// What the loader, the shell and the time zone allocate. The sanitizer has its own of these.
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

#endif
}
