// Secure strings and commands: there and back again, and back from whatever comes.
#include <zrcommon/codecs.h>

#include <algorithm>
#include <vector>

#include "fuzz/support.h"

namespace {

constexpr std::size_t kMostText = 1023;
constexpr std::size_t kMostThatComesBack = 765;
constexpr std::size_t kMostQuery = 5119;

std::size_t secureLength(const std::string& text) {
  return (text.size() + 2) / 3 * 4;
}

std::vector<char> bufferWith(const std::string& text, std::size_t most) {
  std::vector<char> buffer(std::max(most, text.size()) + 1, '#');
  std::copy_n(text.c_str(), text.size() + 1, buffer.begin());
  return buffer;
}

void checkString(CPHPOperations& operations, const std::string& text, bool hasKey) {
  std::vector<char> buffer = bufferWith(text, secureLength(text));
  const bool isFit = hasKey && !text.empty() && text.size() <= kMostText;
  expect(operations.ConvertToSecureString(buffer.data(), 1) == isFit, "what fits is converted");
  if (!isFit) return expect(buffer.data() == text, "what does not fit stays as it was");
  std::vector<char> pair(secureLength(text) * 2 + 2, '#');
  expect(operations.ConvertToSecureKeyValuePair(text.c_str(), text.c_str(), pair.data(), 1),
         "a pair is made");
  const std::string secure = buffer.data();
  expect(pair.data() == secure + "=" + secure, "a pair is made of two secure strings");
  if (text.size() > kMostThatComesBack) return;
  expect(operations.ConvertToPlainString(buffer.data(), static_cast<unsigned int>(buffer.size())),
         "it is converted back");
  expect(buffer.data() == text, "the text comes back");
}

// What a query holds, and what must become of it.
struct Query {
  std::string plain;
  std::size_t secureBytes = 0;
  std::size_t pairs = 0;
  bool isFit = true;
  bool comesBack = true;

  void add(const std::string& name, const std::string& value) {
    plain += (pairs++ ? "&" : "") + name + "=" + value;
    secureBytes += (pairs > 1) + secureLength(name) + 1 + secureLength(value);
    isFit =
        isFit && !name.empty() && name.size() <= kMostThatComesBack && value.size() <= kMostText;
    comesBack = comesBack && value.size() <= kMostThatComesBack;
  }
};

Query parse(const std::string& text) {
  Query query;
  for (std::size_t at = 0; at < text.size();) {
    const std::string piece = text.substr(at, text.find('&', at) - at);
    at += piece.size() + 1;
    if (piece.empty()) continue;
    const std::string pair = piece.substr(std::min(piece.find_first_not_of('='), piece.size()));
    const std::string name = pair.substr(0, pair.find('='));
    query.add(name, pair.substr(std::min(name.size() + 1, pair.size())));
  }
  query.isFit = query.isFit && query.pairs > 0 && text.size() <= kMostQuery;
  query.comesBack = query.comesBack && query.secureBytes <= kMostQuery;
  return query;
}

void checkCommand(CPHPOperations& operations, const std::string& command, bool hasKey) {
  const std::string page = command.substr(0, command.rfind('?') + 1);
  const Query query = parse(command.substr(page.size()));
  std::vector<char> buffer = bufferWith(command, page.size() + query.secureBytes);
  const bool isFit = hasKey && query.isFit;
  expect(operations.ConvertToSecurePhpCommand(buffer.data(), 1) == isFit, "a fit command converts");
  if (!isFit || !query.comesBack) return;
  expect(operations.ConvertToPlainPhpCommand(buffer.data(), 1), "it converts back");
  expect(buffer.data() == page + query.plain, "the command comes back");
}

// Each pair may gain the '=' that it lacked.
void checkPlain(CPHPOperations& operations, const std::string& command) {
  const auto pairs = static_cast<std::size_t>(std::count(command.begin(), command.end(), '&')) + 1;
  std::vector<char> buffer = bufferWith(command, command.size() + pairs);
  operations.ConvertToPlainPhpCommand(buffer.data(), 1);
  buffer = bufferWith(command, 0);
  operations.ConvertToPlainString(buffer.data(), static_cast<unsigned int>(buffer.size()));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::string key = visible(input.line());
  const std::string text = visible(input.rest());
  CPHPOperations operations(key.c_str());
  checkString(operations, text, !key.empty());
  checkCommand(operations, text, !key.empty());
  checkPlain(operations, text);
  return 0;
}
