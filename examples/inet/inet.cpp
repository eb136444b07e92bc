// A libinet.so for development that fetches real web pages with libcurl.
//
// It does not read the settings block. Two environment variables take its place: INET_CA_FILE names
// the file of trusted certificates, and INET_STALL_SECONDS is the time limit for a peer that sends
// nothing (30 seconds if it is not set).
#include "examples/inet/inet.h"

#include <memory>

#include "examples/inet/transfer.h"

namespace {

// Initialises libcurl when this module is loaded and cleans it up when the module is unloaded.
struct CurlLibrary {
  CurlLibrary() { curl_global_init(CURL_GLOBAL_DEFAULT); }
  ~CurlLibrary() { curl_global_cleanup(); }
};
const CurlLibrary kCurlLibrary;

// No exception may leave an entry point: the callers use C linkage.
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
