#ifndef ZRCOMMON_STRINGS_H
#define ZRCOMMON_STRINGS_H

#include <string>

#include <zrcommon/export.h>

/// @file
/// Strings of bytes and of wide units, the conversion between the two, and blocks of wide units.
///
/// A wide unit is an unsigned short, whatever the platform's own wide character is; every unit is
/// a character, and no surrogates are known. Strings end at a zero unit. The names are those of
/// the C library with my_ in front, and so is the behaviour, but for what is said here:
///
/// - Null: an operation that gives a pointer gives null if one of its pointers is null, and writes
///   nothing; a comparison gives 1.
/// - Results of comparisons are -1, 0 and 1 and nothing else.
/// - Counts are in units, 32 bits wide and unsigned in effect: -1 is the largest of all.
/// - No destination has a capacity. The caller provides room for the result and its terminator.
/// - Source and destination may overlap only where it is said.
///
/// Letters are those of ASCII, except where a locale is named. Nothing keeps state, all is
/// thread-safe, and nothing is read in a page behind the one with the terminator.

extern "C" {

/// Measures a string.
/// @param text  bytes
/// @return bytes before the terminator; 0 for null
ZRCOMMON_API unsigned int my_strlen(const char* text);

/// Turns 'A' to 'Z' into 'a' to 'z'. Bytes of 0x80 and above never change.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API char* My_StrLwr(char* text);

/// Turns 'a' to 'z' into 'A' to 'Z'. Bytes of 0x80 and above never change.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API char* My_StrUpr(char* text);

/// The same as My_StrUpr().
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API char* my_strupr(char* text);

/// Applies toupper() of the process's locale to exactly @p length bytes, zero bytes included.
/// @param text    must not be null, unless nothing is to be changed
/// @param length  in bytes; 0 or less changes nothing
/// @return always 1
ZRCOMMON_API int strUpr(char* text, int length);

/// Compares blind to bit 0x20 of every byte, letter or not: '@' equals '`', '0' equals 0x10.
/// Unequal bytes are ordered as unsigned values without that bit.
///
/// @param a,b  strings
/// @return -1, 0 or 1; 1 for null
ZRCOMMON_API int my_stricmp(const char* a, const char* b);

/// my_stricmp() over a part of the strings.
/// @param a,b    strings
/// @param count  most bytes to compare
/// @return -1, 0 or 1; 1 for null, else 0 for a count of 0
ZRCOMMON_API int my_strnicmp(const char* a, const char* b, unsigned int count);

/// Searches for a pattern whose middle byte, if its length is odd, stands for any byte.
///
/// So a pattern of one byte is found at the start of any text that is not empty; an empty pattern
/// at the start of every text. Takes time in proportion to the text's length.
///
/// @param text     is searched
/// @param pattern  is searched for
/// @return the first place; null if there is none
ZRCOMMON_API char* my_strstr(const char* text, const char* pattern);

/// Reverses the bytes before the terminator.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API char* my_strrev(char* text);

/// Overwrites white space at the end (isspace() of the process's locale) with zeros.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API char* TrimRight(char* text);

/// Moves the text over white space at its start (isspace() of the process's locale). As many zeros
/// follow the text as there were bytes of white space; nothing is written behind the terminator.
///
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API char* TrimLeft(char* text);

/// Measures a wide string.
/// @param text  units
/// @return units before the terminator; 0 for null
ZRCOMMON_API unsigned int my_wcslen(const unsigned short* text);

/// Copies a string with its terminator.
/// @param to    room for as many units as @p from has, and the terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* my_wcscpy(unsigned short* to, const unsigned short* from);

/// Appends a string with its terminator.
/// @param to    terminated, with room for the units of both and one terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* my_wcscat(unsigned short* to, const unsigned short* from);

/// Copies the beginning of a string and then a terminator. Unlike the C library's, it always
/// terminates and never pads.
///
/// @param to     room for count + 1 units, or for the whole of @p from and its terminator
/// @param from   the source
/// @param count  most units to copy, the terminator not among them
/// @return @p to
ZRCOMMON_API unsigned short* my_wcsncpy(unsigned short* to, const unsigned short* from, int count);

/// Appends at most @p count units, the terminator among them. If the source has @p count units or
/// more, the result is not terminated.
///
/// @param to     terminated, with room for @p count units behind its own, or for the whole of
///               @p from and its terminator
/// @param from   the source
/// @param count  most units to write
/// @return @p to
ZRCOMMON_API unsigned short* my_wcsncat(unsigned short* to, const unsigned short* from, int count);

/// Compares units as unsigned values.
/// @param a,b  strings
/// @return -1, 0 or 1; 1 for null
ZRCOMMON_API int my_wcscmp(const unsigned short* a, const unsigned short* b);

/// my_wcscmp() over a part of the strings.
/// @param a,b    strings
/// @param count  most units to compare
/// @return -1, 0 or 1; 1 for null, else 0 for a count of 0
ZRCOMMON_API int my_wcsncmp(const unsigned short* a, const unsigned short* b, int count);

/// Compares (unit AND 0xDF) of every unit, letter or not: 0x0141 equals 'A', '[' equals '{'.
/// @param a,b  strings
/// @return -1, 0 or 1; 1 for null
ZRCOMMON_API int my_wcsicmp(const unsigned short* a, const unsigned short* b);

/// my_wcsicmp() over a part of the strings.
/// @param a,b    strings
/// @param count  most units to compare
/// @return -1, 0 or 1; 1 for null, else 0 for a count of 0
ZRCOMMON_API int my_wcsnicmp(const unsigned short* a, const unsigned short* b, unsigned int count);

/// Compares wide units, unsigned, with bytes taken as signed: a byte of 0x80 or above is smaller
/// than every wide unit and equals none.
///
/// @param wide    a string of units
/// @param narrow  a string of bytes
/// @return -1, 0 or 1; 1 for null
ZRCOMMON_API int my_wcscscmp(const unsigned short* wide, const char* narrow);

/// Searches for a unit from the start.
/// @param text    is searched
/// @param wanted  a unit; 0 is never found
/// @return the first place; null if there is none
ZRCOMMON_API unsigned short* my_wcschr(const unsigned short* text, unsigned short wanted);

/// Searches for a unit from the end.
/// @param text    is searched
/// @param wanted  a unit; 0 is never found
/// @return the last place; null if there is none
ZRCOMMON_API unsigned short* my_wcsrchr(const unsigned short* text, unsigned short wanted);

/// Searches as my_strstr() does: the middle unit of a pattern of odd length stands for any unit.
/// @param text     is searched
/// @param pattern  is searched for
/// @return the first place; null if there is none
ZRCOMMON_API unsigned short* my_wcsstr(const unsigned short* text, const unsigned short* pattern);

/// Reverses the units before the terminator.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsrev(unsigned short* text);

/// Turns 'A' to 'Z' into 'a' to 'z', and no other unit.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API unsigned short* my_wcslwr(unsigned short* text);

/// Turns 'a' to 'z' into 'A' to 'Z', and no other unit.
/// @param text  changed in place
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsupr(unsigned short* text);

/// Sets every unit before the terminator.
/// @param text  changed in place
/// @param unit  the value
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsset(unsigned short* text, unsigned short unit);

/// Sets the first units before the terminator.
/// @param text   changed in place
/// @param unit   the value
/// @param count  most units to set
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsnset(unsigned short* text, unsigned short unit, int count);

/// Searches a block for a unit, which may be 0.
/// @param memory  the block
/// @param wanted  a unit
/// @param count   units in the block
/// @return the first place; null if there is none
ZRCOMMON_API unsigned short* my_wmemchr(const unsigned short* memory, unsigned short wanted,
                                        int count);

/// Compares blocks, unit by unit as unsigned values, zeros like any other.
/// @param a,b    blocks
/// @param count  units in each
/// @return -1, 0 or 1; 1 for null
ZRCOMMON_API int my_wmemcmp(const unsigned short* a, const unsigned short* b, int count);

/// Copies a block forwards: if the destination begins inside the source, the units between the two
/// are repeated; if it begins below the source, the copy is whole.
///
/// @param to     room for @p count units
/// @param from   the source
/// @param count  units to copy
/// @return @p to
ZRCOMMON_API unsigned short* my_wmemcpy(unsigned short* to, const unsigned short* from, int count);

/// Copies a block. Source and destination may overlap.
/// @param to     room for @p count units
/// @param from   the source
/// @param count  units to copy
/// @return @p to
ZRCOMMON_API unsigned short* my_wmemmove(unsigned short* to, const unsigned short* from,
                                         unsigned int count);

/// Sets all of a block.
/// @param memory  the block
/// @param unit    the value
/// @param count   units in the block
/// @return @p memory
ZRCOMMON_API unsigned short* my_wmemset(unsigned short* memory, unsigned short unit, int count);

/// Widens bytes with their sign, so that 0xE9 becomes 0xFFE9, and terminates.
/// @param to    room for a unit a byte, and the terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* CopySZToWSZ(unsigned short* to, const char* from);

/// Widens as CopySZToWSZ() does, behind a wide string.
/// @param to    terminated, with room for the units of both and one terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* CatSZToWSZ(unsigned short* to, const char* from);

/// Keeps the low byte of every unit, so that 0x20AC becomes 0xAC, and terminates. A unit whose low
/// byte is zero leaves a zero byte inside the result.
///
/// @param to    room for a byte a unit, and the terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API char* CopyWSZToSZ(char* to, const unsigned short* from);

/// Narrows as CopyWSZToSZ() does, behind a narrow string.
/// @param to    terminated, with room for the bytes of both and one terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API char* CatWSZToSZ(char* to, const unsigned short* from);

}  // extern "C"

/// Removes every occurrence of a byte.
/// @param text      must not be null, and must not hold zero bytes: the call never returns if it
///                  does, unless it is zero bytes that are to be removed
/// @param unwanted  the byte
/// @return 1 if @p text was empty, else 0
ZRCOMMON_API int RemoveCharFromString(std::string* text, char unwanted);

/// The place of a conversion to wide text through a code page. It converts nothing yet.
/// @param from      looked at for being null only
/// @param to        untouched
/// @param capacity  units at @p to
/// @return false if a pointer is null or @p capacity is 0, else true
ZRCOMMON_API bool ConvertToWideChar(const char* from, unsigned short* to, unsigned int capacity);

/// The way back of ConvertToWideChar(), and no conversion either.
/// @param from      looked at for being null only
/// @param to        untouched
/// @param capacity  bytes at @p to
/// @return false if a pointer is null or @p capacity is 0, else true
ZRCOMMON_API bool ConvertToMultiByte(const unsigned short* from, char* to, unsigned int capacity);

#endif  // ZRCOMMON_STRINGS_H
