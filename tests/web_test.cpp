// The library and the development internet library, against a web server.
#include <dlfcn.h>
#include <zrcommon/network.h>

#include <csignal>

#include "support/test.h"

namespace {

const S kUrl = "http://127.0.0.1:8080/";

// The body; "refused" where the library said no.
S fetch(const S& url, std::size_t size = 1U << 20U) {
  S response(size, '\0');
  unsigned int received = 0, error = 77;
  const unsigned int result = ZRSendDataAndGetResponse(
      url.c_str(), response.data(), static_cast<unsigned int>(size), &received, &error);
  return result ? response.substr(0, received) : "refused";
}

S check() {
  unsigned int error = 77;
  const unsigned int result = CheckInternetConnection(&error);
  return std::to_string(result) + " " + std::to_string(error);
}

class Web : public testing::Test {
 protected:
  // Dependencies of libcurl stay loaded once they are.
  static void SetUpTestSuite() { ASSERT_NE(nullptr, ::dlopen("libcurl.so.4", RTLD_NOW)); }

  void SetUp() override {
    server_ = ::popen(
        "echo $$; exec python3 -um http.server -b 127.0.0.1 -d /scratch 8080 2>/dev/null", "re");
    char started[100];
    ASSERT_EQ(1, std::fscanf(server_, "%d\n", &process_));
    ASSERT_NE(nullptr, std::fgets(started, sizeof started, server_)) << "python3 serves nothing";
    std::filesystem::copy_file(ZR_BUILD_DIR "/examples/inet/libinet.so",
                               kInstallation + "libinet.so");
  }
  void TearDown() override {
    ::kill(process_, SIGTERM);
    ::pclose(server_);
    EXPECT_EQ("refused", fetch(kUrl + "page")) << "the server is gone";
  }

 private:
  std::FILE* server_ = nullptr;
  int process_ = 0;
};

TEST_F(Web, FetchesAndProbes) {
  S large;
  for (int i = 0; large.size() < (1U << 19U); ++i) large += "line " + std::to_string(i) + '\n';
  putFile(kScratch + "page", "hello\n");
  putFile(kScratch + "large", large);
  putFile(kScratch + "empty", "");
  EXPECT_EQ("hello\n", fetch(kUrl + "page"));
  EXPECT_TRUE(large == fetch(kUrl + "large"));
  EXPECT_EQ("refused", fetch(kUrl + "large", large.size()));
  for (const S& url : {kUrl + "missing", kUrl + "empty", S("http://127.0.0.1:1/"), S("http://[bad"),
                       S(), "file://" + kScratch + "page"})
    EXPECT_EQ("refused", fetch(url)) << url;

  putFile(kInstallation + "infoeml.dat", directoryRecord(12, "Connection Check", kUrl));
  EXPECT_EQ("0 105", check());
  putFile(kScratch + "msg32.bin", "b");
  EXPECT_EQ("0 140", check());
  putFile(kScratch + "msg32.htm", "h");
  EXPECT_EQ("1 0", check());
}

}  // namespace
