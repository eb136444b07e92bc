#ifndef ZRCOMMON_EXAMPLES_INET_TRANSFER_H
#define ZRCOMMON_EXAMPLES_INET_TRANSFER_H

#include <curl/curl.h>

#include <string>

/// One request to a web server, read piece by piece: what the reader has not asked for yet stays
/// with the peer, but for a small buffer.
class Transfer {
 public:
  enum class Kind { kFetch, kPresence };

  Transfer(const char* url, Kind kind);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  /// Waits until the body begins or everything is over. False if the transfer has failed by then.
  bool start();

  /// Bytes written to @p buffer, all @p size of them but at the end; 0 at the end, -1 on failure.
  int read(char* buffer, unsigned int size);

  /// The status of the answer; 0 without one.
  long status() const;

 private:
  static std::size_t onHeader(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* self);
  void configure(const char* url, Kind kind);
  void advance();

  CURL* easy_;
  CURLM* multi_;
  std::string buffered_;
  bool bodyBegun_ = false;
  bool paused_ = false;
  bool finished_ = false;
  CURLcode result_ = CURLE_OK;
};

#endif  // ZRCOMMON_EXAMPLES_INET_TRANSFER_H
