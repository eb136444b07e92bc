#include "zrcommon/codecs.h"

void Encrypt(unsigned char* bytes, int count) {
  if (!bytes) return;
  for (int i = 0; i < count; ++i)
    bytes[i] = static_cast<unsigned char>(bytes[i] << 4 | bytes[i] >> 4);
}

void Decrypt(unsigned char* bytes, int count) {
  Encrypt(bytes, count);
}
