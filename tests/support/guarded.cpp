#include "support/guarded.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

Guarded::Guarded(std::size_t size) : size_(size) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t usable = (size + page - 1) / page * page;
  mappedBytes_ = usable + page;
  void* const mapping =
      ::mmap(nullptr, mappedBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  EXPECT_NE(MAP_FAILED, mapping);
  mapping_ = static_cast<char*>(mapping);
  EXPECT_EQ(0, ::mprotect(mapping_ + usable, page, PROT_NONE));
  data_ = mapping_ + usable - size;
  std::memset(mapping_, '#', usable);
}

Guarded::~Guarded() {
  ::munmap(mapping_, mappedBytes_);
}

GuardedText::GuardedText(const std::string& text) : Guarded(text.size() + 1) {
  std::memcpy(data(), text.c_str(), size());
}
