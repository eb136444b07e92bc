#ifndef ZRCOMMON_BENCH_SWEEP_INPUTS_H
#define ZRCOMMON_BENCH_SWEEP_INPUTS_H

#include <string>

/// Inputs of the sweep, and of short lines for the tables, each of about the given size: ordinary
/// ones, and ones made to be slow.

// Profiles, all with a section "last" and, in it, the key "key" as their last line.
std::string ordinaryProfile(std::size_t size);
std::string oneSection(std::size_t size);
std::string headersAlone(std::size_t size);
std::string openHeaders(std::size_t size);
std::string blankLines(std::size_t size);
std::string shortComments(std::size_t size);
std::string blankPieces(std::size_t size);
std::string zeroBytes(std::size_t size);

// A pattern, a line feed and a text that does not contain it.
std::string wordsAndText(std::size_t size);
std::string nearRepeats(std::size_t size);
std::string sevenAlike(std::size_t size);
std::string wrongNearMiddle(std::size_t size);
std::string equalSums(std::size_t size);

std::string fewBlanks(std::size_t size);
std::string halfBlanks(std::size_t size);
std::string fewCommas(std::size_t size);
std::string everyOtherComma(std::size_t size);

// Queries of request commands.
std::string ordinaryPairs(std::size_t size);
std::string oneLetterPairs(std::size_t size);
std::string separators(std::size_t size);
std::string longValues(std::size_t size);

#endif  // ZRCOMMON_BENCH_SWEEP_INPUTS_H
