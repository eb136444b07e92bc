#include <benchmark/benchmark.h>
#include <glib.h>
#include <openssl/evp.h>
#include <zrcommon/codecs.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "bench/contest.h"

namespace {

constexpr char kKey[] = "8W371KJ05926143DCF57";

std::string bytesFor(std::size_t length) {
  std::string bytes;
  for (std::size_t i = 0; i < length; ++i) bytes.push_back(static_cast<char>(1 + i * 37 % 255));
  return bytes;
}

// A text to convert, and places for copies of it and for results.
struct Work {
  explicit Work(std::string input) : text(std::move(input)), places(kBatch * placeBytes()) {}
  std::size_t placeBytes() const { return 2 * text.size() + 32; }
  char* place(long number) {
    return places.data() + static_cast<std::size_t>(number) * placeBytes();
  }
  char* copied(long number = 0) {
    return static_cast<char*>(std::memcpy(place(number), text.c_str(), text.size() + 1));
  }
  int length() const { return static_cast<int>(text.size()); }

  std::string text;
  std::vector<char> places;
};

const unsigned char* asBytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}
unsigned char* asBytes(char* text) {
  return reinterpret_cast<unsigned char*>(text);
}

std::string encodedByOpenSsl(const std::string& bytes) {
  Work work(bytes);
  EVP_EncodeBlock(asBytes(work.place(0)), asBytes(bytes.data()), work.length());
  return work.place(0);
}

std::string encodedByUs(const std::string& bytes) {
  Work work(bytes);
  CBase64Url().Encode(work.copied(), 1);
  return work.place(0);
}

// The work is to replace a zero-terminated text, which lies ready, by its encoding, or by the bytes
// that it encodes.
template <typename Convert>
void enterConversion(const std::string& operation, const std::string& size,
                     const std::string& contestant, Work* w, Convert convert) {
  const auto body = [w, convert](long number) {
    convert(w->place(number));
    benchmark::ClobberMemory();
  };
  enterCalls(operation, size, contestant, callsOf([w](long number) { w->copied(number); }, body));
}

// The peers convert a text of known length from one place to another, so they get a work area;
// "bare" is their conversion alone.
template <typename Convert>
void enterPeer(const std::string& operation, const std::string& size, const std::string& name,
               Work* w, Convert convert) {
  enterConversion(operation, size, name, w, [convert](char* text) {
    char area[2048];
    const int length = convert(text, static_cast<int>(std::strlen(text)), area);
    std::memcpy(text, area, static_cast<std::size_t>(length) + 1);
  });
  auto* const result = new Work(w->text);
  enterConversion(operation, size, "bare " + name, w, [w, result, convert](const char* text) {
    convert(text, w->length(), result->place(0));
  });
}

void enterEncoding(Work* w, const std::string& size) {
  enterConversion("Base64 encode", size, "ours", w,
                  [](char* text) { CBase64Url().Encode(text, 1); });
  enterPeer("Base64 encode", size, "OpenSSL", w, [](const char* from, int length, char* to) {
    return EVP_EncodeBlock(asBytes(to), asBytes(from), length);
  });
  enterPeer("Base64 encode", size, "GLib", w, [](const char* from, int length, char* to) {
    gint state = 0;
    gint save = 0;
    gsize got =
        g_base64_encode_step(asBytes(from), static_cast<gsize>(length), FALSE, to, &state, &save);
    got += g_base64_encode_close(FALSE, to + got, &state, &save);
    return static_cast<int>(got);
  });
}

void enterDecoding(Work* ours, Work* theirs, const std::string& size) {
  const auto capacity = static_cast<unsigned int>(ours->text.size() + 1);
  enterConversion("Base64 decode", size, "ours", ours,
                  [capacity](char* text) { CBase64Url().Decode(text, capacity); });
  enterPeer("Base64 decode", size, "OpenSSL", theirs, [](const char* from, int length, char* to) {
    return EVP_DecodeBlock(asBytes(to), asBytes(from), length);
  });
  enterPeer("Base64 decode", size, "GLib", theirs, [](const char* from, int length, char* to) {
    gint state = 0;
    guint save = 0;
    return static_cast<int>(
        g_base64_decode_step(from, static_cast<gsize>(length), asBytes(to), &state, &save));
  });
}

// The least that can be done to every byte in its place.
[[gnu::noinline, gnu::optimize("O3")]] void passOver(char* bytes, std::size_t count, char value) {
  for (std::size_t i = 0; i < count; ++i) bytes[i] ^= value;
}

void enterCrypt(std::size_t length) {
  static CCrypt crypt(kKey);
  const std::string size = std::to_string(length) + " B";
  auto* const text = new std::string(length, '\x01');
  enter("CCrypt::Encrypt", size, "ours", [text] {
    crypt.Encrypt(text->data());
    benchmark::ClobberMemory();
  });
  enter("CCrypt::Encrypt", size, "bare pass", [bare = new std::string(*text)] {
    passOver(bare->data(), bare->size(), '\x40');
    benchmark::ClobberMemory();
  });
}

void enterBlocks(std::size_t length) {
  auto* const block = new std::string(bytesFor(length));
  const std::string size = std::to_string(length >> 10U) + " KiB";
  const auto pass = [block] {
    passOver(block->data(), block->size(), '\x40');
    benchmark::ClobberMemory();
  };
  enter("EncryptBlock", size, "ours", [block] {
    EncryptBlock(block->data(), static_cast<unsigned int>(block->size()));
    benchmark::ClobberMemory();
  });
  enter("EncryptBlock", size, "bare pass", pass);
  enter("Encrypt", size, "ours", [block] {
    Encrypt(asBytes(block->data()), static_cast<int>(block->size()));
    benchmark::ClobberMemory();
  });
  enter("Encrypt", size, "bare pass", pass);
}

// The peer of the secure commands: splits, mixes and encodes in the same way, without a check of
// its input. OpenSSL has another alphabet, and '=' as padding, which would end a name.
class OpenSslCommand {
 public:
  template <typename Convert>
  void transform(char* query, Convert convert) {
    copy_.assign(query);
    char* out = query;
    for (std::size_t at = 0; at < copy_.size();) {
      const std::size_t end = std::min(copy_.find('&', at), copy_.size());
      const std::size_t middle = std::min(copy_.find('=', at), end);
      out += convert(copy_.data() + at, middle - at, out);
      *out++ = '=';
      if (middle < end) out += convert(copy_.data() + middle + 1, end - middle - 1, out);
      if (end < copy_.size()) *out++ = '&';
      at = end + 1;
    }
    *out = '\0';
  }

  static std::size_t toSecure(const char* text, std::size_t length, char* to) {
    char mixed[1024];
    mix(text, length, mixed);
    const int size = EVP_EncodeBlock(asBytes(to), asBytes(mixed), static_cast<int>(length));
    for (char* last = to + size - 1; *last == '='; --last) *last = '$';
    return static_cast<std::size_t>(size);
  }

  static std::size_t toPlain(const char* secure, std::size_t length, char* to) {
    char encoded[1024];
    char mixed[1024];
    std::memcpy(encoded, secure, length);
    std::size_t padding = 0;
    for (char* last = encoded + length - 1; *last == '$'; --last, ++padding) *last = '=';
    const int size = EVP_DecodeBlock(asBytes(mixed), asBytes(encoded), static_cast<int>(length));
    mix(mixed, static_cast<std::size_t>(size) - padding, to);
    return static_cast<std::size_t>(size) - padding;
  }

 private:
  static void mix(const char* from, std::size_t length, char* to) {
    for (std::size_t i = 0; i < length; ++i) {
      const char key = kKey[i % (sizeof kKey - 1)];
      to[i] = from[i] == key ? key : static_cast<char>(from[i] ^ key);
    }
  }

  std::string copy_;
};

// To the secure form and back.
void enterCommand(std::size_t pairs) {
  static CPHPOperations operations(kKey);
  std::string command = "n=v";
  for (std::size_t i = 1; i < pairs; ++i) command += "&name=value";
  const std::string size = std::to_string(pairs) + (pairs == 1 ? " pair" : " pairs");
  auto* const work = new std::vector<char>(16 * command.size());
  enter("secure command and back", size, "ours", [=] {
    std::memcpy(work->data(), command.c_str(), command.size() + 1);
    operations.ConvertToSecurePhpCommand(work->data(), 1);
    operations.ConvertToPlainPhpCommand(work->data(), 1);
    benchmark::ClobberMemory();
  });
  enter("secure command and back", size, "OpenSSL", [=, peer = OpenSslCommand()]() mutable {
    std::memcpy(work->data(), command.c_str(), command.size() + 1);
    peer.transform(work->data(), OpenSslCommand::toSecure);
    peer.transform(work->data(), OpenSslCommand::toPlain);
    benchmark::ClobberMemory();
  });
}

}  // namespace

void enterCodecRows() {
  enterFamily("Encodings");
  for (const std::size_t length : {16, 100, 765}) {
    const std::string size = std::to_string(length) + " B";
    const std::string bytes = bytesFor(length);
    enterEncoding(new Work(bytes), size);
    enterDecoding(new Work(encodedByUs(bytes)), new Work(encodedByOpenSsl(bytes)), size);
  }
  for (const std::size_t length : {100, 1000}) enterCrypt(length);
  for (const std::size_t length : {4096, 1048576}) enterBlocks(length);
  for (const std::size_t pairs : {1, 20, 160}) enterCommand(pairs);
}
