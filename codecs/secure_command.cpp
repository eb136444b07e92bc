#include <algorithm>

#include "codecs/secure_text.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr std::size_t kQueryBytes = 5120;
constexpr unsigned char kToSecure = 1;
constexpr unsigned char kToPlain = 0;

// What has been rebuilt of the caller's command so far: always terminated, never measured again.
// Its room is the caller's promise.
class Rebuilt {
 public:
  explicit Rebuilt(char* end) : end_(end) { *end_ = '\0'; }

  void append(std::string_view text) {
    std::memcpy(end_, text.data(), text.size());
    end_ += text.size();
    *end_ = '\0';
  }

 private:
  char* end_;
};

// Takes the text up to the next mark off the front of the rest, past marks that stand before it.
std::string_view takeToken(std::string_view& rest, char mark) {
  rest.remove_prefix(std::min(rest.find_first_not_of(mark), rest.size()));
  const std::string_view token = rest.substr(0, rest.find(mark));
  rest.remove_prefix(std::min(token.size() + 1, rest.size()));
  return token;
}

// Turns names and values into the other form, one at a time.
class Transformer {
 public:
  Transformer(CBase64Url& base64, CCrypt& crypt, bool toSecure)
      : text_(base64, crypt), check_(base64, crypt), toSecure_(toSecure) {}

  bool transformName(std::string_view name) {
    if (!toSecure_) return transformValue(name);
    if (!text_.take(name)) return false;
    // Kept: the way back decides, and not the conversion itself. It takes names of up to 765 bytes,
    // so the other side can read every name that is sent (test SecureCommand.Limits)
    (void)text_.toSecure();
    return check_.take(text_.text()) && check_.toPlain();
  }

  bool transformValue(std::string_view value) {
    return text_.take(value) && (toSecure_ ? text_.toSecure() : text_.toPlain());
  }

  const char* text() const { return text_.text(); }

 private:
  SecureText text_;
  SecureText check_;
  bool toSecure_;
};

// Kept: leading '=' belong to nothing, further ones to the value, and the one in between is
// written even if no value follows (test SecureCommand.Forms)
bool rebuildPair(Rebuilt& command, Transformer& transformer, std::string_view pair) {
  const std::string_view name = takeToken(pair, '=');
  if (name.empty() || !transformer.transformName(name)) return false;
  command.append(transformer.text());
  command.append("=");
  if (pair.empty()) return true;
  if (!transformer.transformValue(pair)) return false;
  command.append(transformer.text());
  return true;
}

}  // namespace

bool CPHPOperations::TransformPhpCommand(char* command, unsigned int capacity,
                                         unsigned char direction) {
  if (!command || capacity == 0) return false;
  char* const mark = std::strrchr(command, '?');
  char* const query = mark ? mark + 1 : command;
  char copy[kQueryBytes];
  const std::size_t length = ::strnlen(query, kQueryBytes);
  if (length == kQueryBytes) return false;
  std::memcpy(copy, query, length);
  Rebuilt rebuilt(query);
  Transformer transformer(base64_, crypt_, direction == kToSecure);
  std::string_view rest(copy, length);
  std::string_view pair = takeToken(rest, '&');
  if (pair.empty()) return false;
  for (;;) {
    if (!rebuildPair(rebuilt, transformer, pair)) return false;
    pair = takeToken(rest, '&');
    if (pair.empty()) return true;
    rebuilt.append("&");
  }
}

bool CPHPOperations::ConvertToSecurePhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToSecure);
}

bool CPHPOperations::ConvertToPlainPhpCommand(char* command, unsigned int capacity) {
  return TransformPhpCommand(command, capacity, kToPlain);
}
