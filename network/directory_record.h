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

/// Converts a record, or a part of one, from its stored form to plain bytes, or back. In the stored
/// form the two halves of each byte are swapped.
template <typename Part>
void swapStored(Part& part) {
  Encrypt(reinterpret_cast<unsigned char*>(&part), sizeof part);
}

}  // namespace zrcommon

#endif  // ZRCOMMON_NETWORK_DIRECTORY_RECORD_H
