#include "support/web_server.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

WebServer::WebServer() : process_(::fork()) {
  if (process_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::execl(ZR_SOURCE_DIR "/tests/support/web-server", "web-server", files_.path().c_str(),
            nullptr);
    ::_exit(127);
  }
  awaitPort();
}

WebServer::~WebServer() {
  stop();
}

void WebServer::stop() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

void WebServer::awaitPort() const {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(8080);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bool answered = false;
  for (int attempt = 0; attempt < 500 && !answered; ++attempt) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    answered = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    if (!answered) ::usleep(10000);
  }
  EXPECT_TRUE(answered) << "nginx did not start";
}
