#ifndef ZRCOMMON_TOOLS_HEX_H
#define ZRCOMMON_TOOLS_HEX_H

#include <cstddef>
#include <string>

/// Bytes as two-digit numbers, 32 on each line.
std::string hexText(const unsigned char* bytes, std::size_t count);

/// Reads two-digit numbers, with or without white space between them. Throws Refusal, naming the
/// place, if there is anything else.
std::string parseHex(const std::string& text);

#endif  // ZRCOMMON_TOOLS_HEX_H
