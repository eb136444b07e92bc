#ifndef ZRCOMMON_PROFILE_H
#define ZRCOMMON_PROFILE_H

#include <cstdio>

#include <zrcommon/export.h>

/// @file
/// Profile files: sectioned key=value text ("INI") files, read and changed entry by entry.
///
/// A line whose first non-blank character is "[" starts a section. The text up to the first "]",
/// trimmed, is its name; the text after the "]" is ignored. An entry is a key, "=" and a value,
/// each trimmed. A line whose first non-blank character is "#" or ";" is a comment. There is no
/// escaping, no quoting and no continuation: quotes are part of a value, and so is a "#" or ";"
/// inside it. Blanks are the characters for which isspace() is true in the process's locale, so
/// lines may end with LF or CR LF. Names are compared without regard to case, by strcasecmp().
///
/// Only the first section of a name is used, and in it only the first entry of a key. A line that
/// starts with "[" but has no "]" starts no section, but ends the section before it.
///
/// Lines are read in chunks of at most 1023 characters, line feed included, and each chunk is
/// treated as a line of its own. After a line of exactly 1023 characters, the line feed alone is a
/// chunk, a blank line. A zero byte ends the text of its chunk; the rest of the chunk is ignored.
///
/// Section names, keys and values that are arguments of these functions are truncated to 256
/// characters, then tested for being empty, then trimmed: an argument of blanks is accepted and
/// means the empty name. Values that are read may fill a chunk.
///
/// Error codes, stored through the last argument if no argument is null:
///   - 0   success
///   - 102 the file cannot be opened for reading, or its temporary copy cannot be created
///   - 201 the key was found, but its line has no "=", or (integers only) its value is empty
///   - 202 the section was found, but the key is not in it
///   - 203 the key is empty
///   - 204 the section is not in the file
///   - 205 the section name is empty
///   - 206 the value is empty (writing only)
///
/// A read that fails counts as the end of the file; a directory can be opened and has no lines.
/// Each call opens the file, reads it once from the start and closes it. The functions use about 10
/// KiB of stack and no heap, so they can run in a thread with a stack of 16 KiB. All functions are
/// thread-safe, but nothing is locked: see WritePrivateProfileString().

extern "C" {

/// Copies the value of an entry into @p out.
///
/// @param section       name of the section
/// @param key           key of the entry
/// @param defaultValue  is copied if there is no value; may be @p out itself
/// @param out           receives at most outSize - 1 characters. A shorter text is padded with
///                      zeros up to outSize - 1 bytes. The last byte is never written: set it to
///                      zero before the call, or a text that fills the buffer is not terminated.
/// @param outSize       size of @p out in bytes; if it is 0, nothing is written
/// @param fileName      path, used as given
/// @param error         receives 0, 102, 201, 202, 203, 204 or 205
/// @return 0 if the value was found, even an empty one; -1 if not, with the default copied; also -1
///         if any argument is null, and then neither @p out nor @p error is written
ZRCOMMON_API int GetPrivateProfileString(const char* section, const char* key,
                                         const char* defaultValue, char* out, unsigned int outSize,
                                         const char* fileName, unsigned int* error);

/// Returns the value of an entry as atoi() converts it: a sign, then decimal digits up to the first
/// other character. "12abc" is 12; "abc" and "0x10" are 0. None of these is an error, and neither
/// is a number that an int cannot hold, for which the result is that of the C library.
///
/// @param section       name of the section
/// @param key           key of the entry
/// @param defaultValue  the result if there is no value
/// @param fileName      path, used as given
/// @param error         receives 0, 102, 201, 202, 203, 204 or 205
/// @return the number; @p defaultValue if @p error is not 0; -1, not the default, if any pointer is
///         null, and then @p error is not written
ZRCOMMON_API int GetPrivateProfileInt(const char* section, const char* key, int defaultValue,
                                      const char* fileName, unsigned int* error);

/// Sets an entry. The first entry of the key in the first section of the name is replaced. If there
/// is none, the entry becomes the last line of that section, after its blank lines and comments. If
/// there is no such section, section and entry are added at the end of the file. A missing file is
/// not created, and no entry or section is ever deleted.
///
/// The file is rewritten into a copy, @p fileName with ".tmp" appended, which is created or emptied
/// with mode 0666 less the umask. Then the profile is removed, and the copy is renamed and so
/// becomes the profile, with its own mode and owner. Between the two steps there is no profile, and
/// readers get 102. If the renaming fails, only the copy is left. Failures after the creation of
/// the copy, a full disk for example, are not detected.
///
/// Lines up to the changed one are written trimmed and with LF, and the chunks of a long line as
/// lines. Lines after it keep their bytes, CR LF included, except for zero bytes: the rest of a
/// chunk after a zero byte is lost, after the change together with its line feed, so that the next
/// line joins it. The new line is "key=value" and, for a new section, "[section]" before it, with
/// the arguments trimmed.
///
/// Two writers of one file use the same copy and may damage the file if they run at the same time:
/// the caller must keep them apart.
///
/// @param section   name of the section
/// @param key       key of the entry
/// @param value     new value; one of blanks is written as an empty value
/// @param fileName  path of at most 256 characters; if it is longer, @p error receives 102
/// @param error     receives 0, 102, 203, 205 or 206
/// @return 0 on success; -1 if the file was not changed; also -1 if any argument is null, and then
///         @p error is not written
ZRCOMMON_API int WritePrivateProfileString(const char* section, const char* key, const char* value,
                                           const char* fileName, unsigned int* error);

/// Trims a text in place: leading blanks become zeros, and a zero is written after the last
/// non-blank character. Nothing is written to an empty text.
///
/// @param text  is changed in place
/// @return the first non-blank character, inside @p text, or its terminator if there is none; null
///         if @p text is null
ZRCOMMON_API char* Trim(char* text);

/// Extracts the section name from a header, a trimmed line that starts with "[".
///
/// The first character and the first "]" after it become zeros, and the text between them is
/// trimmed in place.
///
/// @param line  is changed in place
/// @return the name, inside @p line; null if @p line is null or empty, and then nothing is written;
///         null if it has no "]", and then only its first character is set to zero
ZRCOMMON_API char* GetSectionName(char* line);

/// Compares the key of an entry, a trimmed line, with @p key, without regard to case.
///
/// The line is truncated before its first "=" and any blanks before that; a line without
/// "=" is compared as a whole.
///
/// @param line  is changed in place
/// @param key   the key to compare with
/// @return 0 if they are equal; -1 if not, or if an argument is null
ZRCOMMON_API int CompareKey(char* line, const char* key);

/// Writes @p line and a line feed with one fwrite(). The line feed and a new terminator are stored
/// in the buffer after the text and stay there.
///
/// @param line    must have room for two bytes after its text; if it is null, nothing happens
/// @param stream  is open for writing; if it is null, nothing happens. Only ferror() shows a
/// failure.
ZRCOMMON_API void WriteToFile(char* line, FILE* stream);

}  // extern "C"

#endif  // ZRCOMMON_PROFILE_H
