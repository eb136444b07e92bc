#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include "network/inet_library.h"
#include "zrcommon/network.h"

using namespace zrcommon;

namespace {

constexpr unsigned int kBaseEntry = 12;
constexpr char kBaseName[] = "Connection Check";
constexpr std::size_t kBaseBytes = 256;

constexpr char kFirstProbe[] = "msg32.htm";
constexpr char kSecondProbe[] = "msg32.bin";

enum Code : unsigned int { kSuccess = 0, kNothingReached = 105, kOnlySecondReached = 140 };

// Gets the address of the directory with the probe files, which ends in "/". False if the server
// address directory has none, or if the address and its "/" do not fit.
bool findBase(char (&base)[kBaseBytes]) {
  if (!GetValueFromInfoEml(kBaseEntry, kBaseName, base, kBaseBytes)) return false;
  const std::size_t length = ::strnlen(base, kBaseBytes);
  if (length == kBaseBytes) return false;
  if (length > 0 && base[length - 1] == '/') return true;
  if (length + 1 == kBaseBytes) return false;
  std::memcpy(base + length, "/", 2);
  return true;
}

bool isReached(const char* base, const char* file) {
  try {
    return ZRIsInternetConnectionOn(std::string(base) + file) == 1;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

unsigned int ZRIsInternetConnectionOn(std::string url) {
  const InetLibrary library;
  IsInternetFilePresentFunction* isFilePresent = nullptr;
  if (!library.find("IsInternetFilePresent", isFilePresent)) return 0;
  tagZRINETCONFIG config = {};
  unsigned int ignoredError = 0;
  if (!ZRGetInetConfig(&config, &ignoredError)) return 0;
  // Kept: ZRIsInternetConnectionOn() returns 1 only if the internet library answers exactly 1;
  // every other number means that the resource is absent (test Connectivity.FirstProbeDecides)
  return isFilePresent(url.c_str(), &config) == 1;
}

unsigned int CheckInternetConnection(unsigned int* error) {
  if (!error) return 0;
  *error = kSuccess;
  char base[kBaseBytes] = {};
  if (!findBase(base)) return 0;
  if (isReached(base, kFirstProbe)) return 1;
  // Kept: CheckInternetConnection() returns 0 if only the second file can be reached; that file
  // selects the code and nothing else (test Connectivity.FirstProbeDecides)
  *error = isReached(base, kSecondProbe) ? kOnlySecondReached : kNothingReached;
  return 0;
}
