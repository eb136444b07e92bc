#ifndef ZRCOMMON_BASE_COPY_TRUNCATED_H
#define ZRCOMMON_BASE_COPY_TRUNCATED_H

#include <cstddef>
#include <cstring>

namespace zrcommon {

/// Copies a text into an array, truncated to fit and always terminated. Null counts as the empty
/// text. The text may lie in the array itself.
template <std::size_t Size>
void copyTruncated(char (&to)[Size], const char* from) {
  const std::size_t length = from ? ::strnlen(from, Size - 1) : 0;
  if (length) std::memmove(to, from, length);
  to[length] = '\0';
}

}  // namespace zrcommon

#endif  // ZRCOMMON_BASE_COPY_TRUNCATED_H
