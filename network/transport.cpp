#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/errno_keeper.h"
#include "network/inet_library.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

constexpr unsigned int kChunkBytes = 15000;
constexpr int kReadFailed = -1;

// The data of one read, as text: zeros follow it, and a spare zero byte terminates a full chunk.
// Every access stays inside the buffer, whatever counts the internet library reports.
class Chunk {
 public:
  char* data() { return bytes_; }
  const char* text() const { return bytes_; }
  void clear() { std::memset(bytes_, 0, kChunkBytes); }

  // Moves the bytes from begin to end to the front and clears the rest.
  void keep(std::uint32_t begin, std::uint32_t end) {
    end = std::min(end, kChunkBytes);
    begin = std::min(begin, end);
    std::memmove(bytes_, bytes_ + begin, end - begin);
    std::memset(bytes_ + (end - begin), 0, kChunkBytes - (end - begin));
  }

 private:
  char bytes_[kChunkBytes + 1] = {};
};

// The caller's buffer: a text that grows and is always terminated.
class Response {
 public:
  Response(char* text, std::uint32_t size) : text_(text), size_(size) {}

  void clear() { std::memset(text_, 0, size_); }

  bool append(const char* text) {
    const std::size_t added = std::strlen(text);
    if (added >= size_ - length_) return false;
    std::memcpy(text_ + length_, text, added);
    length_ += added;
    return true;
  }

  bool isEmpty() const { return text_[0] == '\0'; }
  std::uint32_t size() const { return size_; }

 private:
  char* text_;
  std::uint32_t size_;
  std::size_t length_ = 0;
};

// The internet library and its entry points.
struct Inet {
  InetLibrary library;
  GetHeaderFunction* getHeader = nullptr;
  InetOpenFileFunction* openFile = nullptr;
  InetReadFileFunction* readFile = nullptr;
  InetCloseFileFunction* closeFile = nullptr;
  IsInternetFilePresentFunction* isFilePresent = nullptr;

  // Kept: ZRSendDataAndGetResponse() requires all five entry points, also IsInternetFilePresent,
  // which it does not call (test Transport.EveryEntryPointIsRequired)
  bool findEntryPoints() {
    return library.find("GetHeader", getHeader) && library.find("InetOpenFile", openFile) &&
           library.find("InetReadFile", readFile) && library.find("InetCloseFile", closeFile) &&
           library.find("IsInternetFilePresent", isFilePresent);
  }
};

class Connection {
 public:
  Connection(const Inet& inet, const char* url, tagZRINETCONFIG* config)
      : inet_(inet), isOpen_(inet.openFile(url, config, &handle_) != 0) {}
  ~Connection() {
    if (!isOpen_) return;
    const ErrnoKeeper keeper;
    inet_.closeFile(&handle_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  explicit operator bool() const { return isOpen_; }
  int read(Chunk& chunk) { return inet_.readFile(&handle_, chunk.data(), kChunkBytes); }

 private:
  const Inet& inet_;
  InetHandle handle_ = {};
  bool isOpen_;
};

// One fetch, from the first read on. The counters hold what the internet library reported, which
// may be wrong: their sums wrap, and only Chunk and Response decide which memory is accessed.
class Fetch {
 public:
  Fetch(const Inet& inet, Connection& connection, Response& response)
      : inet_(inet), connection_(connection), response_(response) {}

  // False if the first read fails or the body does not fit.
  bool run() {
    const int total = connection_.read(chunk_);
    if (total == kReadFailed) return false;
    total_ = static_cast<std::uint32_t>(total);
    const int pending = dropHeader(total);
    response_.clear();
    return pending == 0 || pending == kReadFailed || collect();
  }

  std::int32_t bodyLength() const { return static_cast<std::int32_t>(total_ - headerLength_); }

 private:
  int dropHeader(int total) {
    char header[kChunkBytes] = {};
    std::size_t headerSize = sizeof header;
    const int headerLength = inet_.getHeader(chunk_.text(), kChunkBytes, header, &headerSize);
    headerLength_ = static_cast<std::uint32_t>(headerLength);
    if (0 < headerLength && headerLength < total) {
      chunk_.keep(headerLength_, total_);
      return bodyLength();
    }
    // Kept: ZRSendDataAndGetResponse() drops the whole first chunk if the header does not end
    // inside it; the length received is still the bytes read less the header's length (test
    // Transport.Answers)
    chunk_.clear();
    return headerLength;
  }

  // Kept: ZRSendDataAndGetResponse() takes a read error after the first chunk for the end of the
  // body (test Transport.Answers)
  bool collect() {
    int pending = 0;
    do {
      if (!response_.append(chunk_.text())) return false;
      chunk_.clear();
      pending = connection_.read(chunk_);
      if (pending > 0 && !addToTotal(static_cast<std::uint32_t>(pending))) return false;
    } while (pending > 0);
    return true;
  }

  // Kept: ZRSendDataAndGetResponse() compares the body's length on the wire with the caller's size,
  // as unsigned numbers, and only from the second chunk on (test Transport.Answers)
  bool addToTotal(std::uint32_t pending) {
    if (pending + total_ - headerLength_ >= response_.size()) return false;
    total_ += pending;
    return true;
  }

  const Inet& inet_;
  Connection& connection_;
  Response& response_;
  Chunk chunk_;
  std::uint32_t total_ = 0;
  std::uint32_t headerLength_ = 0;
};

}  // namespace

unsigned int ZRSendDataAndGetResponse(const char* url, char* response, unsigned int responseSize,
                                      unsigned int* received, unsigned int* error) {
  if (!url || !response || !received || !error || responseSize == 0) return 0;
  *error = 0;
  Inet inet;
  if (!inet.findEntryPoints()) return 0;
  tagZRINETCONFIG config = {};
  unsigned int ignoredError = 0;
  if (!ZRGetInetConfig(&config, &ignoredError)) return 0;
  Connection connection(inet, url, &config);
  if (!connection) return 0;
  Response body(response, responseSize);
  Fetch fetch(inet, connection, body);
  if (!fetch.run() || fetch.bodyLength() <= 0 || body.isEmpty()) return 0;
  *received = static_cast<unsigned int>(fetch.bodyLength());
  return 1;
}

unsigned int SendDataAndGetResponse(std::string url, char* response, unsigned int responseSize) {
  if (!response || responseSize == 0) return 0;
  unsigned int received = 0;
  unsigned int error = 0;
  return ZRSendDataAndGetResponse(url.c_str(), response, responseSize, &received, &error) != 0;
}
