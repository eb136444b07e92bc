#ifndef ZRCOMMON_SYSTEM_SEARCH_PROGRESS_H
#define ZRCOMMON_SYSTEM_SEARCH_PROGRESS_H

#include <cstddef>
#include <string_view>

namespace zrcommon {

/// How far one way of searching came: to a result, or to the offset before which nothing matches.
struct Progress {
  bool isDone = false;
  std::size_t offset = 0;

  static Progress found(std::size_t at) { return {true, at}; }
  static Progress nothing() { return {true, std::string_view::npos}; }
  static Progress gaveUp(std::size_t at) { return {false, at}; }
};

}  // namespace zrcommon

#endif  // ZRCOMMON_SYSTEM_SEARCH_PROGRESS_H
