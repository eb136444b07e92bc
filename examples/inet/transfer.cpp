#include "examples/inet/transfer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t kBufferedBytes = 256 * 1024;
constexpr int kPollMilliseconds = 1000;

// A peer that sends nothing for this many seconds counts as stalled.
long stallSeconds() {
  const char* setting = std::getenv("INET_STALL_SECONDS");
  const long seconds = setting ? std::strtol(setting, nullptr, 10) : 0;
  return seconds > 0 ? seconds : 30;
}

}  // namespace

Transfer::Transfer(const char* url, Kind kind)
    : easy_(curl_easy_init()), multi_(curl_multi_init()) {
  if (easy_ && multi_)
    configure(url, kind);
  else
    finished_ = true, result_ = CURLE_OUT_OF_MEMORY;
}

Transfer::~Transfer() {
  if (multi_ && easy_) curl_multi_remove_handle(multi_, easy_);
  if (easy_) curl_easy_cleanup(easy_);
  if (multi_) curl_multi_cleanup(multi_);
}

void Transfer::configure(const char* url, Kind kind) {
  curl_easy_setopt(easy_, CURLOPT_URL, url);
  curl_easy_setopt(easy_, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy_, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy_, CURLOPT_MAXREDIRS, 5L);
  curl_easy_setopt(easy_, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy_, CURLOPT_FAILONERROR, kind == Kind::kFetch ? 1L : 0L);
  curl_easy_setopt(easy_, CURLOPT_NOBODY, kind == Kind::kPresence ? 1L : 0L);
  curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy_, CURLOPT_CONNECTTIMEOUT, stallSeconds());
  curl_easy_setopt(easy_, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(easy_, CURLOPT_LOW_SPEED_TIME, stallSeconds());
  if (const char* authorities = std::getenv("INET_CA_FILE"))
    curl_easy_setopt(easy_, CURLOPT_CAINFO, authorities);
  curl_easy_setopt(easy_, CURLOPT_HEADERFUNCTION, onHeader);
  curl_easy_setopt(easy_, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, onBody);
  curl_easy_setopt(easy_, CURLOPT_WRITEDATA, this);
  curl_multi_add_handle(multi_, easy_);
}

std::size_t Transfer::onHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
  static_cast<Transfer*>(self)->buffered_.append(bytes, size * count);
  return size * count;
}

std::size_t Transfer::onBody(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<Transfer*>(self);
  transfer.bodyBegun_ = true;
  transfer.paused_ = transfer.buffered_.size() >= kBufferedBytes;
  if (transfer.paused_) return CURL_WRITEFUNC_PAUSE;
  transfer.buffered_.append(bytes, size * count);
  return size * count;
}

void Transfer::advance() {
  int running = 0;
  if (paused_) {
    paused_ = false;
    curl_easy_pause(easy_, CURLPAUSE_CONT);
  }
  const CURLMcode trouble = curl_multi_perform(multi_, &running);
  if (running && trouble == CURLM_OK) {
    curl_multi_poll(multi_, nullptr, 0, paused_ ? 0 : kPollMilliseconds, nullptr);
    return;
  }
  finished_ = true;
  int left = 0;
  const CURLMsg* message = curl_multi_info_read(multi_, &left);
  result_ = message ? message->data.result : CURLE_RECV_ERROR;
}

bool Transfer::start() {
  while (!finished_ && !bodyBegun_) advance();
  return result_ == CURLE_OK;
}

int Transfer::read(char* buffer, unsigned int size) {
  while (!finished_ && buffered_.size() < size) advance();
  const std::size_t count = std::min<std::size_t>(buffered_.size(), size);
  if (count == 0 && result_ != CURLE_OK) return -1;
  std::memcpy(buffer, buffered_.data(), count);
  buffered_.erase(0, count);
  return static_cast<int>(count);
}

long Transfer::status() const {
  long status = 0;
  if (easy_) curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
  return status;
}
