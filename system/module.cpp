#include <dlfcn.h>

#include <cstdio>

#include "base/product_files.h"
#include "zrcommon/logging.h"
#include "zrcommon/system.h"

using namespace zrcommon;

void* ZRLoadLibrary(const char* name) {
  if (!name) {
    WriteToLog(kCommonLog, "ZRLoadLibrary: Invalid parameters");
    return nullptr;
  }
  // The loader looks for a bare name in the search path of the object that calls dlopen(): the call
  // must stay in this library.
  void* const module = ::dlopen(name, RTLD_NOW);
  if (!module) {
    (void)std::snprintf(szErrMsg, sizeof szErrMsg, "In ZRLoadLibrary(): dlopen Error!!!%s",
                        ::dlerror());
    WriteToLog(kCommonLog, szErrMsg);
  }
  return module;
}

void* ZRGetProcAddress(void* module, const char* name) {
  return module && name ? ::dlsym(module, name) : nullptr;
}

void ZRFreeLibrary(void* module) {
  if (module) ::dlclose(module);
}
