#include "support/guarded.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

constexpr std::size_t kPage = 4096;

Guarded::Guarded(const std::string& bytes, std::size_t after) : size_(bytes.size()) {
  if (after >= kPage) after = (kPage - size_ % kPage) % kPage;
  readableBytes_ = (size_ + after + kPage - 1) / kPage * kPage;
  void* const mapping =
      ::mmap(nullptr, readableBytes_ + 2 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  readable_ = static_cast<char*>(mapping) + kPage;
  EXPECT_EQ(0, ::mprotect(readable_, readableBytes_, PROT_READ | PROT_WRITE));
  data_ = readable_ + readableBytes_ - after - size_;
  std::fill_n(readable_, readableBytes_, '#');
  bytes.copy(data_, size_);
}

Guarded::~Guarded() {
  std::fill_n(data_, size_, '#');
  const std::string all(readable_, readableBytes_);
  EXPECT_EQ(all.npos, all.find_first_not_of('#'))
      << "a byte beside the " << size_ << " was written";
  ::munmap(readable_ - kPage, readableBytes_ + 2 * kPage);
}
