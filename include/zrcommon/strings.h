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
///   nothing; a comparison gives 1. An operation that gives a pointer otherwise gives its first
///   argument, or where it searches the place found.
/// - Results of comparisons are -1, 0 and 1 and nothing else.
/// - Counts are in units, 32 bits wide and unsigned in effect: -1 is the largest of all.
/// - No destination has a capacity. The caller provides room for the result and its terminator.
/// - Source and destination may overlap only where it is said.
///
/// Letters are those of ASCII, except where a locale is named. Nothing keeps state, all is
/// thread-safe, and nothing is read in a page behind the one with the terminator.

extern "C" {

/// @return bytes before the terminator; 0 for null
ZRCOMMON_API unsigned int my_strlen(const char* text);

/// Turns 'A' to 'Z' into 'a' to 'z' in place. Bytes of 0x80 and above never change.
ZRCOMMON_API char* My_StrLwr(char* text);

/// Turns 'a' to 'z' into 'A' to 'Z' in place. Bytes of 0x80 and above never change.
ZRCOMMON_API char* My_StrUpr(char* text);

/// The same as My_StrUpr().
ZRCOMMON_API char* my_strupr(char* text);

/// Applies toupper() of the process's locale to exactly @p length bytes, zero bytes included.
///
/// @param text    must not be null
/// @param length  in bytes; 0 or less changes nothing
/// @return always 1
ZRCOMMON_API int strUpr(char* text, int length);

/// Compares blind to bit 0x20 of every byte, letter or not: '@' equals '`', '0' equals 0x10.
/// Unequal bytes are ordered as unsigned values without that bit.
ZRCOMMON_API int my_stricmp(const char* a, const char* b);

/// The same over at most @p count bytes; 0 for a count of 0.
ZRCOMMON_API int my_strnicmp(const char* a, const char* b, unsigned int count);

/// Searches for a pattern whose middle byte, if its length is odd, stands for any byte.
///
/// So a pattern of one byte is found at the start of any text that is not empty; an empty pattern
/// at the start of every text. Takes time in proportion to the text's length.
///
/// @return the first place; null if there is none
ZRCOMMON_API char* my_strstr(const char* text, const char* pattern);

/// Reverses the bytes before the terminator in place.
ZRCOMMON_API char* my_strrev(char* text);

/// Overwrites white space at the end (isspace() of the process's locale) with zeros.
ZRCOMMON_API char* TrimRight(char* text);

/// Moves the text over white space at its start (isspace() of the process's locale). As many zeros
/// follow the text as there were bytes of white space; nothing is written behind the terminator.
ZRCOMMON_API char* TrimLeft(char* text);

/// @return units before the terminator; 0 for null
ZRCOMMON_API unsigned int my_wcslen(const unsigned short* text);

/// Copies the string with its terminator.
ZRCOMMON_API unsigned short* my_wcscpy(unsigned short* to, const unsigned short* from);

/// Appends the string with its terminator.
ZRCOMMON_API unsigned short* my_wcscat(unsigned short* to, const unsigned short* from);

/// Copies at most @p count units and then a terminator: up to count + 1 units are written. Unlike
/// the C library's, it always terminates and never pads.
ZRCOMMON_API unsigned short* my_wcsncpy(unsigned short* to, const unsigned short* from, int count);

/// Appends at most @p count units, the terminator among them. If the source has @p count units or
/// more, the result is not terminated.
ZRCOMMON_API unsigned short* my_wcsncat(unsigned short* to, const unsigned short* from, int count);

/// Compares units as unsigned values.
ZRCOMMON_API int my_wcscmp(const unsigned short* a, const unsigned short* b);

/// The same over at most @p count units; 0 for a count of 0.
ZRCOMMON_API int my_wcsncmp(const unsigned short* a, const unsigned short* b, int count);

/// Compares (unit AND 0xDF) of every unit, letter or not: 0x0141 equals 'A', '[' equals '{'.
ZRCOMMON_API int my_wcsicmp(const unsigned short* a, const unsigned short* b);

/// The same over at most @p count units; 0 for a count of 0.
ZRCOMMON_API int my_wcsnicmp(const unsigned short* a, const unsigned short* b, unsigned int count);

/// Compares wide units, unsigned, with bytes taken as signed: a byte of 0x80 or above is smaller
/// than every wide unit and equals none.
ZRCOMMON_API int my_wcscscmp(const unsigned short* wide, const char* narrow);

/// @return the first place of @p wanted; null if there is none, and always for 0
ZRCOMMON_API unsigned short* my_wcschr(const unsigned short* text, unsigned short wanted);

/// @return the last place of @p wanted; null if there is none, and always for 0
ZRCOMMON_API unsigned short* my_wcsrchr(const unsigned short* text, unsigned short wanted);

/// Searches as my_strstr() does: the middle unit of a pattern of odd length stands for any unit.
ZRCOMMON_API unsigned short* my_wcsstr(const unsigned short* text, const unsigned short* pattern);

/// Reverses the units before the terminator in place.
ZRCOMMON_API unsigned short* my_wcsrev(unsigned short* text);

/// Turns 'A' to 'Z' into 'a' to 'z' in place, and no other unit.
ZRCOMMON_API unsigned short* my_wcslwr(unsigned short* text);

/// Turns 'a' to 'z' into 'A' to 'Z' in place, and no other unit.
ZRCOMMON_API unsigned short* my_wcsupr(unsigned short* text);

/// Sets every unit before the terminator.
ZRCOMMON_API unsigned short* my_wcsset(unsigned short* text, unsigned short unit);

/// Sets the units before the terminator, at most @p count of them.
ZRCOMMON_API unsigned short* my_wcsnset(unsigned short* text, unsigned short unit, int count);

/// @return the first place of @p wanted among @p count units; null if there is none
ZRCOMMON_API unsigned short* my_wmemchr(const unsigned short* memory, unsigned short wanted,
                                        int count);

/// Compares @p count units as unsigned values, zeros like any other.
ZRCOMMON_API int my_wmemcmp(const unsigned short* a, const unsigned short* b, int count);

/// Copies @p count units forwards: if the destination begins inside the source, the units between
/// the two are repeated; if it begins below the source, the copy is whole.
ZRCOMMON_API unsigned short* my_wmemcpy(unsigned short* to, const unsigned short* from, int count);

/// Copies @p count units. Source and destination may overlap.
ZRCOMMON_API unsigned short* my_wmemmove(unsigned short* to, const unsigned short* from,
                                         unsigned int count);

/// Sets @p count units.
ZRCOMMON_API unsigned short* my_wmemset(unsigned short* memory, unsigned short unit, int count);

/// Widens bytes with their sign, so that 0xE9 becomes 0xFFE9, and terminates.
ZRCOMMON_API unsigned short* CopySZToWSZ(unsigned short* to, const char* from);

/// The same, appending to a wide string.
ZRCOMMON_API unsigned short* CatSZToWSZ(unsigned short* to, const char* from);

/// Keeps the low byte of every unit, so that 0x20AC becomes 0xAC, and terminates. A unit whose low
/// byte is zero leaves a zero byte inside the result.
ZRCOMMON_API char* CopyWSZToSZ(char* to, const unsigned short* from);

/// The same, appending to a narrow string.
ZRCOMMON_API char* CatWSZToSZ(char* to, const unsigned short* from);

}  // extern "C"

/// Removes every occurrence of a byte.
///
/// @param text  must not be null, and must not hold zero bytes: the call never returns if it does,
///              unless it is zero bytes that are to be removed
/// @return 1 if @p text was empty, else 0
ZRCOMMON_API int RemoveCharFromString(std::string* text, char unwanted);

/// The place of a conversion to wide text through a code page. It converts nothing yet.
///
/// @param to        untouched
/// @param capacity  units at @p to
/// @return false if a pointer is null or @p capacity is 0, else true
ZRCOMMON_API bool ConvertToWideChar(const char* from, unsigned short* to, unsigned int capacity);

/// The way back, with bytes at @p to, and no conversion either.
ZRCOMMON_API bool ConvertToMultiByte(const unsigned short* from, char* to, unsigned int capacity);

#endif  // ZRCOMMON_STRINGS_H
