#include <cstddef>

#include "codecs/rotate_bytes.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

void Encrypt(unsigned char* bytes, int count) {
  if (!bytes || count <= 0) return;
  rotateBytes<4>(bytes, static_cast<std::size_t>(count));
}

void Decrypt(unsigned char* bytes, int count) {
  Encrypt(bytes, count);
}
