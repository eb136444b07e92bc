#include <cstddef>
#include <string_view>

#include "system/search/pattern.h"
#include "zrcommon/system.h"

using namespace zrcommon;

namespace {

std::string_view view(const unsigned char* bytes, int length) {
  return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

}  // namespace

int SearchFor(const unsigned char* buffer, int bufferLength, const unsigned char* pattern,
              int patternLength) {
  if (!buffer || !pattern || patternLength < 1 || bufferLength < patternLength) return -1;
  const std::string_view text = view(buffer, bufferLength);
  const std::size_t found = Pattern(view(pattern, patternLength), text.size()).find(text);
  return found == std::string_view::npos ? -1 : static_cast<int>(found);
}
