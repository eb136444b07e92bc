#ifndef ZRCOMMON_NETWORK_DIRECTORY_RECORD_H
#define ZRCOMMON_NETWORK_DIRECTORY_RECORD_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zrcommon/codecs.h"

namespace zrcommon {

inline constexpr std::size_t kDirectoryTextBytes = 260;

/// One record of the server address directory. A text that fills its field has no terminator.
struct DirectoryRecord {
  std::uint32_t number;
  char name[kDirectoryTextBytes];
  char value[kDirectoryTextBytes];
};

static_assert(sizeof(DirectoryRecord) == 524 && offsetof(DirectoryRecord, name) == 4 &&
                  offsetof(DirectoryRecord, value) == 264,
              "the directory file is a sequence of this record");
static_assert(std::is_trivially_copyable<DirectoryRecord>::value, "read as bytes");

/// From how a record, or a part of one, is stored to how it reads, and back: the file keeps every
/// byte with its two halves swapped.
template <typename Part>
void swapStored(Part& part) {
  Encrypt(reinterpret_cast<unsigned char*>(&part), sizeof part);
}

}  // namespace zrcommon

#endif  // ZRCOMMON_NETWORK_DIRECTORY_RECORD_H
