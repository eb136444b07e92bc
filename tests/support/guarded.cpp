#include "support/guarded.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

Guarded::Guarded(std::size_t size) : size_(size) {
  constexpr std::size_t kPage = 4096;
  mappedBytes_ = (size + kPage - 1) / kPage * kPage + kPage;
  void* const mapping =
      ::mmap(nullptr, mappedBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  EXPECT_NE(MAP_FAILED, mapping);
  mapping_ = static_cast<char*>(mapping);
  char* const end = mapping_ + mappedBytes_ - kPage;
  EXPECT_EQ(0, ::mprotect(end, kPage, PROT_NONE));
  data_ = end - size;
  std::memset(data_, '#', size);
}

Guarded::~Guarded() {
  ::munmap(mapping_, mappedBytes_);
}
