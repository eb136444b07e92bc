#include "support/inet_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

std::string builtModule(const std::string& name) {
  return ZR_BUILD_DIR "/examples/inet/lib" + name + ".so";
}

}  // namespace

InetModule::InetModule(const std::string& name) {
  std::filesystem::copy_file(builtModule(name), kInstallation + "libinet.so");
}

InetModule::~InetModule() {
  std::filesystem::remove(kInstallation + "libinet.so");
}

ScriptedInet::ScriptedInet(const std::string& script, const std::string& name) : module_(name) {
  putFile(files_ / "script", script);
  ::setenv("INET_SCRIPT", (files_ / "script").c_str(), 1);
  ::setenv("INET_RECORD", (files_ / "record").c_str(), 1);
}

ScriptedInet::~ScriptedInet() {
  ::unsetenv("INET_SCRIPT");
  ::unsetenv("INET_RECORD");
}

std::string ScriptedInet::calls() const {
  std::string lines = getFile(files_ / "record");
  if (!lines.empty()) lines.pop_back();
  for (std::size_t at = 0; (at = lines.find('\n', at)) != std::string::npos; at += 2)
    lines.replace(at, 1, ", ");
  return lines;
}

void keepCurlLoaded() {
  EXPECT_NE(nullptr, ::dlopen("libcurl.so.4", RTLD_NOW));
}
