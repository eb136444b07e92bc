// The library and the development internet library, against a real web server (nginx).
#include <arpa/inet.h>
#include <dlfcn.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <zrcommon/network.h>

#include "examples/inet/inet.h"
#include "support/inet_module.h"
#include "support/test.h"

namespace {

const S kUrl = "http://127.0.0.1:8080/";
const S kSecureUrl = "https://127.0.0.1:8443/";
const S kStalledUrl = "http://127.0.0.1:8099/";

sockaddr_in loopback(unsigned short port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// The server for the length of the scope, with pages of its own, and a peer that accepts
// connections and never answers.
class Server {
 public:
  Server() : process_(::fork()), stalled_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (process_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      const char* const script = ZR_SOURCE_DIR "/tests/support/web-server";
      ::execl(script, script, files_.path().c_str(), nullptr);
      ::_exit(127);
    }
    const sockaddr_in address = loopback(8099);
    EXPECT_EQ(0, ::bind(stalled_, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    EXPECT_EQ(0, ::listen(stalled_, 4));
    bool answers = false;
    for (int i = 0; i < 500 && !answers; ++i, ::usleep(10000)) answers = isUp();
    EXPECT_TRUE(answers) << "nginx did not start";
  }
  ~Server() {
    stop();
    ::close(stalled_);
  }

  S operator/(const S& name) const { return files_ / name; }
  void put(const S& page, const S& body) const { putFile(files_ / page, body); }
  void stop() {
    if (process_ > 0) ::kill(process_, SIGKILL), ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  static bool isUp() {
    const sockaddr_in address = loopback(8080);
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int result = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(fd);
    return result == 0;
  }

  ScratchDirectory files_;
  pid_t process_;
  int stalled_;
};

// The body; "(refused)" where the library said no.
S fetch(const S& url, std::size_t size = 1U << 16U) {
  std::vector<char> response(size);
  unsigned int received = 0, error = 77;
  const unsigned int result = ZRSendDataAndGetResponse(
      url.c_str(), response.data(), static_cast<unsigned int>(size), &received, &error);
  EXPECT_EQ(0U, error);
  return result ? S(response.data(), received) : "(refused)";
}

template <typename Function>
Function* entry(void* module, const char* name) {
  return reinterpret_cast<Function*>(::dlsym(module, name));
}

void* openModule() {
  return ::dlopen((kInstallation + "libinet.so").c_str(), RTLD_NOW);
}

int presence(const S& url) {
  void* const module = openModule();
  tagZRINETCONFIG config = {};
  const int answer =
      entry<decltype(IsInternetFilePresent)>(module, "IsInternetFilePresent")(url.c_str(), &config);
  ::dlclose(module);
  return answer;
}

S check() {
  unsigned int error = 77;
  const unsigned int result = CheckInternetConnection(&error);
  return std::to_string(result) + ", code " + std::to_string(error);
}

class Web : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    keepCurlLoaded();
    server = new Server;
    server->put("page", "hello page\n");
    ::setenv("INET_CA_FILE", (*server / "certificate.pem").c_str(), 1);
    ::setenv("INET_STALL_SECONDS", "1", 1);
    const InetModule module("inet");
    presence(kSecureUrl + "page");  // leaves loaded what OpenSSL never unloads
  }
  static void TearDownTestSuite() { delete server; }

  static Server* server;
  const InetModule module_{"inet"};
};
Server* Web::server = nullptr;

TEST_F(Web, FetchesPages) {
  for (const S& url : {kUrl + "page", kSecureUrl + "page", kUrl + "moved"})
    EXPECT_EQ("hello page\n", fetch(url)) << url;
  S large;
  for (int i = 0; large.size() < (5U << 20U); ++i) large += "line " + std::to_string(i) + '\n';
  server->put("large", large);
  EXPECT_EQ(large, fetch(kUrl + "large", 6U << 20U));
  EXPECT_EQ("(refused)", fetch(kUrl + "large", large.size()));
}

TEST_F(Web, RefusesWhatCannotBeFetched) {
  server->put("empty", "");
  for (const S& url : {kUrl + "missing", kUrl + "empty", S("http://127.0.0.1:1/"), kStalledUrl,
                       S("http://[bad"), S(), "file://" + (*server / "page")})
    EXPECT_EQ("(refused)", fetch(url)) << url;
  ::unsetenv("INET_CA_FILE");
  EXPECT_EQ("(refused)", fetch(kSecureUrl + "page")) << "the certificate is not trusted";
  ::setenv("INET_CA_FILE", (*server / "certificate.pem").c_str(), 1);
}

TEST_F(Web, TellsPresence) {
  for (const auto& [url, answer] : Rows<S, int>{{kUrl + "page", 1},
                                                {kSecureUrl + "page", 1},
                                                {kUrl + "missing", 0},
                                                {"http://127.0.0.1:1/", -1},
                                                {kStalledUrl, -1},
                                                {"nonsense://x", -1}})
    EXPECT_EQ(answer, presence(url)) << url;
}

TEST_F(Web, ChecksTheConnection) {
  const S directory = kInstallation + "infoeml.dat";
  ASSERT_EQ(
      0, runTool({"directory", "pack", directory}, "12\tConnection Check\thttp://127.0.0.1:8080\n")
             .status);
  EXPECT_EQ("0, code 105", check());
  server->put("msg32.bin", "b");
  EXPECT_EQ("0, code 140", check());
  server->put("msg32.htm", "h");
  EXPECT_EQ("1, code 0", check());
  std::filesystem::remove(directory);
}

// A body of 1 GiB is read within half of it, a sanitizer's own memory included.
TEST_F(Web, StreamsWhatNeverFits) {
  server->put("huge", "");
  std::filesystem::resize_file(*server / "huge", 1U << 30U);
  const Outcome outcome = runForked([] {
    void* const module = openModule();
    auto* const read = entry<decltype(InetReadFile)>(module, "InetReadFile");
    void* handle = nullptr;
    const S url = kUrl + "huge";
    if (entry<decltype(InetOpenFile)>(module, "InetOpenFile")(url.c_str(), nullptr, &handle) != 1)
      return 1;
    char buffer[15000];
    long total = 0;
    for (int count = 0; (count = read(&handle, buffer, sizeof buffer)) > 0;) total += count;
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return total < (1L << 30) ? 2 : usage.ru_maxrss > 512 * 1024 ? 3 : 0;
  });
  EXPECT_EQ(0, outcome.status);
}

TEST_F(Web, AStoppedServerIsRefused) {
  server->stop();
  EXPECT_EQ("(refused)", fetch(kUrl + "page"));
}

}  // namespace
