#ifndef ZRCOMMON_PROFILE_H
#define ZRCOMMON_PROFILE_H

#include <cstdio>

#include <zrcommon/export.h>

/// @file
/// Profile files: sectioned key=value text ("INI") files, read and changed entry by entry.
///
/// A line whose first non-blank character is "[" starts a section, named by the trimmed text up to
/// the first "]"; what follows the "]" is ignored. An entry is a key, "=" and a value, each
/// trimmed. A line whose first non-blank character is "#" or ";" is a comment. There is no
/// escaping, no quoting, no continuation and no comment behind a value: quotes and hash signs
/// belong to it. Blanks are what isspace() says in the process's locale, so line ends LF and CR LF
/// are alike. Names are compared ignoring case, as strcasecmp() does.
///
/// Only the first section of a name counts, and in it only the first entry of a key. A line that
/// starts with "[" but has no "]" starts no section, yet ends the one before it.
///
/// Lines are taken in pieces of at most 1023 characters, line feed included; a longer line counts
/// as several lines. A line of exactly 1023 characters leaves its line feed as a blank line of its
/// own. A zero byte ends the text of its piece; what follows it in the piece is not seen.
///
/// Section names, keys and values given to these functions are cut at 256 characters, then tested
/// for being empty, then trimmed: a name of blanks alone counts as given, and stands for the empty
/// name.
///
/// Error codes, stored through the last argument once no argument is null:
///   - 0   success
///   - 102 the file cannot be opened for reading, or its temporary copy cannot be created
///   - 201 the key was found, but its line has no "=", or (integers only) its value is empty
///   - 202 the section was found, but the key is not in it
///   - 203 the key is empty
///   - 204 the section is not in the file
///   - 205 the section name is empty
///   - 206 the value is empty (writing only)
///
/// A read that fails counts as the end of the file, and so does a directory in place of the file:
/// it opens, but gives no line. Files are opened, read once from the start and closed within the
/// call. Memory is fixed, about 40 KiB of stack (50 KiB for writing), and no heap. All functions
/// are thread-safe, but nothing is locked: see WritePrivateProfileString().

extern "C" {

/// Copies the value of an entry into @p out.
///
/// @param section       its name
/// @param key           its key
/// @param defaultValue  copied when there is no value to copy; may be @p out itself
/// @param out           gets at most outSize - 1 characters. A shorter text is padded with zeros up
///                      to there. The last byte is never written: zero it first, or a text that
///                      fills the buffer is not terminated.
/// @param outSize       bytes at @p out; 0: nothing is written
/// @param fileName      path, used as given
/// @param error         0, 102, 201, 202, 203, 204 or 205
/// @return 0 if the value was found, an empty one included; -1 if not, with the default copied;
///         -1, too, if any argument is null, with neither @p out nor @p error touched
ZRCOMMON_API int GetPrivateProfileString(const char* section, const char* key,
                                         const char* defaultValue, char* out, unsigned int outSize,
                                         const char* fileName, unsigned int* error);

/// Gives the value of an entry as atoi() reads it: a sign, then decimal digits up to the first
/// character that is none. "12abc" gives 12; "abc" and "0x10" give 0; none of these is an error,
/// and neither is a number that an int cannot hold, of which the C library makes what it will.
///
/// @param section       its name
/// @param key           its key
/// @param defaultValue  the result where there is no value
/// @param fileName      path, used as given
/// @param error         0, 102, 201, 202, 203, 204 or 205
/// @return the number, or @p defaultValue where @p error says that there is none; -1 (not the
///         default) if any pointer is null, with @p error untouched
ZRCOMMON_API int GetPrivateProfileInt(const char* section, const char* key, int defaultValue,
                                      const char* fileName, unsigned int* error);

/// Sets the entry to @p value: in place of the first entry of that key in the first section of that
/// name; else as the last line of that section, behind its blank lines and comments; else in a new
/// section at the end of the file. A missing file is never created, and nothing is ever deleted.
///
/// The file is rewritten into @p fileName with ".tmp" appended (created or emptied, mode 0666 less
/// the umask); then the profile is removed and the copy takes its name, mode and owner its own. For
/// a moment there is no profile, and readers get 102; if the renaming fails, only the copy is left.
/// Failures behind the creation of the copy, a full disk among them, are not detected.
///
/// Lines up to and including the changed one are written trimmed and with a single LF, and a long
/// one in its pieces; all behind it keep their bytes, CR LF included. The one exception are zero
/// bytes: text behind one is lost up to the end of its piece, and behind the point of change the
/// line feed of that piece too, so the next line joins it. The new line is "key=value" and, for a
/// new section, "[section]" before it, as given but trimmed.
///
/// Two writers of one file at once use the same copy and may damage it: callers keep them apart.
///
/// @param section   its name
/// @param key       its key
/// @param value     of blanks alone: written as an empty value
/// @param fileName  at most 256 characters, else 102
/// @param error     0, 102, 203, 205 or 206
/// @return 0 done; -1 the file was left as it was. Also -1 if any argument is null, with @p error
///         untouched.
ZRCOMMON_API int WritePrivateProfileString(const char* section, const char* key, const char* value,
                                           const char* fileName, unsigned int* error);

/// Trims a text in place: blanks before it become zeros, and it is terminated behind its last
/// character that is no blank.
///
/// @param text  changed in place
/// @return the first character that is no blank, inside @p text, or its terminator if there is
///         none; null if @p text is null
ZRCOMMON_API char* Trim(char* text);

/// Takes the section name out of a header, a trimmed line that starts with "[".
///
/// The first character and the first "]" behind it become zeros, and the text between them is
/// trimmed in place.
///
/// @param line  changed in place
/// @return the name, inside @p line; null if @p line is null or empty (nothing is touched), or if
///         it has no "]" (only its first character is zeroed)
ZRCOMMON_API char* GetSectionName(char* line);

/// Compares the key of an entry, a trimmed line, with @p key, ignoring case.
///
/// The line is cut at its first "=" and before the blanks in front of that; a line without "=" is
/// compared whole.
///
/// @param line  changed in place
/// @param key   as it is to be found
/// @return 0 equal; -1 not, or an argument is null
ZRCOMMON_API int CompareKey(char* line, const char* key);

/// Writes @p line and a line feed with one fwrite(). The line feed is put into the buffer, where it
/// stays.
///
/// @param line    room for two bytes behind its text; null: nothing happens
/// @param stream  open for writing; null: nothing happens. A failure shows in its ferror() only.
ZRCOMMON_API void WriteToFile(char* line, FILE* stream);

}  // extern "C"

#endif  // ZRCOMMON_PROFILE_H
