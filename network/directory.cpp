#include <fcntl.h>
#include <strings.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/file.h"
#include "base/product_files.h"
#include "network/directory_record.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

bool readNext(const Fd& file, DirectoryRecord& record) {
  return ::read(file.get(), &record, sizeof record) == ssize_t{sizeof record};
}

// A name that fills its field has no terminator: it ends where the field ends.
bool isNamed(const DirectoryRecord& record, const char* name) {
  if (::strncasecmp(record.name, name, sizeof record.name) != 0) return false;
  const bool fillsField = ::strnlen(record.name, sizeof record.name) == sizeof record.name;
  return !fillsField || name[sizeof record.name] == '\0';
}

// Compares numbers in their stored form, so that only records with the right number are swapped.
bool findRecord(const Fd& file, std::uint32_t number, const char* name, DirectoryRecord& record) {
  swapStored(number);
  while (readNext(file, record)) {
    if (record.number != number) continue;
    swapStored(record);
    if (isNamed(record, name)) return true;
  }
  return false;
}

// Kept: GetValueFromInfoEml() copies as strncpy() does with the whole size: a value of that many
// characters or more fills the buffer and is not terminated (test Directory.CopiesTheValue)
void copyValue(const DirectoryRecord& record, char* value, std::size_t valueSize) {
  const std::size_t most = std::min(sizeof record.value, valueSize);
  const std::size_t length = ::strnlen(record.value, most);
  std::memcpy(value, record.value, length);
  std::memset(value + length, 0, valueSize - length);
}

}  // namespace

unsigned int GetValueFromInfoEml(unsigned int entry, const char* name, char* value,
                                 unsigned int valueSize) {
  if (entry == 0 || !name || !value || valueSize == 0) return 0;
  const Fd file(openFile(kDirectoryPath.get(), O_RDONLY));
  if (!file) return 0;
  DirectoryRecord record;
  if (!findRecord(file, entry, name, record)) return 0;
  copyValue(record, value, valueSize);
  return 1;
}
