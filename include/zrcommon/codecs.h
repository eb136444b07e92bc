#ifndef ZRCOMMON_CODECS_H
#define ZRCOMMON_CODECS_H

#include <zrcommon/export.h>

/// @file
/// Encodings: byte scramblers, the product's own Base64, and secure request commands. They make
/// text unreadable at first sight; they are no encryption.
///
/// Text is zero-terminated. An operation with one buffer changes it in place. The only state is the
/// key of CCrypt and CPHPOperations, which no operation changes: all operations are thread-safe,
/// objects may be shared between threads, and nothing is allocated from the heap.

namespace zrcommon {
class KeyTrack;
}

extern "C" {

/// Rotates every byte of the block left by 3 bits.
///
/// @param block   changed in place
/// @param length  in bytes
/// @return true; false, with nothing changed, if @p block is null or @p length is 0
ZRCOMMON_API bool EncryptBlock(void* block, unsigned int length);

/// Rotates every byte of the block right by 3 bits, which undoes EncryptBlock().
///
/// @param block   changed in place
/// @param length  in bytes
/// @return as EncryptBlock()
ZRCOMMON_API bool DecryptBlock(void* block, unsigned int length);

/// Rotates a byte left.
///
/// @param byte   the byte
/// @param count  bits; 0 or less: the byte stays as it is
/// @return the rotated byte
ZRCOMMON_API char ByteRotateLeft(unsigned char byte, int count);

/// Rotates a byte right.
///
/// @param byte   the byte
/// @param count  bits; 0 or less: the byte stays as it is
/// @return the rotated byte
ZRCOMMON_API char ByteRotateRight(unsigned char byte, int count);

/// Rotates a byte left.
///
/// @param byte   the byte
/// @param count  bits; negative: rotates right
/// @return the rotated byte
ZRCOMMON_API unsigned char BRol(unsigned char byte, int count);

/// Rotates a byte right.
///
/// @param byte   the byte
/// @param count  bits; negative: rotates left
/// @return the rotated byte
ZRCOMMON_API unsigned char BRor(unsigned char byte, int count);

/// Swaps the two 4-bit halves of each of the first @p count bytes. A second call restores them.
///
/// @param bytes  changed in place; null: nothing happens
/// @param count  in bytes; 0 or less: nothing happens
ZRCOMMON_API void Encrypt(unsigned char* bytes, int count);

/// The same as Encrypt(), which undoes itself.
///
/// @param bytes  changed in place; null: nothing happens
/// @param count  in bytes; 0 or less: nothing happens
ZRCOMMON_API void Decrypt(unsigned char* bytes, int count);

}  // extern "C"

/// Converts bytes to letters, digits, '_' and '!', with '$' as padding, and back.
///
/// 4 symbols stand for 3 bytes, high bits first: 'A' to 'Z' for 0 to 25, 'a' to 'z' for 26 to 51,
/// '0' to '9' for 52 to 61, '_' for 62, '!' for 63. Other Base64 decoders do not accept the result.
class ZRCOMMON_API CBase64Url {
 public:
  /// Replaces a text of 1 to 1,023 bytes by its encoding.
  ///
  /// @param buffer    n bytes and a terminator; becomes 4 * ceil(n / 3) symbols and a terminator
  ///                  (1,365 bytes at most), for which it must have room
  /// @param capacity  must not be 0; any other value is ignored and bounds nothing
  /// @return true; false, with @p buffer as it was, if it is null, its text is empty or has 1,024
  ///         bytes or more, or @p capacity is 0
  bool Encode(char* buffer, unsigned int capacity);

  /// Replaces a text of 1 to 1,023 symbols by the bytes that it stands for.
  ///
  /// Symbols that are missing from the last four count as 'A'. If the third or fourth of four is
  /// '$', the second or third byte is not written; anywhere else '$' counts as '!'.
  ///
  /// @param buffer    its first @p capacity bytes become zero before the decoded bytes are written
  ///                  from its beginning on. Beyond the capacity, bytes that are not written stay
  ///                  as they are. The byte after the text's terminator is never written: a text of
  ///                  one symbol, which stands for three bytes, writes two.
  /// @param capacity  bytes at @p buffer, not 0. If it does not cover the text and its terminator,
  ///                  the result may be without a terminator.
  /// @return true; false, with @p buffer as it was, if it is null, its text is empty, has 1,024
  ///         symbols or more or is not IsBase64(), or @p capacity is 0
  bool Decode(char* buffer, unsigned int capacity);

  /// Returns the symbol of a value.
  ///
  /// @param value  0 to 63
  /// @return the symbol; '!' for 63 and above
  char GetBase64Symbol(unsigned char value);

  /// Returns the value of a symbol.
  ///
  /// @param symbol  any byte
  /// @return 0 to 63; 63 for every byte that is no letter, digit or '_'
  unsigned char GetASCIISymbol(char symbol);

  /// Returns whether a text consists of symbols and padding.
  ///
  /// @param text  of any length; may be null
  /// @return true if it consists of letters, digits, '_', '!' and '$', or is empty; false if null
  bool IsBase64(const char* text);
};

/// A placeholder for a conversion between wide text and UTF-8. It converts nothing: both operations
/// check their arguments and leave the destination untouched.
class ZRCOMMON_API CUTF8 {
 public:
  /// Checks the arguments of a conversion to UTF-8.
  ///
  /// @param from      only compared with null
  /// @param to        untouched
  /// @param capacity  bytes at @p to
  /// @return false if a pointer is null or @p capacity is 0, else true
  bool Encode(const unsigned short* from, char* to, unsigned int capacity);

  /// Checks the arguments of a conversion from UTF-8.
  ///
  /// @param from      only compared with null
  /// @param to        untouched
  /// @param capacity  units at @p to
  /// @return as Encode()
  bool Decode(const char* from, unsigned short* to, unsigned int capacity);
};

/// Mixes text with a repeated key. The text keeps its length and gets no zero byte inside, and the
/// same operation restores it.
///
/// An object is a plain value of 68 bytes that holds its key in the clear; it may be copied.
class ZRCOMMON_API CCrypt {
 public:
  /// Takes the key.
  ///
  /// @param key  copied, truncated to 63 bytes. Null throws the int 1, the only exception that
  ///             leaves this library. With an empty key, all operations of the object fail.
  CCrypt(const char* key);

  /// Replaces every byte by its exclusive-or with its key byte. A byte that equals its key byte
  /// stays as it is, in the clear.
  ///
  /// @param text  changed in place
  /// @return true; false, with nothing changed, if @p text is null or empty or the key is empty
  bool Encrypt(char* text);

  /// The same as Encrypt(), which undoes itself.
  ///
  /// @param text  changed in place
  /// @return as Encrypt()
  bool Decrypt(char* text);

 private:
  friend class zrcommon::KeyTrack;

  int keyLength_;
  char key_[64];
};

/// Converts texts to secure strings, and request commands to commands made of them, and back. A
/// secure string is a text mixed by CCrypt and then encoded by CBase64Url. Both sides of an
/// exchange need the same key.
///
/// A capacity must not be 0, but bounds nothing: the buffer must have room for the longest result.
/// The secure string of n bytes has 4 * ceil(n / 3) bytes.
///
/// An object is a plain value of 72 bytes. An operation uses up to 6 KiB of stack.
class ZRCOMMON_API CPHPOperations {
 public:
  /// Takes the key.
  ///
  /// @param key  as for CCrypt; null throws the int 1
  CPHPOperations(const char* key);

  /// Replaces a text of 1 to 1,023 bytes by its secure string.
  ///
  /// @param text      changed in place; room for the secure string and its terminator
  /// @param capacity  must not be 0
  /// @return true; false, with @p text as it was, if it is null, empty or longer, if @p capacity
  ///         is 0 or the key is empty
  bool ConvertToSecureString(char* text, unsigned int capacity);

  /// Writes the text of a secure string to another buffer, or the same.
  ///
  /// @param secure    1 to 1,023 bytes
  /// @param to        gets the text, at most three quarters of the length of @p secure, and its
  ///                  terminator
  /// @param capacity  so many bytes become zero before the text and its terminator are written
  /// @return true; false, with @p to as it was, if an argument is null, @p capacity is 0,
  ///         @p secure is empty, longer or not IsBase64(), its text is empty, or the key is empty
  bool ConvertToPlainString(const char* secure, char* to, unsigned int capacity);

  /// Replaces a secure string by its text.
  ///
  /// @param text      as @p secure and @p to of the other ConvertToPlainString()
  /// @param capacity  as the other's
  /// @return as the other's
  bool ConvertToPlainString(char* text, unsigned int capacity);

  /// Writes the secure string of @p name, '=' and the secure string of @p value to @p to.
  ///
  /// @param name      of any length; 1 to 1,023 bytes are accepted
  /// @param value     1 to 1,023 bytes
  /// @param to        room for both secure strings, '=' and a terminator, and for a copy of the
  ///                  name
  /// @param capacity  must not be 0
  /// @return true; false if an argument is null or @p capacity is 0 (@p to is untouched), if the
  ///         name is not accepted (@p to holds a copy of it), or if the value is not accepted
  ///         (@p to ends after the '=')
  bool ConvertToSecureKeyValuePair(const char* name, const char* value, char* to,
                                   unsigned int capacity);

  /// Replaces each name and each value in the query of a command by its other form.
  ///
  /// The query, of at most 5,119 bytes, is the text after the last '?', or the whole command if
  /// there is none. Its pairs are separated by one or more '&'; one remains in the result. A name
  /// ends at the first '=' after any leading ones; the rest is the value. A pair without a value
  /// keeps its '=' or gets one. Names may have up to 765 bytes, values up to 1,023, secure strings
  /// up to 1,023. The secure form of a value of more than 765 bytes cannot be converted back.
  ///
  /// @param command    changed in place; room for the page part and the converted query
  /// @param capacity   must not be 0
  /// @param direction  1 to the secure form, any other value to the plain form
  /// @return true; false, with the command as it was, if it is null, @p capacity is 0 or the query
  ///         is too long. Also false if a name or value is empty, too long or (to the plain form)
  ///         no secure string, or if there is no pair: the command then ends after what was
  ///         converted so far, and the rest of the query is lost.
  bool TransformPhpCommand(char* command, unsigned int capacity, unsigned char direction);

  /// TransformPhpCommand() with direction 1.
  ///
  /// @param command   as TransformPhpCommand()
  /// @param capacity  as TransformPhpCommand()
  /// @return as TransformPhpCommand()
  bool ConvertToSecurePhpCommand(char* command, unsigned int capacity);

  /// TransformPhpCommand() with direction 0.
  ///
  /// @param command   as TransformPhpCommand()
  /// @param capacity  as TransformPhpCommand()
  /// @return as TransformPhpCommand()
  bool ConvertToPlainPhpCommand(char* command, unsigned int capacity);

 private:
  CBase64Url base64_;
  CCrypt crypt_;
};

static_assert(sizeof(CCrypt) == 68, "components embed it by value");
static_assert(sizeof(CPHPOperations) == 72, "components embed it by value");

#endif  // ZRCOMMON_CODECS_H
