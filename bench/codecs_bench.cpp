#include <glib.h>
#include <openssl/evp.h>
#include <zrcommon/codecs.h>

extern "C" {  // which libb64 leaves to its users
#include <b64/cdecode.h>
#include <b64/cencode.h>
}

#include <cstring>
#include <vector>

#include "bench/contest.h"

namespace {

constexpr char kKey[] = "8W371KJ05926143DCF57";

std::string bytesFor(std::size_t length) {
  std::string bytes;
  for (std::size_t i = 0; i < length; ++i) bytes.push_back(static_cast<char>(1 + i * 37 % 255));
  return bytes;
}

// One text to convert and a place for the result; every contestant starts from the text anew,
// because ours works in place.
struct Work {
  explicit Work(std::string input) : text(std::move(input)), out(2 * text.size() + 16) {}
  unsigned char* to() { return reinterpret_cast<unsigned char*>(out.data()); }
  char* copied() {
    return static_cast<char*>(std::memcpy(out.data(), text.c_str(), text.size() + 1));
  }
  int length() const { return static_cast<int>(text.size()); }

  std::string text;
  std::vector<char> out;
};

std::string encodedByOpenSsl(const std::string& bytes) {
  Work work(bytes);
  EVP_EncodeBlock(work.to(), reinterpret_cast<const unsigned char*>(bytes.data()), work.length());
  return work.out.data();
}

std::string encodedByUs(const std::string& bytes) {
  Work work(bytes);
  CBase64Url().Encode(work.copied(), 1);
  return work.out.data();
}

// A zero-terminated text becomes its encoding, or the bytes that it encodes, where it stands. The
// peers know neither terminators nor places, so they get a work area; "bare" is their conversion
// alone, of a length that is known, from one place to another.
template <typename Convert>
void enterPeer(const std::string& row, const std::string& name, Work* w, Convert convert) {
  enter(row, name, [w, convert] {
    char area[2048];
    char* const text = w->copied();
    const int length = convert(text, static_cast<int>(std::strlen(text)), area);
    std::memcpy(text, area, static_cast<std::size_t>(length) + 1);
    benchmark::ClobberMemory();
  });
  enter(row, "bare " + name, [w, convert] {
    convert(w->text.data(), w->length(), w->out.data());
    benchmark::ClobberMemory();
  });
}

const unsigned char* asBytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}
unsigned char* asBytes(char* text) {
  return reinterpret_cast<unsigned char*>(text);
}

void enterEncoding(Work* w, const std::string& row) {
  enter(row, "ours", [w] {
    CBase64Url().Encode(w->copied(), 1);
    benchmark::ClobberMemory();
  });
  enterPeer(row, "OpenSSL", w, [](const char* from, int length, char* to) {
    return EVP_EncodeBlock(asBytes(to), asBytes(from), length);
  });
  enterPeer(row, "GLib", w, [](const char* from, int length, char* to) {
    gint state = 0;
    gint save = 0;
    gsize got =
        g_base64_encode_step(asBytes(from), static_cast<gsize>(length), FALSE, to, &state, &save);
    got += g_base64_encode_close(FALSE, to + got, &state, &save);
    return static_cast<int>(got);
  });
  enterPeer(row, "libb64", w, [](const char* from, int length, char* to) {
    base64_encodestate state;
    base64_init_encodestate(&state);
    const int got = base64_encode_block(from, length, to, &state);
    return got + base64_encode_blockend(to + got, &state);
  });
}

void enterDecoding(Work* ours, Work* theirs, const std::string& row) {
  enter(row, "ours", [ours] {
    CBase64Url().Decode(ours->copied(), static_cast<unsigned int>(ours->text.size() + 1));
    benchmark::ClobberMemory();
  });
  enterPeer(row, "OpenSSL", theirs, [](const char* from, int length, char* to) {
    return EVP_DecodeBlock(asBytes(to), asBytes(from), length);
  });
  enterPeer(row, "GLib", theirs, [](const char* from, int length, char* to) {
    gint state = 0;
    guint save = 0;
    return static_cast<int>(
        g_base64_decode_step(from, static_cast<gsize>(length), asBytes(to), &state, &save));
  });
  enterPeer(row, "libb64", theirs, [](const char* from, int length, char* to) {
    base64_decodestate state;
    base64_init_decodestate(&state);
    return base64_decode_block(from, length, to, &state);
  });
}

// The least that can be done to every byte in its place.
[[gnu::noinline, gnu::optimize("O3")]] void passOver(char* bytes, std::size_t count, char value) {
  for (std::size_t i = 0; i < count; ++i) bytes[i] ^= value;
}

void enterCrypt(std::size_t length) {
  static CCrypt crypt(kKey);
  const std::string row = "CCrypt, " + std::to_string(length) + " B";
  auto* const work = new Work(std::string(length, '\x01'));
  work->copied();
  enter(row, "ours", [work] {
    crypt.Encrypt(work->out.data());
    benchmark::ClobberMemory();
  });
  auto* const bare = new Work(work->text);
  enter(row, "bare pass", [bare] {
    passOver(bare->out.data(), bare->text.size(), '\x40');
    benchmark::ClobberMemory();
  });
}

void enterBlocks(std::size_t length) {
  auto* const work = new Work(bytesFor(length));
  work->copied();
  const std::string size = ", " + std::to_string(length) + " B";
  const auto bytes = static_cast<unsigned int>(length);
  const auto pass = [work, length] {
    passOver(work->out.data(), length, '\x40');
    benchmark::ClobberMemory();
  };
  enter("block rotation" + size, "ours", [work, bytes] {
    EncryptBlock(work->out.data(), bytes);
    benchmark::ClobberMemory();
  });
  enter("block rotation" + size, "bare pass", pass);
  enter("nibble swap" + size, "ours", [work] {
    Encrypt(work->to(), work->length());
    benchmark::ClobberMemory();
  });
  enter("nibble swap" + size, "bare pass", pass);
}

// Both ways, for the ratio of time to length as the length doubles.
void enterCommand(std::size_t pairs) {
  static CPHPOperations operations(kKey);
  std::string command = "/page.php?n=v";
  for (std::size_t i = 1; i < pairs; ++i) command += "&name=value";
  auto* const work = new std::vector<char>(16 * command.size());
  enter("secure command and back, " + std::to_string(command.size()) + " B", "ours", [=] {
    std::memcpy(work->data(), command.c_str(), command.size() + 1);
    operations.ConvertToSecurePhpCommand(work->data(), 1);
    operations.ConvertToPlainPhpCommand(work->data(), 1);
    benchmark::ClobberMemory();
  });
}

}  // namespace

void enterCodecRows() {
  for (const std::size_t length : {16, 100, 765}) {
    const std::string size = ", " + std::to_string(length) + " B";
    const std::string bytes = bytesFor(length);
    enterEncoding(new Work(bytes), "Base64 encode" + size);
    enterDecoding(new Work(encodedByUs(bytes)), new Work(encodedByOpenSsl(bytes)),
                  "Base64 decode" + size);
  }
  for (const std::size_t length : {100, 1000}) enterCrypt(length);
  for (const std::size_t length : {4096, 1048576}) enterBlocks(length);
  for (const std::size_t pairs : {20, 40, 80, 160}) enterCommand(pairs);
}
