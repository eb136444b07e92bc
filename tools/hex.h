#ifndef ZRCOMMON_TOOLS_HEX_H
#define ZRCOMMON_TOOLS_HEX_H

#include <ostream>
#include <string>

/// Prints bytes as two-digit numbers, 32 a line.
void printHex(std::ostream& out, const unsigned char* bytes, std::size_t count);

/// Reads two-digit numbers, with or without white space between them. Throws Refusal, naming the
/// place, where there is anything else.
std::string parseHex(const std::string& text);

#endif  // ZRCOMMON_TOOLS_HEX_H
