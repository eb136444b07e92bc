#include "codecs/rotate_bytes.h"
#include "zrcommon/codecs.h"

using namespace zrcommon;

namespace {

constexpr unsigned kBlockBits = 3;

// Any two counts that differ by 8 are one rotation. A negative count rotates the other way.
unsigned char rotateLeft(unsigned char byte, unsigned count) {
  count &= 7U;
  return static_cast<unsigned char>(byte << count | byte >> (8 - count));
}

}  // namespace

bool EncryptBlock(void* block, unsigned int length) {
  if (!block || length == 0) return false;
  rotateBytes<kBlockBits>(static_cast<unsigned char*>(block), length);
  return true;
}

bool DecryptBlock(void* block, unsigned int length) {
  if (!block || length == 0) return false;
  rotateBytes<8 - kBlockBits>(static_cast<unsigned char*>(block), length);
  return true;
}

// Kept: ByteRotateLeft() and ByteRotateRight() return the byte as it is for a count of 0 or less
// (test Codecs.Rows)
char ByteRotateLeft(unsigned char byte, int count) {
  return static_cast<char>(count <= 0 ? byte : BRol(byte, count));
}

char ByteRotateRight(unsigned char byte, int count) {
  return static_cast<char>(count <= 0 ? byte : BRor(byte, count));
}

unsigned char BRol(unsigned char byte, int count) {
  return rotateLeft(byte, static_cast<unsigned>(count));
}

unsigned char BRor(unsigned char byte, int count) {
  return rotateLeft(byte, 0U - static_cast<unsigned>(count));
}
