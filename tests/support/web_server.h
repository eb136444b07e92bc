#ifndef ZRCOMMON_TESTS_SUPPORT_WEB_SERVER_H
#define ZRCOMMON_TESTS_SUPPORT_WEB_SERVER_H

#include <string>

#include "support/files.h"

/// A real web server (nginx) on loopback, with pages of its own, for the length of the scope.
class WebServer {
 public:
  WebServer();
  ~WebServer();
  WebServer(const WebServer&) = delete;
  WebServer& operator=(const WebServer&) = delete;

  void put(const std::string& page, const std::string& body) { putFile(files_ / page, body); }
  std::string url(const std::string& page) const { return "http://127.0.0.1:8080/" + page; }
  std::string secureUrl(const std::string& page) const { return "https://127.0.0.1:8443/" + page; }
  std::string pathOf(const std::string& page) const { return files_ / page; }
  /// The certificate of the secure address, which signs itself.
  std::string certificate() const { return files_ / "certificate.pem"; }

  void stop();

 private:
  void awaitPort() const;

  ScratchDirectory files_;
  int process_;
};

#endif  // ZRCOMMON_TESTS_SUPPORT_WEB_SERVER_H
