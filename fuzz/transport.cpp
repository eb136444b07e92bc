// The fetch and the connectivity check, with an internet library that answers anything at all.
#include <dlfcn.h>
#include <zrcommon/network.h>

#include <algorithm>
#include <vector>

#include "fuzz/answers.h"
#include "fuzz/support.h"

namespace {

const std::string kHome = "/usr/lib/Valdrix/Valdrix/";

// Answers as the input says. What it claims to have read is there as far as there is room.
class MadeUp : public Answers {
 public:
  explicit MadeUp(Input& input) : input_(input) {}

  int open() override { return input_.number(); }
  int isPresent() override { return input_.number(); }

  int read(char* buffer, unsigned int size) override {
    const int claimed = input_.number();
    const std::string text = input_.line();
    const std::size_t count =
        std::min(static_cast<std::size_t>(std::max(claimed, 0)), static_cast<std::size_t>(size));
    if (count < static_cast<std::size_t>(std::max(claimed, 0))) isTruthful_ = false;
    std::string piece(count, '.');
    for (std::size_t i = 0; i < count && !text.empty(); ++i) piece[i] = text[i % text.size()];
    std::copy(piece.begin(), piece.end(), buffer);
    if (pieces_++ == 0) first_ = claimed;
    if (claimed <= 0) return claimed;
    answer_ += piece;
    return claimed;
  }

  int header(char* header, std::size_t* size) override {
    headerLength_ = input_.number();
    const std::string text = input_.line().substr(0, *size);
    std::copy(text.begin(), text.end(), header);
    *size = text.size();
    return headerLength_;
  }

  // Whether everything it said was true, and its answer had a header, a body and no zero byte.
  bool isPlain() const {
    return isTruthful_ && 0 < headerLength_ && headerLength_ < first_ &&
           answer_.find('\0') == std::string::npos;
  }
  std::string body() const { return answer_.substr(static_cast<std::size_t>(headerLength_)); }

 private:
  Input& input_;
  std::string answer_;
  bool isTruthful_ = true;
  int first_ = 0;
  int headerLength_ = 0;
  int pieces_ = 0;
};

// Once: puts the made-up library in its place and keeps it loaded, so that a call only looks it up.
Answers*& answers() {
  static auto* const pointer = [] {
    const std::string library = kHome + "libinet.so";
    putFile(library, getFile(FUZZ_INET));
    void* const module = ::dlopen(library.c_str(), RTLD_NOW);
    expect(module != nullptr, "the made-up library is loaded");
    return static_cast<AnswersPointer*>(::dlsym(module, kAnswersSymbol));
  }();
  return *pointer;
}

void checkFetch(Input& input) {
  const unsigned int room = input.numberUpTo(70000);
  MadeUp made(input);
  answers() = &made;
  std::vector<char> response(room + 1, '#');
  unsigned int received = 0;
  unsigned int error = 1;
  const unsigned int result =
      ZRSendDataAndGetResponse("http://x/", response.data(), room, &received, &error);
  expect(result <= 1 && response.back() == '#', "nothing is written behind the buffer");
  if (result == 1) expect(received > 0 && response[0], "success comes with a body");
  if (room == 0 || !made.isPlain()) return;
  const std::string body = made.body();
  expect(result == (body.size() < room), "a body that fits is fetched");
  if (result == 1) expect(received == body.size() && response.data() == body, "it is the body");
}

// An entry 12 with this address.
void putDirectory(const std::string& address) {
  std::string record(524, '\0');
  record[0] = 12;
  record.replace(4, 16, "Connection Check");
  record.replace(264, address.size(), address);
  for (char& byte : record) byte = static_cast<char>((byte & 0xF) << 4 | (byte >> 4 & 0xF));
  putFile(kHome + "infoeml.dat", record);
}

void checkConnectivity(Input& input) {
  const std::string address = visible(input.line()).substr(0, 260);
  putDirectory(address);
  Input same = input;
  MadeUp made(input);
  answers() = &made;
  unsigned int error = 1;
  const unsigned int result = CheckInternetConnection(&error);
  const bool isUsable = !address.empty() && address.size() + (address.back() != '/') <= 255;
  const bool isFirst = isUsable && same.number() == 1;
  const bool isSecond = isUsable && !isFirst && same.number() == 1;
  expect(result == isFirst, "the first file decides");
  expect(error == (isFirst || !isUsable ? 0
                   : isSecond           ? 140
                                        : 105),
         "the code tells of the second");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  if (input.line() == "check")
    checkConnectivity(input);
  else
    checkFetch(input);
  return 0;
}
