#ifndef ZRCOMMON_TESTS_SUPPORT_INET_MODULE_H
#define ZRCOMMON_TESTS_SUPPORT_INET_MODULE_H

#include <string>

#include "support/files.h"

/// Puts a development internet library ("inet", "inet_scripted", "inet_without_GetHeader") in the
/// installation directory, as libinet.so, for the length of the scope.
class InetModule {
 public:
  explicit InetModule(const std::string& name);
  ~InetModule();
  InetModule(const InetModule&) = delete;
  InetModule& operator=(const InetModule&) = delete;
};

/// The scripted internet library, with its script and the record of the calls it got.
class ScriptedInet {
 public:
  explicit ScriptedInet(const std::string& script, const std::string& name = "inet_scripted");
  ~ScriptedInet();

  /// The calls so far, as "load, open URL, ..., unload".
  std::string calls() const;

 private:
  ScratchDirectory files_;
  InetModule module_;
};

/// Keeps libcurl, whose own dependencies stay loaded once they are, out of the footprint of tests.
void keepCurlLoaded();

#endif  // ZRCOMMON_TESTS_SUPPORT_INET_MODULE_H
