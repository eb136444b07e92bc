#include <algorithm>
#include <string_view>

#include "examples/inet/inet.h"

namespace {

constexpr std::string_view kProtocol = "HTTP/";
constexpr std::string_view kEnd = "\r\n\r\n";

// True for the header of an interim response or a redirection that another header follows.
bool isFollowedByAnother(std::string_view block, std::string_view rest) {
  const std::size_t status = block.find(' ');
  const bool interim = status != std::string_view::npos && status + 1 < block.size() &&
                       (block[status + 1] == '1' || block[status + 1] == '3');
  return interim && rest.substr(0, kProtocol.size()) == kProtocol;
}

}  // namespace

int GetHeader(const char* data, unsigned int dataSize, char* header, std::size_t* headerSize) {
  const std::string_view all(data, dataSize);
  std::size_t begin = 0;
  std::size_t end = 0;
  do {
    begin = end;
    const std::size_t blank = all.find(kEnd, begin);
    if (blank == std::string_view::npos) return -1;
    end = blank + kEnd.size();
  } while (isFollowedByAnother(all.substr(begin, end - begin), all.substr(end)));
  *headerSize = all.copy(header, std::min(end, *headerSize));
  return static_cast<int>(end);
}
