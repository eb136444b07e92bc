#ifndef ZRCOMMON_CODECS_H
#define ZRCOMMON_CODECS_H

#include <zrcommon/export.h>

namespace zrcommon {
class KeyTrack;
}

/// @file
/// Encodings: byte scramblers, a Base64 of the product's own, and secure request commands. They
/// keep text from standing in the clear and are no ciphers.
///
/// Text is zero-terminated and, where an operation takes one buffer, changed in place. Apart from
/// the key of CCrypt and CPHPOperations, which no operation changes, nothing keeps state: all is
/// thread-safe, objects may be shared, and nothing comes from the heap.

extern "C" {

/// Rotates every byte of the block left by 3 bits.
///
/// @param block   changed in place
/// @param length  in bytes
/// @return true; false, with nothing changed, if @p block is null or @p length is 0
ZRCOMMON_API bool EncryptBlock(void* block, unsigned int length);

/// Rotates every byte of the block right by 3 bits: the way back from EncryptBlock().
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

/// Swaps the two 4-bit halves of each of the first @p count bytes; done twice, it restores them.
///
/// @param bytes  changed in place; null: nothing happens
/// @param count  in bytes; 0 or less: nothing happens
ZRCOMMON_API void Encrypt(unsigned char* bytes, int count);

/// The same as Encrypt(), under the name for the way back.
///
/// @param bytes  changed in place; null: nothing happens
/// @param count  in bytes; 0 or less: nothing happens
ZRCOMMON_API void Decrypt(unsigned char* bytes, int count);

}  // extern "C"

/// Turns bytes into letters, digits, '_' and '!', with '$' as padding, and back.
///
/// 4 symbols stand for 3 bytes, high bits first: 'A' to 'Z' for 0 to 25, 'a' to 'z' for 26 to 51,
/// '0' to '9' for 52 to 61, '_' for 62, '!' for 63. No other Base64 reads this one.
class ZRCOMMON_API CBase64Url {
 public:
  /// Replaces a text of 1 to 1,023 bytes by its encoding.
  ///
  /// @param buffer    n bytes and a terminator; becomes 4 * ceil(n / 3) symbols and a terminator
  ///                  (1,365 bytes at most), for which it must have room
  /// @param capacity  must not be 0; otherwise ignored, and no bound
  /// @return true; false, with @p buffer as it was, if it is null, its text is empty or has 1,024
  ///         bytes or more, or @p capacity is 0
  bool Encode(char* buffer, unsigned int capacity);

  /// Replaces a text of 1 to 1,023 symbols by the bytes that it stands for.
  ///
  /// Symbols that are missing from the last four count as 'A'. A '$' as the third or fourth of four
  /// leaves out the second or third byte; anywhere else it counts as '!'.
  ///
  /// @param buffer    its first @p capacity bytes become zero before the decoded bytes are written
  ///                  to its beginning; beyond the capacity, what is not written stays
  /// @param capacity  bytes at @p buffer, not 0. The result is terminated for certain only if it
  ///                  covers the text and its terminator.
  /// @return true; false, with @p buffer as it was, if it is null, its text is empty, has 1,024
  ///         symbols or more or is not IsBase64(), or @p capacity is 0
  bool Decode(char* buffer, unsigned int capacity);

  /// Gives the symbol of a value.
  ///
  /// @param value  0 to 63
  /// @return the symbol; '!' for 63 and above
  char GetBase64Symbol(unsigned char value);

  /// Gives the value of a symbol.
  ///
  /// @param symbol  any byte
  /// @return 0 to 63; 63 for whatever is no letter, digit or '_'
  unsigned char GetASCIISymbol(char symbol);

  /// Tells whether a text of any length can be decoded.
  ///
  /// @param text  may be null
  /// @return true if all of it is letters, digits, '_', '!' and '$', also if it is empty; false for
  ///         null
  bool IsBase64(const char* text);
};

/// The place of a conversion between wide text and UTF-8. It converts nothing yet: both operations
/// look at their arguments and leave the destination untouched.
class ZRCOMMON_API CUTF8 {
 public:
  /// The way to UTF-8.
  ///
  /// @param from      looked at for being null only
  /// @param to        untouched
  /// @param capacity  bytes at @p to
  /// @return false if a pointer is null or @p capacity is 0, else true
  bool Encode(const unsigned short* from, char* to, unsigned int capacity);

  /// The way from UTF-8.
  ///
  /// @param from      looked at for being null only
  /// @param to        untouched
  /// @param capacity  units at @p to
  /// @return as Encode()
  bool Decode(const char* from, unsigned short* to, unsigned int capacity);
};

/// Mixes text with a key that is repeated over it. The text keeps its length, holds no zero byte,
/// and the same operation turns it back.
///
/// A plain value of 68 bytes that holds its key in the clear; copy it freely.
class ZRCOMMON_API CCrypt {
 public:
  /// Takes the key.
  ///
  /// @param key  copied, cut at 63 bytes. Null throws the int 1, the one exception that leaves this
  ///             library. An empty key makes an object whose operations fail.
  CCrypt(const char* key);  // NOLINT(google-explicit-constructor): a key converts

  /// Replaces every byte by its exclusive-or with its key byte. Where the two are equal the byte
  /// stays as it is, in the clear.
  ///
  /// @param text  changed in place
  /// @return true; false, with nothing changed, if @p text is null or empty or the key is empty
  bool Encrypt(char* text);

  /// The same as Encrypt(), under the name for the way back.
  ///
  /// @param text  changed in place
  /// @return as Encrypt()
  bool Decrypt(char* text);

 private:
  friend class zrcommon::KeyTrack;

  int keyLength_;
  char key_[64];
};

/// Secure strings, which are text mixed by CCrypt and then encoded by CBase64Url, and request
/// commands made of them. Both sides of an exchange need the same key.
///
/// A capacity is the size of the caller's buffer in bytes. It must not be 0, but bounds no text:
/// a buffer needs room for the longest result, whatever its capacity says. A secure string has
/// 4 * ceil(n / 3) bytes for n of text.
///
/// A plain value of 72 bytes. An operation uses up to 10 KiB of stack.
class ZRCOMMON_API CPHPOperations {
 public:
  /// Takes the key.
  ///
  /// @param key  as for CCrypt, the int 1 thrown for null included
  CPHPOperations(const char* key);  // NOLINT(google-explicit-constructor): a key converts

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
  /// @param to        gets the text, three quarters of @p secure in length, and its terminator
  /// @param capacity  so many bytes become zero before the text and its terminator are written
  /// @return true; false, with @p to as it was, if an argument is null, @p capacity is 0,
  ///         @p secure is empty, longer or not IsBase64(), what it stands for is empty, or the key
  ///         is empty
  bool ConvertToPlainString(const char* secure, char* to, unsigned int capacity);

  /// Replaces a secure string by its text.
  ///
  /// @param text      as @p secure and @p to of the other ConvertToPlainString()
  /// @param capacity  as there
  /// @return as there
  bool ConvertToPlainString(char* text, unsigned int capacity);

  /// Writes the secure string of @p name, '=' and the secure string of @p value to @p to.
  ///
  /// @param name      of any length; 1 to 1,023 bytes are accepted
  /// @param value     1 to 1,023 bytes
  /// @param to        room for both secure strings, '=' and a terminator, and for the name's copy
  /// @param capacity  must not be 0
  /// @return true; false if an argument is null or @p capacity is 0 (@p to is untouched), if the
  ///         name is not accepted (@p to holds a copy of it) or the value is not (@p to ends
  ///         behind the '=')
  bool ConvertToSecureKeyValuePair(const char* name, const char* value, char* to,
                                   unsigned int capacity);

  /// Replaces each name and each value in the query of a command by its other form.
  ///
  /// The query, of at most 5,119 bytes, is what follows the last '?', or else the whole command.
  /// Its pairs are separated by any number of '&' and come out separated by one. A name ends at the
  /// first '=' that is not in front of it; all behind that is the value. A pair with an empty or no
  /// value keeps its '='. A name may have 765 bytes, a value too if it is to be read back (1,023
  /// are converted); so do their secure strings with 1,023.
  ///
  /// @param command    changed in place; room for the page part and all that the query becomes
  /// @param capacity   must not be 0
  /// @param direction  1 to the secure form, anything else to the plain form
  /// @return true; false, with the command as it was, if it is null, @p capacity is 0 or the query
  ///         is too long; else false, with the command cut off behind what had been rebuilt, at a
  ///         name or value that is empty, too long or (to the plain form) no secure string, or if
  ///         there is no pair at all. The rest of the query is then lost.
  bool TransformPhpCommand(char* command, unsigned int capacity, unsigned char direction);

  /// TransformPhpCommand() with direction 1.
  ///
  /// @param command   as there
  /// @param capacity  as there
  /// @return as there
  bool ConvertToSecurePhpCommand(char* command, unsigned int capacity);

  /// TransformPhpCommand() with direction 0.
  ///
  /// @param command   as there
  /// @param capacity  as there
  /// @return as there
  bool ConvertToPlainPhpCommand(char* command, unsigned int capacity);

 private:
  CBase64Url base64_;
  CCrypt crypt_;
};

static_assert(sizeof(CCrypt) == 68, "components embed it by value");
static_assert(sizeof(CPHPOperations) == 72, "components embed it by value");

#endif  // ZRCOMMON_CODECS_H
