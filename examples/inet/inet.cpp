// libinet.so for development: real web pages for libzrcommon, over libcurl.
//
// The settings block is opaque here too. Two environment variables take the place of settings:
// INET_CA_FILE names the certificates to trust, INET_STALL_SECONDS the time limit for a peer that
// sends nothing (30).
#include "examples/inet/inet.h"

#include <memory>

#include "examples/inet/transfer.h"

namespace {

// libcurl's own lifetime is this module's.
struct CurlLibrary {
  CurlLibrary() { curl_global_init(CURL_GLOBAL_DEFAULT); }
  ~CurlLibrary() { curl_global_cleanup(); }
};
const CurlLibrary kCurlLibrary;

// Callers are C; running out of memory is just another failure to them.
template <typename Action>
int orOnException(int failure, Action action) {
  try {
    return action();
  } catch (...) {
    return failure;
  }
}

Transfer* transferOf(void** handle) {
  return handle ? static_cast<Transfer*>(*handle) : nullptr;
}

}  // namespace

int InetOpenFile(const char* url, tagZRINETCONFIG*, void** handle) {
  if (!url || !handle) return 0;
  return orOnException(0, [&] {
    auto transfer = std::make_unique<Transfer>(url, Transfer::Kind::kFetch);
    if (!transfer->start()) return 0;
    *handle = transfer.release();
    return 1;
  });
}

int InetReadFile(void** handle, char* buffer, unsigned int size) {
  Transfer* const transfer = transferOf(handle);
  if (!transfer || !buffer) return -1;
  return orOnException(-1, [&] { return transfer->read(buffer, size); });
}

int InetCloseFile(void** handle) {
  delete transferOf(handle);
  if (handle) *handle = nullptr;
  return 1;
}

int IsInternetFilePresent(const char* url, tagZRINETCONFIG*) {
  if (!url) return -1;
  return orOnException(-1, [&] {
    Transfer transfer(url, Transfer::Kind::kPresence);
    if (!transfer.start()) return -1;
    return transfer.status() >= 200 && transfer.status() < 300 ? 1 : 0;
  });
}
