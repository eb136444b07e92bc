#include "tools/internet_library.h"

#include <dlfcn.h>

#include "base/product_files.h"

using namespace zrcommon;

namespace {

std::string missingEntryPoints(void* module) {
  std::string missing;
  for (const char* name :
       {"GetHeader", "InetOpenFile", "InetReadFile", "InetCloseFile", "IsInternetFilePresent"})
    if (!::dlsym(module, name)) missing += (missing.empty() ? "" : ", ") + std::string(name);
  return missing;
}

}  // namespace

// Uses the loader's own call: ZRLoadLibrary() would write a failure to the product's log.
std::string internetLibraryProblem() {
  void* const module = ::dlopen(kInetLibraryPath.get(), RTLD_NOW);
  if (!module) return "the internet library cannot be loaded: " + std::string(::dlerror());
  const std::string missing = missingEntryPoints(module);
  ::dlclose(module);
  return missing.empty() ? "" : "the internet library has no entry point " + missing;
}
