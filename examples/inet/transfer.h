#ifndef ZRCOMMON_EXAMPLES_INET_TRANSFER_H
#define ZRCOMMON_EXAMPLES_INET_TRANSFER_H

#include <curl/curl.h>

#include <string>

/// One request to a web server, read in pieces. At most a small buffer of data that the reader has
/// not asked for is received ahead.
class Transfer {
 public:
  enum class Kind { kFetch, kPresence };

  Transfer(const char* url, Kind kind);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  /// Waits until the body begins or the transfer ends. False if the transfer failed.
  bool start();

  /// Reads the next bytes. Returns the number of bytes written to @p buffer, fewer than @p size
  /// only at the end; 0 at the end; -1 on failure.
  int read(char* buffer, unsigned int size);

  /// The status of the response; 0 if there is none.
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
