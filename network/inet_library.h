#ifndef ZRCOMMON_NETWORK_INET_LIBRARY_H
#define ZRCOMMON_NETWORK_INET_LIBRARY_H

#include <cstddef>

#include "base/errno_keeper.h"
#include "base/product_files.h"
#include "zrcommon/network.h"
#include "zrcommon/system.h"

namespace zrcommon {

/// The connection handle of the internet library, zeroed before each open. The internet library
/// alone knows what it holds; one pointer is expected, and there is room for eight.
struct InetHandle {
  void* words[8];
};

using GetHeaderFunction = int(const char* data, unsigned int dataSize, char* header,
                              std::size_t* headerSize);
using InetOpenFileFunction = int(const char* url, tagZRINETCONFIG* config, InetHandle* handle);
using InetReadFileFunction = int(InetHandle* handle, char* buffer, unsigned int size);
using InetCloseFileFunction = int(InetHandle* handle);
using IsInternetFilePresentFunction = int(const char* url, tagZRINETCONFIG* config);

/// The library libinet.so, loaded by the constructor and released by the destructor.
class InetLibrary {
 public:
  InetLibrary() : module_(ZRLoadLibrary(kInetLibraryPath.get())) {}
  ~InetLibrary() {
    const ErrnoKeeper keeper;
    ZRFreeLibrary(module_);
  }
  InetLibrary(const InetLibrary&) = delete;
  InetLibrary& operator=(const InetLibrary&) = delete;

  /// Looks up an entry point. False if the library does not have it or could not be loaded.
  template <typename Function>
  bool find(const char* name, Function*& entry) const {
    entry = reinterpret_cast<Function*>(ZRGetProcAddress(module_, name));
    return entry != nullptr;
  }

 private:
  void* module_;
};

}  // namespace zrcommon

#endif  // ZRCOMMON_NETWORK_INET_LIBRARY_H
