#ifndef ZRCOMMON_TESTS_SUPPORT_SHARED_H
#define ZRCOMMON_TESTS_SUPPORT_SHARED_H

#include <sys/mman.h>

#include <new>

/// A record that forked children write and their parent reads.
template <typename Record>
class Shared {
 public:
  Shared()
      : record_(new (::mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Record) {}
  ~Shared() { ::munmap(record_, sizeof(Record)); }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;
  Record* operator->() { return record_; }

 private:
  Record* record_;
};

#endif  // ZRCOMMON_TESTS_SUPPORT_SHARED_H
