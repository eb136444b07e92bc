// The library and the development internet library, against a real web server.
#include <arpa/inet.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zrcommon/network.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "examples/inet/inet.h"
#include "support/child.h"
#include "support/inet_module.h"
#include "support/web_server.h"

namespace {

class Web : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    keepCurlLoaded();
    server = new WebServer;
    server->put("page", "hello page\n");
    ::setenv("INET_CA_FILE", server->certificate().c_str(), 1);
    ::setenv("INET_STALL_SECONDS", "1", 1);
    const InetModule module("inet");
    presence(server->secureUrl("page"));  // leaves loaded what OpenSSL never unloads
  }
  static void TearDownTestSuite() { delete server; }

  // The body; "(refused)" where the library said no.
  static std::string fetch(const std::string& url, unsigned int size = 1U << 16U) {
    std::vector<char> response(size);
    unsigned int received = 0;
    unsigned int error = 77;
    const unsigned int result =
        ZRSendDataAndGetResponse(url.c_str(), response.data(), size, &received, &error);
    EXPECT_EQ(0U, error);
    return result ? std::string(response.data(), received) : "(refused)";
  }

  static int presence(const std::string& url) {
    void* const module = ::dlopen("/usr/lib/Valdrix/Valdrix/libinet.so", RTLD_NOW);
    auto* const ask = reinterpret_cast<decltype(&IsInternetFilePresent)>(
        ::dlsym(module, "IsInternetFilePresent"));
    tagZRINETCONFIG config = {};
    const int answer = ask(url.c_str(), &config);
    ::dlclose(module);
    return answer;
  }

  static WebServer* server;
  const InetModule module_{"inet"};
};
WebServer* Web::server = nullptr;

// Accepts connections and never answers.
class StalledPeer {
 public:
  StalledPeer() : fd_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(8099);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(0, ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address));
    EXPECT_EQ(0, ::listen(fd_, 4));
  }
  ~StalledPeer() { ::close(fd_); }

 private:
  int fd_;
};

TEST_F(Web, FetchesPages) {
  EXPECT_EQ("hello page\n", fetch(server->url("page")));
  EXPECT_EQ("hello page\n", fetch(server->secureUrl("page")));
  EXPECT_EQ("hello page\n", fetch(server->url("moved")));
  std::string large;
  for (int i = 0; large.size() < (5U << 20U); ++i) large += "line " + std::to_string(i) + '\n';
  server->put("large", large);
  EXPECT_EQ(large, fetch(server->url("large"), 6U << 20U));
  EXPECT_EQ("(refused)", fetch(server->url("large"), static_cast<unsigned int>(large.size())));
}

TEST_F(Web, RefusesWhatCannotBeFetched) {
  server->put("empty", "");
  const StalledPeer peer;
  for (const std::string& url :
       {server->url("missing"), server->url("empty"), std::string("http://127.0.0.1:1/"),
        std::string("http://127.0.0.1:8099/"), std::string("http://[bad"), std::string(""),
        "file://" + server->pathOf("page")})
    EXPECT_EQ("(refused)", fetch(url)) << url;
  ::unsetenv("INET_CA_FILE");
  EXPECT_EQ("(refused)", fetch(server->secureUrl("page"))) << "the certificate is not trusted";
  ::setenv("INET_CA_FILE", server->certificate().c_str(), 1);
}

TEST_F(Web, TellsPresence) {
  const StalledPeer peer;
  EXPECT_EQ(1, presence(server->url("page")));
  EXPECT_EQ(1, presence(server->secureUrl("page")));
  EXPECT_EQ(0, presence(server->url("missing")));
  EXPECT_EQ(-1, presence("http://127.0.0.1:1/"));
  EXPECT_EQ(-1, presence("http://127.0.0.1:8099/"));
  EXPECT_EQ(-1, presence("nonsense://x"));
}

TEST_F(Web, ChecksTheConnection) {
  const std::string directory = "/usr/lib/Valdrix/Valdrix/infoeml.dat";
  const Outcome packed = run({ZR_BUILD_DIR "/zrtool", "directory", "pack", directory},
                             "12\tConnection Check\thttp://127.0.0.1:8080\n");
  ASSERT_EQ(0, packed.status) << packed.err;
  const auto check = [] {
    unsigned int error = 77;
    const unsigned int result = CheckInternetConnection(&error);
    return std::to_string(result) + ", code " + std::to_string(error);
  };
  EXPECT_EQ("0, code 105", check());
  server->put("msg32.bin", "b");
  EXPECT_EQ("0, code 140", check());
  server->put("msg32.htm", "h");
  EXPECT_EQ("1, code 0", check());
  std::filesystem::remove(server->pathOf("msg32.bin"));
  EXPECT_EQ("1, code 0", check());
  std::filesystem::remove(directory);
}

// A body of 1 GiB is read within half of it, a sanitizer's own memory included.
TEST_F(Web, StreamsWhatNeverFits) {
  server->put("huge", "");
  std::filesystem::resize_file(server->pathOf("huge"), 1U << 30U);
  const Outcome outcome = runForked([] {
    void* const module = ::dlopen("/usr/lib/Valdrix/Valdrix/libinet.so", RTLD_NOW);
    auto* const open = reinterpret_cast<decltype(&InetOpenFile)>(::dlsym(module, "InetOpenFile"));
    auto* const read = reinterpret_cast<decltype(&InetReadFile)>(::dlsym(module, "InetReadFile"));
    auto* const close =
        reinterpret_cast<decltype(&InetCloseFile)>(::dlsym(module, "InetCloseFile"));
    void* handle = nullptr;
    if (open(server->url("huge").c_str(), nullptr, &handle) != 1) return 1;
    char buffer[15000];
    unsigned long total = 0;
    rusage before = {};
    ::getrusage(RUSAGE_SELF, &before);
    for (int count = 0; (count = read(&handle, buffer, sizeof buffer)) > 0;)
      total += static_cast<unsigned long>(count);
    rusage after = {};
    ::getrusage(RUSAGE_SELF, &after);
    close(&handle);
    if (total < (1U << 30U)) return 2;
    return after.ru_maxrss - before.ru_maxrss > 512 * 1024 ? 3 : 0;
  });
  EXPECT_EQ(0, outcome.status);
}

TEST_F(Web, AStoppedServerIsRefused) {
  server->stop();
  EXPECT_EQ("(refused)", fetch(server->url("page")));
}

}  // namespace
