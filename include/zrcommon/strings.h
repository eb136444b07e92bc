#ifndef ZRCOMMON_STRINGS_H
#define ZRCOMMON_STRINGS_H

#include <string>

#include <zrcommon/export.h>

/// @file
/// Strings of bytes and of wide units, the conversions between them, and blocks of wide units.
///
/// A wide unit is an unsigned short, whatever the platform's own wide character is. Every unit is
/// one character; surrogates have no meaning. Strings end with a zero unit. The operations are
/// named like those of the C library, with the prefix my_, and do the same except for these rules
/// and those in the descriptions below:
///
/// - Null: an operation that returns a pointer returns null if one of its pointers is null, and
///   writes nothing; a comparison returns 1.
/// - Comparisons return exactly -1, 0 or 1.
/// - Counts are in units. They are unsigned 32-bit numbers even if declared as int: -1 is the
///   largest count. With a count of 0, nothing is read.
/// - No operation knows the size of its destination: the caller provides room for the result and
///   its terminator.
/// - Source and destination must not overlap unless the description allows it.
///
/// Letters are those of ASCII unless a locale is named. The operations keep no state and are
/// thread-safe. They may read bytes before the start and after the end of a string, but never in a
/// page that holds no part of it. Valgrind reports such reads unless it is told to use the
/// suppression in share/zrcommon/zrcommon.supp.

extern "C" {

/// Returns the length of a string.
/// @param text  a string of bytes
/// @return number of bytes before the terminator; 0 for null
ZRCOMMON_API unsigned int my_strlen(const char* text);

/// Changes 'A' to 'Z' into 'a' to 'z'. Bytes of 0x80 and above never change.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API char* My_StrLwr(char* text);

/// Changes 'a' to 'z' into 'A' to 'Z'. Bytes of 0x80 and above never change.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API char* My_StrUpr(char* text);

/// Does the same as My_StrUpr().
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API char* my_strupr(char* text);

/// Applies toupper() of the process's locale to exactly @p length bytes, zero bytes included.
/// @param text    must not be null if @p length is above 0
/// @param length  number of bytes; 0 or less changes nothing
/// @return always 1
ZRCOMMON_API int strUpr(char* text, int length);

/// Compares (byte AND 0xDF) of every byte, as unsigned values, letters or not: 'a' equals 'A', '@'
/// equals '`', '0' equals 0x10.
///
/// @param a,b  strings
/// @return -1, 0 or 1; 1 if either is null
ZRCOMMON_API int my_stricmp(const char* a, const char* b);

/// Compares as my_stricmp() does, but at most @p count bytes.
/// @param a,b    strings
/// @param count  maximum number of bytes
/// @return -1, 0 or 1; 1 if either is null; otherwise 0 for a count of 0
ZRCOMMON_API int my_strnicmp(const char* a, const char* b, unsigned int count);

/// Searches for a pattern. If its length is odd, its middle byte is not compared and matches any
/// byte.
///
/// A pattern of one byte is therefore found at the start of every text that is not empty; an empty
/// pattern is found at the start of every text. The time is proportional to the text's length.
///
/// @param text     the text to search
/// @param pattern  the text to find
/// @return the first occurrence; null if there is none
ZRCOMMON_API char* my_strstr(const char* text, const char* pattern);

/// Reverses the bytes before the terminator.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API char* my_strrev(char* text);

/// Overwrites white space at the end, by isspace() of the process's locale, with zeros.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API char* TrimRight(char* text);

/// Removes white space at the start, by isspace() of the process's locale: the text moves to the
/// front, and the bytes that it leaves become zeros. Nothing is written after the terminator.
///
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API char* TrimLeft(char* text);

/// Returns the length of a wide string.
/// @param text  a string of units
/// @return number of units before the terminator; 0 for null
ZRCOMMON_API unsigned int my_wcslen(const unsigned short* text);

/// Copies a string with its terminator.
/// @param to    has room for the units of @p from and the terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* my_wcscpy(unsigned short* to, const unsigned short* from);

/// Appends a string with its terminator.
/// @param to    is terminated and has room for the units of both and one terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* my_wcscat(unsigned short* to, const unsigned short* from);

/// Copies at most @p count units of a string and then a terminator. Unlike the function of the C
/// library, it always terminates and never pads.
///
/// @param to     has room for count + 1 units, or for all of @p from and its terminator
/// @param from   the source
/// @param count  maximum number of units, without the terminator
/// @return @p to
ZRCOMMON_API unsigned short* my_wcsncpy(unsigned short* to, const unsigned short* from, int count);

/// Appends at most @p count units, the terminator included. If the source has @p count units or
/// more, the result is not terminated.
///
/// @param to     is terminated and has room for @p count more units, or for all of @p from and its
///               terminator
/// @param from   the source
/// @param count  maximum number of units to write
/// @return @p to
ZRCOMMON_API unsigned short* my_wcsncat(unsigned short* to, const unsigned short* from, int count);

/// Compares units as unsigned values.
/// @param a,b  strings
/// @return -1, 0 or 1; 1 if either is null
ZRCOMMON_API int my_wcscmp(const unsigned short* a, const unsigned short* b);

/// Compares as my_wcscmp() does, but at most @p count units.
/// @param a,b    strings
/// @param count  maximum number of units
/// @return -1, 0 or 1; 1 if either is null; otherwise 0 for a count of 0
ZRCOMMON_API int my_wcsncmp(const unsigned short* a, const unsigned short* b, int count);

/// Compares (unit AND 0xDF) of every unit, letters or not: 0x0141 equals 'A', '[' equals '{'.
/// @param a,b  strings
/// @return -1, 0 or 1; 1 if either is null
ZRCOMMON_API int my_wcsicmp(const unsigned short* a, const unsigned short* b);

/// Compares as my_wcsicmp() does, but at most @p count units.
/// @param a,b    strings
/// @param count  maximum number of units
/// @return -1, 0 or 1; 1 if either is null; otherwise 0 for a count of 0
ZRCOMMON_API int my_wcsnicmp(const unsigned short* a, const unsigned short* b, unsigned int count);

/// Compares wide units, as unsigned values, with bytes, as signed values: a byte of 0x80 or above
/// is less than every wide unit and equal to none.
///
/// @param wide    a string of units
/// @param narrow  a string of bytes
/// @return -1, 0 or 1; 1 if either is null
ZRCOMMON_API int my_wcscscmp(const unsigned short* wide, const char* narrow);

/// Searches for a unit from the start.
/// @param text    the string to search
/// @param wanted  the unit to find; 0 is never found
/// @return the first occurrence; null if there is none
ZRCOMMON_API unsigned short* my_wcschr(const unsigned short* text, unsigned short wanted);

/// Searches for a unit from the end.
/// @param text    the string to search
/// @param wanted  the unit to find; 0 is never found
/// @return the last occurrence; null if there is none
ZRCOMMON_API unsigned short* my_wcsrchr(const unsigned short* text, unsigned short wanted);

/// Searches as my_strstr() does: the middle unit of a pattern of odd length matches any unit.
/// @param text     the string to search
/// @param pattern  the string to find
/// @return the first occurrence; null if there is none
ZRCOMMON_API unsigned short* my_wcsstr(const unsigned short* text, const unsigned short* pattern);

/// Reverses the units before the terminator.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsrev(unsigned short* text);

/// Changes 'A' to 'Z' into 'a' to 'z', and no other unit.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API unsigned short* my_wcslwr(unsigned short* text);

/// Changes 'a' to 'z' into 'A' to 'Z', and no other unit.
/// @param text  is changed in place
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsupr(unsigned short* text);

/// Sets every unit before the terminator.
/// @param text  is changed in place
/// @param unit  the new value
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsset(unsigned short* text, unsigned short unit);

/// Sets at most @p count units, and none from the terminator on.
/// @param text   is changed in place
/// @param unit   the new value
/// @param count  maximum number of units
/// @return @p text
ZRCOMMON_API unsigned short* my_wcsnset(unsigned short* text, unsigned short unit, int count);

/// Searches a block for a unit, which may be 0.
/// @param memory  the block
/// @param wanted  the unit to find
/// @param count   number of units in the block
/// @return the first occurrence; null if there is none
ZRCOMMON_API unsigned short* my_wmemchr(const unsigned short* memory, unsigned short wanted,
                                        int count);

/// Compares blocks by units as unsigned values. A zero does not end the comparison.
/// @param a,b    blocks
/// @param count  number of units in each
/// @return -1, 0 or 1; 1 if either is null
ZRCOMMON_API int my_wmemcmp(const unsigned short* a, const unsigned short* b, int count);

/// Copies a block forwards, unit by unit. The blocks may overlap: if the destination begins inside
/// the source, the units before it are repeated; if it begins before the source, the copy is
/// complete.
///
/// @param to     has room for @p count units
/// @param from   the source
/// @param count  number of units
/// @return @p to
ZRCOMMON_API unsigned short* my_wmemcpy(unsigned short* to, const unsigned short* from, int count);

/// Copies a block. Source and destination may overlap.
/// @param to     has room for @p count units
/// @param from   the source
/// @param count  number of units
/// @return @p to
ZRCOMMON_API unsigned short* my_wmemmove(unsigned short* to, const unsigned short* from,
                                         unsigned int count);

/// Sets every unit of a block.
/// @param memory  the block
/// @param unit    the new value
/// @param count   number of units in the block
/// @return @p memory
ZRCOMMON_API unsigned short* my_wmemset(unsigned short* memory, unsigned short unit, int count);

/// Widens every byte with its sign, so that 0xE9 becomes 0xFFE9, and terminates the result.
/// @param to    has room for one unit per byte and the terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* CopySZToWSZ(unsigned short* to, const char* from);

/// Widens as CopySZToWSZ() does and appends the result to a wide string.
/// @param to    is terminated and has room for the units of both and one terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API unsigned short* CatSZToWSZ(unsigned short* to, const char* from);

/// Keeps the low byte of every unit, so that 0x20AC becomes 0xAC, and terminates the result. A unit
/// whose low byte is zero becomes a zero byte inside the result.
///
/// @param to    has room for one byte per unit and the terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API char* CopyWSZToSZ(char* to, const unsigned short* from);

/// Narrows as CopyWSZToSZ() does and appends the result to a narrow string.
/// @param to    is terminated and has room for the bytes of both and one terminator
/// @param from  the source
/// @return @p to
ZRCOMMON_API char* CatWSZToSZ(char* to, const unsigned short* from);

}  // extern "C"

/// Removes every occurrence of a byte.
/// @param text      must not be null. The call never returns if the text holds zero bytes and
///                  @p unwanted is another byte.
/// @param unwanted  the byte to remove
/// @return 1 if @p text was empty, else 0
ZRCOMMON_API int RemoveCharFromString(std::string* text, char unwanted);

/// Checks its arguments and converts nothing; CopySZToWSZ() converts.
/// @param from      a string of bytes
/// @param to        is not written
/// @param capacity  size of @p to in units
/// @return false if a pointer is null or @p capacity is 0, else true
ZRCOMMON_API bool ConvertToWideChar(const char* from, unsigned short* to, unsigned int capacity);

/// Checks its arguments and converts nothing; CopyWSZToSZ() converts.
/// @param from      a string of units
/// @param to        is not written
/// @param capacity  size of @p to in bytes
/// @return false if a pointer is null or @p capacity is 0, else true
ZRCOMMON_API bool ConvertToMultiByte(const unsigned short* from, char* to, unsigned int capacity);

#endif  // ZRCOMMON_STRINGS_H
