#ifndef ZRCOMMON_NETWORK_INET_LIBRARY_H
#define ZRCOMMON_NETWORK_INET_LIBRARY_H

#include <cstddef>

#include "base/errno_keeper.h"
#include "base/product_files.h"
#include "zrcommon/network.h"
#include "zrcommon/system.h"

namespace zrcommon {

/// A connection of the internet library, zeroed before it is opened. The internet library decides
/// how much of it it uses; it is roomier than any handle needs to be.
struct InetHandle {
  void* words[8];
};

using GetHeaderFunction = int(const char* data, unsigned int dataSize, char* header,
                              std::size_t* headerSize);
using InetOpenFileFunction = int(const char* url, tagZRINETCONFIG* config, InetHandle* handle);
using InetReadFileFunction = int(InetHandle* handle, char* buffer, unsigned int size);
using InetCloseFileFunction = int(InetHandle* handle);
using IsInternetFilePresentFunction = int(const char* url, tagZRINETCONFIG* config);

/// libinet.so, loaded for one call and released at its end.
class InetLibrary {
 public:
  InetLibrary() : module_(ZRLoadLibrary(kInetLibraryPath.get())) {}
  ~InetLibrary() {
    const ErrnoKeeper keeper;
    ZRFreeLibrary(module_);
  }
  InetLibrary(const InetLibrary&) = delete;
  InetLibrary& operator=(const InetLibrary&) = delete;

  /// Finds an entry point; false if the library lacks it or is not loaded at all.
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
