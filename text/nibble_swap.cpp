#include "text/byte_words.h"
#include "zrcommon/codecs.h"

void Encrypt(unsigned char* bytes, int count) {
  if (!bytes || count <= 0) return;
  changeBytes(bytes, static_cast<std::size_t>(count), rotateBytesLeft<4>);
}

void Decrypt(unsigned char* bytes, int count) {
  Encrypt(bytes, count);
}
